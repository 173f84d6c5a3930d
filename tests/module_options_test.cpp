// The options' way through the settings file and the registry.
#include "host/rx/applications.h"
#include "module/frame/Options.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_public/SharedOptions.h"
#include "sys/folders.h"
#include "tests/support.h"

#include <gtest/gtest.h>

#include <variant>
#include <vector>

namespace {

// In the order of the settings file.
const std::variant<int*, double*> variables[] = {
    &g_iDefaultPipeDn,    &g_dDbPipeLineWidth,     &g_bIsElevDimChangeByPipeElev,
    &g_nDnDimDist2Pipe,   &g_bStandPipeArc,        &g_nElbowRate,
    &g_nSinataryDataType, &g_iVPipeDimStyle,       &g_dVPipeDimDn2Label,
    &g_bIsPipeDimCir,     &g_nFeedCircleScale,     &g_nSprinklerRadius,
    &g_nValveScale,       &g_nDrainPtRadius,       &g_bBlk3D,
    &g_iSprinklerDistMod, &g_nWellRadius,          &g_iDimPipeGradientType,
    &g_bToolbar,          &g_bEnableSelectPreview, &g_bAutoLTScale,
    &g_bVrOsnap,          &g_bDownloadQ8Split,
};

using values = std::vector<double>;

values taken() {
    values all;
    for (const auto& variable : variables)
        std::visit([&](const auto* at) { all.push_back(*at); }, variable);
    return all;
}

void put(const values& all) {
    for (std::size_t i = 0; i < all.size(); ++i)
        std::visit([&](auto* at) { *at = static_cast<std::remove_reference_t<decltype(*at)>>(all[i]); },
                   variables[i]);
}

// The number of its place; reals a third more.
values numbered(int from = 1) {
    values all;
    for (std::size_t i = 0; i < std::size(variables); ++i)
        all.push_back(from + static_cast<int>(i) +
                      (std::holds_alternative<double*>(variables[i]) ? 1.0 / 3 : 0));
    return all;
}

// The same with a third written out.
constexpr std::string_view numbered_file = "[管线设置]\r\n"
                                           "管线默认管径=1\r\n"
                                           "双线水管线宽=2.3333333333333335\r\n"
                                           "单注标高随管线标高联动=3\r\n"
                                           "标注离管距离=4.333333333333333\r\n"
                                           "扣弯样式=5\r\n"
                                           "弯头曲率=6.333333333333333\r\n"
                                           "洁具数据读取=7\r\n"
                                           "立管楼号标注设置=8\r\n"
                                           "编号管径间距=9.333333333333334\r\n"
                                           "立管标注样式=10\r\n"
                                           "[设备设置]\r\n"
                                           "给水圆比例=11.333333333333334\r\n"
                                           "喷头半径=12.333333333333334\r\n"
                                           "阀门比例=13.333333333333334\r\n"
                                           "排水圆半径=14.333333333333334\r\n"
                                           "设备支持3D=15\r\n"
                                           "喷头间距模数=16\r\n"
                                           "[室外设置]\r\n"
                                           "检查井直径=17.333333333333332\r\n"
                                           "室外标注样式=18\r\n"
                                           "[其它设置]\r\n"
                                           "工具条状态=19\r\n"
                                           "选择预览=20\r\n"
                                           "自动线型比例=21\r\n"
                                           "采用维朗系统捕捉设置=22\r\n"
                                           "转Q8维朗文字中英文打断=23\r\n";

class ModuleOptions : public testing::Test {
protected:
    ModuleOptions() { sys::set_profile_folder(folder_.path()); }
    ~ModuleOptions() override { put(built_in_); }

    std::wstring file(std::string_view bytes) const {
        return sys::from_path(folder_.write("setting.ini", bytes));
    }
    std::wstring file() const { return sys::from_path(folder_ / "setting.ini"); }
    std::string bytes() const { return test::read(folder_ / "setting.ini"); }
    // The names and values of the registry in the order of their writing, one by one.
    std::vector<std::wstring> registry() const {
        const std::string utf16 = test::read(folder_ / "registry.reg");
        std::wstring text;
        for (std::size_t i = 2; i + 1 < utf16.size(); i += 2)
            text += static_cast<wchar_t>(static_cast<unsigned char>(utf16[i]) |
                                         static_cast<unsigned char>(utf16[i + 1]) << 8);
        std::vector<std::wstring> lines;
        for (std::size_t from = 0, end; (end = text.find(L"\r\n", from)) != text.npos; from = end + 2)
            if (text[from] == L'"')
                lines.push_back(text.substr(from, end - from));
        return lines;
    }

