// Saving as another version, as the command line has it. What the files hold judge_versions.py judges.
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

std::string save_as(const test::folder& folder, const std::filesystem::path& drawing, const char* version,
                    test::run_result& run, const char* commands = "") {
    const std::string out = (folder / (std::string(version) + ".dxf")).string();
    run = test::zefhost({drawing.string(), "-c", commands, "-o", out, "--as", version});
    EXPECT_EQ(run.status, 0) << run.err << run.out;
    return test::read(out);
}

bool has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

TEST(Versions, AreNamedAsUsersKnowThem) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    for (const char* version : {"2099", "AC1015", "R13"})
        EXPECT_EQ(test::zefhost({"-c", "", "-o", out, "--as", version}).status, 2) << version;
    EXPECT_EQ(test::zefhost({"-c", "", "--as", "2018"}).status, 2);
    EXPECT_EQ(test::zefhost({"-c", "", "--since", "old.dxf"}).status, 2) << "without a picture";
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(Versions, ItsOwnVersionIsTheDrawingByteForByte) {
    const test::folder folder;
    test::run_result run;
    EXPECT_EQ(save_as(folder, test::drawing("r12.dxf"), "r12", run), test::read(test::drawing("r12.dxf")));
    EXPECT_EQ(save_as(folder, test::drawing("r2018.dxf"), "2018", run),
              test::read(test::drawing("r2018.dxf")));
}

TEST(Versions, TextsAreInTheEncodingOfTheVersion) {
    const test::folder folder;
    test::run_result run;
    constexpr std::string_view utf8 = "\xE7\xBB\x99\xE6\xB0\xB4"; // 给水
    constexpr std::string_view gbk = "\xB8\xF8\xCB\xAE";
    const std::string newer = save_as(folder, test::drawing("r2000_gbk.dxf"), "2018", run);
    EXPECT_TRUE(has(newer, utf8) && !has(newer, gbk));
    const std::string older = save_as(folder, folder / "2018.dxf", "2004", run);
    EXPECT_TRUE(has(older, gbk) && !has(older, utf8) && has(older, "ANSI_936"));
}

// What an old drawing refuses a newer one takes, and what that holds the old one shows.
TEST(Versions, PipesAreDrawnInANewerDrawingAndSeenInAnOlderOne) {
    const test::folder folder;
    test::run_result run;
    save_as(folder, test::drawing("r12.dxf"), "2018", run);
    const std::string drawn =
        save_as(folder, folder / "2018.dxf", "2013", run, "hzgx\\n\\n\\n\\n0,0 3000,0 \\n");
    EXPECT_TRUE(has(drawn, "ZEF_PIPE\n") || has(drawn, "ZEF_PIPE\r\n"));
    const std::string seen = save_as(folder, folder / "2013.dxf", "R12", run);
    EXPECT_TRUE(has(run.err, "ZEF_PIPE: 1 written as blocks of lines")) << run.err;
    EXPECT_TRUE(has(seen, "*X1") && !has(seen, "ZEF_PIPE\n") && !has(seen, "ZEF_PIPE\r\n"));
}

} // namespace
