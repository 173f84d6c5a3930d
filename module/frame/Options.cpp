#include "module/frame/Options.h"

#include "module/frame/KolConfig.h"
#include "siblings/zef_kernal/TWDict.h"
#include "siblings/zef_public/SharedOptions.h"

#include "sys/folders.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <variant>

int g_nAlignTypeForVPipeDim4 = 0;

namespace {

struct Option {
    const wchar_t* section;
    const wchar_t* key;
    const wchar_t* registryValue; // null for what the registry does not keep
    std::variant<int*, double*> variable;
};

// In the order of the settings file. Some names do not say what they hold, but that is how they are stored.
const Option options[] = {
    {L"管线设置", L"管线默认管径", L"DefaultPipeDn", &g_iDefaultPipeDn},
    {L"管线设置", L"双线水管线宽", L"DbPipeLineWidth", &g_dDbPipeLineWidth},
    {L"管线设置", L"单注标高随管线标高联动", L"IsElevDimChangeByPipeElev", &g_bIsElevDimChangeByPipeElev},
    {L"管线设置", L"标注离管距离", L"DnDimDist2Pipe", &g_nDnDimDist2Pipe},
    {L"管线设置", L"扣弯样式", L"IsStandPipeArc", &g_bStandPipeArc},
    {L"管线设置", L"弯头曲率", L"ElbowRate", &g_nElbowRate},
    {L"管线设置", L"洁具数据读取", L"SanitaryDataType", &g_nSinataryDataType},
    {L"管线设置", L"立管楼号标注设置", L"VPipeDimStyle", &g_iVPipeDimStyle},
    {L"管线设置", L"编号管径间距", L"VPipeDimDn2Label", &g_dVPipeDimDn2Label},
    {L"管线设置", L"立管标注样式", L"IsPipeDimCir", &g_bIsPipeDimCir},
    {L"设备设置", L"给水圆比例", L"FeedCircleScale", &g_nFeedCircleScale},
    {L"设备设置", L"喷头半径", L"SprinklerRadius", &g_nSprinklerRadius},
    {L"设备设置", L"阀门比例", L"ValveScale", &g_nValveScale},
    {L"设备设置", L"排水圆半径", L"DrainPtRadius", &g_nDrainPtRadius},
    {L"设备设置", L"设备支持3D", L"Blk3D", &g_bBlk3D},
    {L"设备设置", L"喷头间距模数", L"SprinklerDistMod", &g_iSprinklerDistMod},
    {L"室外设置", L"检查井直径", L"WellRadius", &g_nWellRadius},
    {L"室外设置", L"室外标注样式", L"DimPipeGradientType", &g_iDimPipeGradientType},
    {L"其它设置", L"工具条状态", L"Toolbar", &g_bToolbar},
    {L"其它设置", L"选择预览", L"SelectPreview", &g_bEnableSelectPreview},
    {L"其它设置", L"自动线型比例", nullptr, &g_bAutoLTScale},
    {L"其它设置", L"采用维朗系统捕捉设置", L"VrOsnap", &g_bVrOsnap},
    {L"其它设置", L"转Q8维朗文字中英文打断", L"DownloadQ8Split", &g_bDownloadQ8Split},
};

// The registry has an order of its own.
constexpr std::wstring_view registryOrder[] = {
    L"ElbowRate",
    L"SanitaryDataType",
    L"DnDimDist2Pipe",
    L"IsStandPipeArc",
    L"WellRadius",
    L"DimPipeGradientType",
    L"FeedCircleScale",
    L"SprinklerRadius",
    L"ValveScale",
    L"DrainPtRadius",
    L"Toolbar",
    L"VrOsnap",
    L"DownloadQ8Split",
    L"SelectPreview",
    L"Blk3D",
    L"SprinklerDistMod",
    L"IsPipeDimCir",
    L"VPipeDimStyle",
    L"VPipeDimDn2Label",
    L"DefaultPipeDn",
    L"DbPipeLineWidth",
    L"IsElevDimChangeByPipeElev",
};

void CommitToRegistry() {
    TRegProperty config = OpenKolConfig();
    for (const std::wstring_view name : registryOrder) {
        const Option& option =
            *std::find_if(std::begin(options), std::end(options), [&](const Option& candidate) {
                return candidate.registryValue != nullptr && candidate.registryValue == name;
            });
        std::visit([&](const auto* variable) { config.SetValue(option.registryValue, *variable); },
                   option.variable);
    }
}

} // namespace

bool OptionTool::WriteSettingsFile(LPCTSTR path) {
    TWDict file;
    std::error_code fault;
    if (!file.ReadFile(path) && std::filesystem::exists(sys::to_path(path), fault))
        return false;
    for (const Option& option : options) {
        if (TWDictSection* const section = file.FindOrAddDict(option.section))
            std::visit([&](const auto* variable) { section->SetValue(option.key, *variable); },
                       option.variable);
    }
    return file.WriteFile(path);
}

bool OptionTool::ReadSettingsFile(LPCTSTR path) {
    TWDict file;
    if (!file.ReadFile(path))
        return false;
    for (const Option& option : options) {
        if (const TWDictSection* const section = file.FindOrAddDict(option.section))
            std::visit([&](auto* variable) { section->GetValue(option.key, *variable); }, option.variable);
    }
    CommitToRegistry();
    return true;
}

void OptionTool::ReadAlignType() {
    OpenKolConfig().GetValue(L"nAlignTypeForVPipeDim4", g_nAlignTypeForVPipeDim4);
}

void OptionTool::WriteAlignType() {
    OpenKolConfig().SetValue(L"nAlignTypeForVPipeDim4", g_nAlignTypeForVPipeDim4);
}