    const test::folder folder_;
    const values built_in_ = taken();
};

TEST_F(ModuleOptions, AreWrittenInTheirOrder) {
    put(numbered());
    EXPECT_TRUE(OptionTool::WriteSettingsFile(file().c_str()));
    EXPECT_EQ(bytes(), numbered_file);
    EXPECT_TRUE(registry().empty());
    EXPECT_FALSE(OptionTool::WriteSettingsFile((file() + L"/none").c_str()));
}

TEST_F(ModuleOptions, AFileOfOthersKeepsWhatItHolds) {
    put(numbered());
    const std::wstring path = file("; mine\n[设备设置]\n喷头半径 = 1\nunknown\n\n[x]\n阀门比例=1\n");
    EXPECT_TRUE(OptionTool::WriteSettingsFile(path.c_str()));
    const std::string after = bytes();
    EXPECT_TRUE(after.starts_with(
        "; mine\n[设备设置]\n喷头半径 = 12.333333333333334\n给水圆比例=11.333333333333334\n"))
        << after;
    EXPECT_NE(after.find("\nunknown\n\n[x]\n阀门比例=1\n[管线设置]\n管线默认管径=1\n"), after.npos) << after;
}

TEST_F(ModuleOptions, AreReadBackAndCommitted) {
    put(numbered(100));
    EXPECT_TRUE(OptionTool::ReadSettingsFile(file(numbered_file).c_str()));
    EXPECT_EQ(taken(), numbered());
    const std::vector<std::wstring> committed = {
        L"\"ElbowRate\"=\"6.333333333333333\"",
        L"\"SanitaryDataType\"=dword:00000007",
        L"\"DnDimDist2Pipe\"=\"4.333333333333333\"",
        L"\"IsStandPipeArc\"=dword:00000005",
        L"\"WellRadius\"=\"17.333333333333332\"",
        L"\"DimPipeGradientType\"=dword:00000012",
        L"\"FeedCircleScale\"=\"11.333333333333334\"",
        L"\"SprinklerRadius\"=\"12.333333333333334\"",
        L"\"ValveScale\"=\"13.333333333333334\"",
        L"\"DrainPtRadius\"=\"14.333333333333334\"",
        L"\"Toolbar\"=dword:00000013",
        L"\"VrOsnap\"=dword:00000016",
        L"\"DownloadQ8Split\"=dword:00000017",
        L"\"SelectPreview\"=dword:00000014",
        L"\"Blk3D\"=dword:0000000f",
        L"\"SprinklerDistMod\"=dword:00000010",
        L"\"IsPipeDimCir\"=dword:0000000a",
        L"\"VPipeDimStyle\"=dword:00000008",
        L"\"VPipeDimDn2Label\"=\"9.333333333333334\"",
        L"\"DefaultPipeDn\"=dword:00000001",
        L"\"DbPipeLineWidth\"=\"2.3333333333333335\"",
        L"\"IsElevDimChangeByPipeElev\"=dword:00000003",
    };
    EXPECT_EQ(registry(), committed);

    // The next start finds them there, except the one that only the file carries.
    put(numbered(100));
    ASSERT_TRUE(rx::applications::instance().load(L"zef_public"));
    EXPECT_TRUE(rx::applications::instance().unload(L"zef_public"));
    values found = numbered();
    found[20] = 120;
    EXPECT_EQ(taken(), found);
}

TEST_F(ModuleOptions, APartOfThemChangesNoOthers) {
    put(numbered(100));
    const int align_type = g_nAlignTypeForVPipeDim4;
    EXPECT_TRUE(OptionTool::ReadSettingsFile(
        file("[设备设置]\n阀门比例=2\n设备支持3D=yes\n[室外设置]\nnAlignTypeForVPipeDim4=7\n").c_str()));
    values expected = numbered(100);
    expected[12] = 2;
    EXPECT_EQ(taken(), expected);
    EXPECT_EQ(g_nAlignTypeForVPipeDim4, align_type);
    EXPECT_EQ(registry().size(), 22u);
}

TEST_F(ModuleOptions, AFileThatCannotBeReadChangesNothing) {
    put(numbered());
    EXPECT_FALSE(OptionTool::ReadSettingsFile(file().c_str()));
    EXPECT_EQ(taken(), numbered());
    EXPECT_TRUE(registry().empty());
}

} // namespace
