// The module on the command stack: what it puts there, what it takes away, what it answers to the host.
#include "base/utf.h"
#include "host/ed/command_help.h"
#include "host/ed/command_stack.h"
#include "host/ed/editor.h"
#include "host/rx/applications.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/Options.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "siblings/zef_pipewire/TDefaultCfg.h"
#include "siblings/zef_pipewire/TFlange.h"
#include "siblings/zef_public/SharedOptions.h"
#include "sys/folders.h"
#include "tests/support.h"

#include <bit>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using named_flags = std::vector<std::pair<std::wstring, int>>;

class ModuleCommands : public testing::Test {
protected:
    ModuleCommands() {
        sys::set_profile_folder(profile_.path());
        ed::editor::instance();
    }
    ~ModuleCommands() override { apps.unload_all(); }

    // The commands of a group in the order of their registration; local names are checked in passing.
    static named_flags group(const std::wstring& name) {
        named_flags found;
        for (const auto& [owner, command] : ed::all_commands())
            if (owner == name) {
                EXPECT_STREQ(command->globalName(), command->localName());
                found.emplace_back(command->globalName(), command->commandFlags());
            }
        return found;
    }

    const test::folder profile_;
    rx::applications& apps = rx::applications::instance();
};

TEST_F(ModuleCommands, HelpKnowsEach) {
    for (const wchar_t* const name :
         {L"zef_kernal", L"zef_pipewire", L"zef_public", L"zef_pipeSystem", L"zef_client"})
        ASSERT_TRUE(apps.load(name));
    for (const auto& [group, command] : ed::all_commands())
        if (group.starts_with(L"ZEF_")) {
            EXPECT_NE(ed::help_of(*command), L"") << base::narrow(command->globalName());
        }
}

TEST_F(ModuleCommands, AreRegisteredInTheirOrderAndGoWithTheModule) {
    const named_flags expected = {
        {L"gxsz", 2},
        {L"dcsz", 4},
        {L"drsz", 4},
        {L"SetAllPipeLayOpen", 1},
        {L"tckz", 2},
        {L"gpsbs", 2},
        {L"CleanDolmoLayTag", 2},
        {L"UnLockSelLayer", 2},
        {L"LockSelLayer", 2},
        {L"sfxc", 2},
        {L"OpenLayer", 2},
        {L"OpenSelLayer", 2},
        {L"CloseSelLayer", 2},
        {L"EraseSelLayer", 2},
        {L"ConvertLayer", 2},
        {L"hbtc", 2},
        {L"gxgd", 2},
        {L"tcdc", 2},
        {L"tctq", 2},
        {L"FrozenLayer", 2},
        {L"UnFrozenAllLayer", 2},
        {L"FrozenViewLayer", 2},
        {L"UnFrozenViewAllLayer", 2},
        {L"tbds", 2},
        {L"yshf", 2},
        {L"cztk", 2},
        {L"jcjk", 2},
        {L"gxfz", 2},
        {L"xxyh", 2},
        {L"xxyh2", 2},
    };
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(apps.load(L"zef_pipeSystem"));
        EXPECT_EQ(group(L"ZEF_PIPESTSTEM"), expected);
        ASSERT_TRUE(apps.unload(L"zef_pipeSystem"));
        EXPECT_TRUE(group(L"ZEF_PIPESTSTEM").empty());
    }
}

