#include "module/frame/DrawingDefaults.h"

#include "module/frame/CmdConfigTool.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "siblings/zef_public/SharedOptions.h"

#include <variant>

bool g_bLayerAutoGroup = false;
bool g_bResetFlangeGap = false;
int g_iFlangeStyle = 0;

namespace {

// A default of the pipe entities: its kind and its number.
struct Default {
    TDefaultCfg::Kind kind;
    int index;
};

struct Item {
    const wchar_t* key;
    std::variant<Default, bool*, int*> target;
};

const Item items[] = {
    {L"立管标注样式2上下交换", Default{TDefaultCfg::kBoolean, 1}},
    {L"管长精度", Default{TDefaultCfg::kInteger, 1}},
    {L"井深精度", Default{TDefaultCfg::kInteger, 2}},
    {L"管线打断间距", Default{TDefaultCfg::kReal, 2}},
    {L"管线文字断距", Default{TDefaultCfg::kReal, 1}},
    {L"显示管道流向", Default{TDefaultCfg::kBoolean, 3}},
    {L"管线粗显", Default{TDefaultCfg::kBoolean, 2}},
    {L"管线型比例随当前比例变化", Default{TDefaultCfg::kBoolean, 4}},
    {L"双管扣弯样式", Default{TDefaultCfg::kInteger, 3}},
    {L"闭合方沟端点", Default{TDefaultCfg::kBoolean, 5}},
    {L"双管管径显示类型", Default{TDefaultCfg::kInteger, 4}},
    {L"图层自动分组", &g_bLayerAutoGroup},
    {L"法兰间隙", Default{TDefaultCfg::kReal, 3}},
    {L"重置法兰间隙", &g_bResetFlangeGap},
    {L"自动检查多管标注", Default{TDefaultCfg::kBoolean, 6}},
    {L"立管定位框时间可见", Default{TDefaultCfg::kBoolean, 7}},
    {L"立管定位框长度", Default{TDefaultCfg::kReal, 4}},
    {L"立管定位框宽度", Default{TDefaultCfg::kReal, 5}},
    {L"法兰样式", &g_iFlangeStyle},
    {L"是否显示长度为零的管道", Default{TDefaultCfg::kBoolean, 8}},
};

// A number that a text begins with, 0 for one that begins with none.
int WholeOf(const CString& text) {
    return static_cast<int>(_tcstol(text, nullptr, 10));
}

void Put(const Default& target, const CString& text) {
    switch (target.kind) {
    case TDefaultCfg::kBoolean:
        TDefaultCfg::SetDefaultValue(target.kind, target.index, WholeOf(text) != 0);
        break;
    case TDefaultCfg::kInteger:
        TDefaultCfg::SetDefaultValue(target.kind, target.index, WholeOf(text));
        break;
    case TDefaultCfg::kReal:
        TDefaultCfg::SetDefaultValue(target.kind, target.index, _tcstod(text, nullptr));
        break;
    }
}

void Put(bool* target, const CString& text) {
    *target = WholeOf(text) != 0;
}

void Put(int* target, const CString& text) {
    *target = WholeOf(text);
}

} // namespace

void LoadDrawingDefaults() {
    if (CmdConfigTool::OpenConfigFile(L"CmdConfig.xml")) {
        CString text;
        for (const Item& item : items)
            if (CmdConfigTool::ReadItem(L"DWG默认数据", item.key, text))
                std::visit([&](const auto& target) { Put(target, text); }, item.target);
    }
    CmdConfigTool::CloseConfigFile();

    g_bIsPipeThick = IsPsLineWeight();
    g_nBreakPipeWidth = GetPsBreakWidth();
    g_nPipeTextBreak = GetPsPipeTextDis();
    g_iElbowType = GetElbowType();
}
