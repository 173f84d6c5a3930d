// The catalogue of fonts: what the machine has, and what is said of it.
#include "module/fonts/FontTool.h"
#include "module/fonts/ShapeFonts.h"
#include "module/fonts/WindowsFonts.h"
#include "sys/font_names.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Texts = std::vector<CString>;

sys::installed_font Font(const wchar_t* face, const wchar_t* script, int charSet, bool trueType = true) {
    sys::installed_font font;
    font.face = face;
    font.script = script;
    font.character_set = charSet;
    font.pitch_and_family = 0x22;
    font.true_type = trueType;
    return font;
}

TEST(Fonts, WindowsFontsAreAskedByFaceAndScript) {
    const CWindowsFonts fonts({Font(L"宋体", L"CHINESE_GB2312", 134), Font(L"Marlett", L"Symbol", 2),
                               Font(L"Arial", L"Western", 0), Font(L"Arial", L"Greek", 161),
                               Font(L"", L"Greek", 161), Font(L"Beta", L"WESTERN", 0),
                               Font(L"txt", L"OEM", 255, false)});
    Texts scripts = {L"before"};
    fonts.GetScripts(nullptr, scripts);
    EXPECT_EQ(scripts, (Texts{L"before", L"CHINESE_GB2312", L"Greek", L"Western"}));
    Texts ofFace;
    const CString face = L"ARIAL";
    fonts.GetScripts(&face, ofFace);
    EXPECT_EQ(ofFace, (Texts{L"Greek", L"Western"}));
    Texts faces;
    fonts.GetFaces(L"western", faces);
    EXPECT_EQ(faces, (Texts{L"Arial", L"Beta"}));
    EXPECT_EQ(fonts.Find(L"arial", L"Greek"), nullptr);
    ASSERT_NE(fonts.Find(L"Arial", L"GREEK"), nullptr);
    EXPECT_EQ(fonts.Find(L"Arial", L"GREEK")->m_charSet, 161);
    EXPECT_EQ(fonts.Find(L"Marlett", L"Symbol"), nullptr);
}

TEST(Fonts, ShapeFontsByTheirFirstBytes) {
    const test::folder first;
    const test::folder second;
    first.write("Simplex.shx", "AutoCAD-86 shapes V1.0");
    first.write("txt.v2.SHX", "AutoCAD-86 UNIFONT 1.0");
    first.write("HZTXT.SHX", "AutoCAD-86 bigfont 1.0");
    first.write("short.shx", "AutoCAD-86 shap");
    first.write("other.shx", "AutoCAD-86 picture 1.0");
    first.write("shapes.txt", "AutoCAD-86 shapes V1.0");
    second.write("Simplex.shx", "AutoCAD-86 shapes V1.0");
    second.write("ISO.shx", "AutoCAD-86 shapes V1.0");
    const ShapeFonts fonts =
        ListShapeFonts({L"/no/such/folder", first.path().native().c_str(), second.path().native().c_str()});
    EXPECT_EQ(fonts.m_shapeFonts, (Texts{L"ISO", L"Simplex", L"txt"}));
    EXPECT_EQ(fonts.m_bigFonts, (Texts{L"HZTXT"}));
}

// What is installed here differs; setup.sh sees to a Chinese font.
TEST(Fonts, OfThisMachine) {
    const test::profile profile;
    std::filesystem::create_directories(profile / "sys");
    test::put(profile / "sys/big.shx", "AutoCAD-86 bigfont 1.0");
    test::put(profile / "sys/fonts.fmp",
              "宋体;no such font\r\n宋体;AR PL UMing CN\nAR PL UMing CN;none\nx\n");
    int charSet = 0;
    int flags = 0;
    EXPECT_TRUE(FontTool::IsWinFont(L"宋体", L"chinese_gb2312", &charSet, &flags, true));
    EXPECT_EQ(charSet, 134);
    EXPECT_EQ(flags & 3, 2); // of variable pitch
    EXPECT_TRUE(FontTool::IsWinFont(L"@AR PL UMing CN", L"Western", nullptr, nullptr, false));
    EXPECT_FALSE(FontTool::IsWinFont(L"ar pl uming cn", L"CHINESE_GB2312", &charSet, nullptr, false));
    EXPECT_FALSE(FontTool::IsWinFont(L"AR PL UMing CN", L"Thai", &charSet, nullptr, false));
    EXPECT_EQ(charSet, 134);
    Texts scripts;
    FontTool::GetFontEncoded(scripts, false);
    EXPECT_TRUE(std::ranges::find(scripts, CString(L"Western")) != scripts.end());
    Texts faces;
    FontTool::GetWinFont(L"CHINESE_GB2312", faces, false);
    EXPECT_EQ(std::ranges::count(faces, CString(L"AR PL UMing CN")), 1);
    Texts shapes;
    Texts bigs;
    FontTool::GetShxFont(shapes, bigs, true);
    EXPECT_EQ(bigs, Texts{L"big"});

    // A rebuilt catalogue forgets what went.
    test::put(profile / "sys/fonts.fmp", "");
    EXPECT_TRUE(FontTool::IsWinFont(L"宋体", L"CHINESE_GB2312", nullptr, nullptr, false));
    EXPECT_FALSE(FontTool::IsWinFont(L"宋体", L"CHINESE_GB2312", nullptr, nullptr, true));
}

} // namespace