TEST_F(ModuleCommands, TakeTheNamesOfAnotherApplicationOfTheAddOn) {
    AcEdCommandStack& stack = *acedRegCmds;
    const wchar_t* const taken[] = {L"tcgj",          L"hbtc",          L"OpenLayer",    L"OpenSelLayer",
                                    L"CloseSelLayer", L"EraseSelLayer", L"ConvertLayer", L"UnLockSelLayer",
                                    L"LockSelLayer",  L"sfxc",          L"dcsz",         L"drsz"};
    const wchar_t* const kept[] = {L"gxsz", L"OpenLayer2", L"tckz"};
    for (const wchar_t* const name : taken) {
        ASSERT_EQ(stack.addCommand(L"TAPI_CMD", name, name, 0, [] {}), Acad::eOk);
        ASSERT_EQ(stack.addCommand(L"OTHER_CMD", name, name, 0, [] {}), Acad::eOk);
    }
    for (const wchar_t* const name : kept)
        ASSERT_EQ(stack.addCommand(L"TAPI_CMD", name, name, 0, [] {}), Acad::eOk);
    ASSERT_TRUE(apps.load(L"zef_pipeSystem"));
    EXPECT_EQ(group(L"TAPI_CMD"), (named_flags{{L"gxsz", 0}, {L"OpenLayer2", 0}, {L"tckz", 0}}));
    EXPECT_EQ(group(L"OTHER_CMD").size(), std::size(taken));
    EXPECT_EQ(stack.lookupGlobalCmd(L"openlayer")->commandFlags(), ACRX_CMD_USEPICKSET);
    stack.removeGroup(L"TAPI_CMD");
    stack.removeGroup(L"OTHER_CMD");
}

TEST_F(ModuleCommands, EveryMessageIsAnsweredWell) {
    TRegProperty config(GetRegLocation(), L"KOLConfig");
    config.SetValue(L"nAlignTypeForVPipeDim4", 3);
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kInteger, 0, 1);
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kReal, 1, 2.5);
    ASSERT_TRUE(apps.load(L"zef_pipeSystem"));
    EXPECT_FALSE(apps.find(L"zef_pipeSystem")->locked);
    EXPECT_TRUE(apps.is_mdi_aware(L"zef_pipeSystem"));
    EXPECT_EQ(g_nAlignTypeForVPipeDim4, 3);
    EXPECT_EQ(g_iElbowType, 1);
    EXPECT_EQ(g_nPipeTextBreak, 2.5);

    using entry = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);
    rx::application& app = *apps.find(L"zef_pipeSystem");
    const auto tell = std::bit_cast<entry>(app.symbol("acrxEntryPoint"));
    for (const int message : {0, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 31})
        EXPECT_EQ(tell(static_cast<AcRx::AppMsgCode>(message), &app), AcRx::kRetOK) << message;

    g_nAlignTypeForVPipeDim4 = -4;
    ASSERT_TRUE(apps.unload(L"zef_pipeSystem"));
    int stored = 0;
    EXPECT_TRUE(config.GetValue(L"nAlignTypeForVPipeDim4", stored));
    EXPECT_EQ(stored, -4);
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kInteger, 0, 0);
    TDefaultCfg::SetDefaultValue(TDefaultCfg::kReal, 1, 1.0);
}

TEST_F(ModuleCommands, LoadReadsTheDrawingDefaultsAndTheFlanges) {
    std::filesystem::create_directories(sys::system_folder());
    std::filesystem::copy_file(ZEF_SOURCE_FOLDER "/share/SpecData.xml",
                               sys::system_folder() / "SpecData.xml");
    const struct {
        const wchar_t* key;
        const char* text;
        TDefaultCfg::Kind kind;
        int index;
        double before, after;
    } rows[] = {
        {L"立管标注样式2上下交换", "1", TDefaultCfg::kBoolean, 1, 0, 1},
        {L"管长精度", "3x", TDefaultCfg::kInteger, 1, 1, 3},
        {L"井深精度", "", TDefaultCfg::kInteger, 2, 2, 0},
        {L"管线打断间距", " 2.75", TDefaultCfg::kReal, 2, 2, 2.75},
        {L"管线文字断距", "-", TDefaultCfg::kReal, 1, 1, 0},
        {L"显示管道流向", "-7", TDefaultCfg::kBoolean, 3, 0, 1},
        {L"管线粗显", "yes", TDefaultCfg::kBoolean, 2, 0, 0},
        {L"管线型比例随当前比例变化", "0", TDefaultCfg::kBoolean, 4, 1, 0},
        {L"双管扣弯样式", "2", TDefaultCfg::kInteger, 3, 0, 2},
        {L"闭合方沟端点", "0", TDefaultCfg::kBoolean, 5, 1, 0},
        {L"双管管径显示类型", "4", TDefaultCfg::kInteger, 4, 0, 4},
        {L"法兰间隙", "3.5", TDefaultCfg::kReal, 3, 3, 3.5},
        {L"自动检查多管标注", "0", TDefaultCfg::kBoolean, 6, 1, 0},
        {L"立管定位框时间可见", "1", TDefaultCfg::kBoolean, 7, 0, 1},
        {L"立管定位框长度", "600", TDefaultCfg::kReal, 4, 500, 600},
        {L"立管定位框宽度", nullptr, TDefaultCfg::kReal, 5, 500, 500}, // not in the file
        {L"是否显示长度为零的管道", "1", TDefaultCfg::kBoolean, 8, 0, 1},
    };
    std::string config = "<vantrel><kol><cmd name='DWG默认数据'><item name='图层自动分组'>1</item>"
                         "<item name='重置法兰间隙'>1</item><item name='法兰样式'>5</item>";
    for (const auto& row : rows)
        if (row.text != nullptr)
            config += "<item name='" + base::narrow(row.key) + "'>" + row.text + "</item>";
    profile_.write("sys/CmdConfig.xml", config + "</cmd></kol></vantrel>");
    const auto value_of = [](const auto& row) {
        bool flag = false;
        int integer = 0;
        double real = 0;
        TDefaultCfg::GetDefaultValue(row.kind, row.index, flag);
        TDefaultCfg::GetDefaultValue(row.kind, row.index, integer);
        TDefaultCfg::GetDefaultValue(row.kind, row.index, real);
        return flag + integer + real;
    };
    for (const auto& row : rows)
        EXPECT_EQ(value_of(row), row.before) << base::narrow(row.key);
    ASSERT_TRUE(apps.load(L"zef_kernal") && apps.load(L"zef_pipeSystem"));
    for (const auto& row : rows)
        EXPECT_EQ(value_of(row), row.after) << base::narrow(row.key);
    EXPECT_TRUE(g_bLayerAutoGroup && g_bResetFlangeGap && g_iFlangeStyle == 5);
    EXPECT_EQ(g_nBreakPipeWidth, 2.75);

    const TFlangeFunction tables = g_pfnGetFlangeDataByDn;
    TFlangeData flange;
    EXPECT_TRUE(GetFlangeDataByDn(10, 50, flange));
    EXPECT_EQ(flange.m_outerDiameter, 165);
    EXPECT_EQ(flange.m_thickness, 20);
    EXPECT_TRUE(GetFlangeDataByDn(2.5, 600, flange));
    EXPECT_EQ(flange.m_outerDiameter, 755);
    EXPECT_FALSE(GetFlangeDataByDn(25, 50, flange) || GetFlangeDataByDn(10, 51, flange));
    EXPECT_EQ(flange.m_thickness, 32);
    ASSERT_TRUE(apps.unload(L"zef_pipeSystem"));
    EXPECT_NE(g_pfnGetFlangeDataByDn, tables);
    EXPECT_FALSE(GetFlangeDataByDn(10, 50, flange));
    for (const auto& row : rows) {
        TDefaultCfg::SetDefaultValue(row.kind, row.index, row.before != 0);
        TDefaultCfg::SetDefaultValue(row.kind, row.index, static_cast<int>(row.before));
        TDefaultCfg::SetDefaultValue(row.kind, row.index, row.before);
    }
    g_bLayerAutoGroup = g_bResetFlangeGap = false;
    g_iFlangeStyle = 0;
}

} // namespace
