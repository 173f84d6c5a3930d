// The program as a user meets it: options, scripts, exit statuses, saving; and drawings of other programs.
#include "tests/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

using Args = std::vector<std::string>;

std::string path_of(std::string_view name) {
    return test::drawing(name).string();
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != text.npos;
}

std::size_t line_count(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

} // namespace

TEST(Program, BadInputGetsOneLineAndItsStatus) {
    const test::folder folder;
    folder.write("empty.dxf", "");
    folder.write("text.dxf", "hello\nworld\n");
    ASSERT_EQ(::mkfifo((folder / "pipe.dxf").c_str(), 0600), 0);
    const std::string good = path_of("r2018.dxf");
    struct row {
        Args arguments;
        std::string_view input;
        int status;
        std::string_view word; // of the one line on standard error
    };
    const row rows[] = {
        {{"--nonsense"}, "", 2, "--nonsense"},
        {{"-o"}, "", 2, "-o"},
        {{good, "-o", ""}, "", 2, "-o"},
        {{"a.dxf", "b.dxf"}, "", 2, "b.dxf"},
        {{good, "-s", (folder / "none.scr").string()}, "", 2, "none.scr"},
        {{(folder / "none.dxf").string()}, "", 3, "no such file"},
        {{folder.path().string()}, "", 3, "folder"},
        {{(folder / "empty.dxf").string()}, "", 3, "empty"},
        {{(folder / "text.dxf").string()}, "", 3, "line 1"},
        {{"/dev/zero"}, "", 3, "a device, not a file"},
        {{(folder / "pipe.dxf").string()}, "", 3, "a pipe or"},
        {{"/proc/version"}, "", 3, "the system makes it up"},
        {{good, "-c", "NOSUCH"}, "", 4, "NOSUCH"},
        {{good}, "-LAYER OFF NOSUCH\n", 4, "standard input, line 1"},
        {{good, "-c", "SETVAR\\nPICKBOX\\nmany"}, "", 4, "many"},
        {{good, "-c", "LIST\\n(handent \"FFFF\")"}, "", 4, "FFFF"},
        {{good, "-c", "-LAYER\\nOFF"}, "", 5, "turn off"},
        {{good, "-c", "-LAYER X"}, "", 4, "not supported"},
        {{good, "-c", "-LAYER N A,B,a"}, "", 4, "already exists"},
        {{good, "-c", "LIST W"}, "", 5, "input ended"},
        {{good, "-c", "OPEN\\nnowhere.dxf"}, "", 3, "nowhere.dxf"},
        {{good, "-c", "QUIT", "-o", (folder / "missing" / "a.dxf").string()}, "", 6, "missing"},
        {{good, "-c", "QUIT", "-o", folder.path().string()}, "", 6, "folder"},
        {{good, "-c", "QUIT", "-o", "/dev/full"}, "", 6, "/dev/full"},
        {{good, "--load", "nosuch.arx", "-c", "QUIT"}, "", 7, "nosuch.arx"},
    };
    for (const row& row : rows) {
        const test::run_result result = test::zefhost(row.arguments, row.input);
        EXPECT_EQ(result.status, row.status) << result.err << result.out;
        EXPECT_EQ(line_count(result.err), 1u) << result.err;
        EXPECT_TRUE(contains(result.err, row.word)) << result.err;
    }
}

TEST(Program, ARunThatBreaksOffWritesNothing) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    const auto result =
        test::zefhost({path_of("r2018.dxf"), "-c", "-LAYER OFF 墙体 \\nNOSUCH\\nQUIT", "-o", out});
    EXPECT_EQ(result.status, 4);
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_TRUE(contains(result.err, "was not written")) << result.err;
    const auto going = test::zefhost(
        {path_of("r2018.dxf"), "-c", "-LAYER OFF 墙体 \\nNOSUCH\\nQUIT", "-o", out, "--keep-going"});
    EXPECT_EQ(going.status, 4) << "the first failure stays the status";
    EXPECT_TRUE(std::filesystem::exists(out));
}

TEST(Program, SavesWhereItIsTold) {
    const test::folder folder;
    const std::string before = test::read(test::drawing("r2018.dxf"));
    const std::string file = folder.write("plan.dxf", before).string();
    const std::string copy = (folder / "copy.dxf").string();

    auto result = test::zefhost({file, "-c", "-LAYER OFF 墙体 "});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(contains(result.err, "changed and not saved: 1 object")) << result.err;
    EXPECT_EQ(test::read(file), before);

    result = test::zefhost({file, "--readonly", "-c", "-LAYER OFF 墙体 \\nQSAVE"});
    EXPECT_EQ(result.status, 6) << result.err;
    EXPECT_EQ(test::read(file), before);

    result = test::zefhost({file, "-c", "-LAYER OFF 墙体 \\nSAVEAS 2018 " + copy + "\\nU\\nQSAVE"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(test::read(copy), before) << "U behind a save, saved again";

    folder.write("copy.dxf", "old");
    result = test::zefhost({file, "-c", "SAVEAS 2018 " + copy + "\\n\\nSAVEAS 2018 " + copy + "\\nY"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(test::read(copy), before);

    result = test::zefhost({file, "-c", "QUIT", "-o", "-"});
    EXPECT_EQ(result.out, before) << "the transcript is elsewhere";
    EXPECT_TRUE(contains(result.err, "Command: QUIT"));

    result = test::zefhost({"-c", "-LAYER M 给水 C 3  \\n", "-o", copy});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(contains(test::read(copy), "  2\r\n给水\r\n 70\r\n     0\r\n 62\r\n     3\r\n"))
        << "a new drawing";
}

TEST(Program, SeveralDrawingsInOneRunStayApart) {
    const test::folder folder;
    const std::string bytes = test::read(test::drawing("r2018.dxf"));
    const std::string first = folder.write("first.dxf", bytes).string();
    const std::string second = folder.write("second.dxf", bytes).string();
    // The previous selection is the first drawing's; the second one has none.
    auto result = test::zefhost(
        {first, "-c", "LIST (handent \"102\") \\nOPEN\\n" + second + "\\nOpenSelLayer P \\nQSAVE"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(test::read(second), bytes);
    result = test::zefhost(
        {first, "-c", "OPEN\\n" + second + "\\n-LAYER OFF 墙体 \\nSAVEAS 2018 " + first + "\\nY"});
    EXPECT_EQ(result.status, 6) << result.err;
    EXPECT_EQ(test::read(first), bytes) << "a file that is open in another document";
}

TEST(Program, ScriptsInOtherEncodingsAreRead) {
    const test::folder folder;
    std::string utf16 = "\xFF\xFE";
    for (const wchar_t c : std::wstring(L"-LAYER OFF 墙体 \n")) {
        utf16 += static_cast<char>(c & 0xFF);
        utf16 += static_cast<char>(c >> 8);
    }
    for (const std::string& script :
         {std::string("-LAYER OFF 墙体 \n"), std::string("\xEF\xBB\xBF-LAYER OFF 墙体 \r\n"),
          std::string("-LAYER OFF \xC7\xBD\xCC\xE5 \n"), utf16}) {
        const auto file = folder.write("a.scr", script);
        const auto result = test::zefhost({path_of("r2018.dxf"), "-s", file.string()});
        EXPECT_EQ(result.status, 0) << result.err << result.out;
        EXPECT_TRUE(contains(result.err, "not saved: 1 object")) << result.err;
        const auto piped = test::zefhost({path_of("r2018.dxf")}, script);
        EXPECT_EQ(piped.status, 0) << piped.err << piped.out;
        EXPECT_TRUE(contains(piped.err, "not saved: 1 object")) << piped.err;
    }
    // In a text on the command line two backslashes are one.
    const auto named = test::zefhost(
        {path_of("r2018.dxf"), "-c", R"(-LAYER D a\\nb\n墙体 )", "-o", (folder / "o.dxf").string()});
    EXPECT_TRUE(contains(test::read(folder / "o.dxf"), R"(a\nb)")) << named.err << named.out;
}

// What -LAYER does, option by option: each script and the lines that change.
TEST(Program, LayerOptions) {
    struct row {
        const char* script;
        std::vector<std::string> changes;
    };
    const test::folder folder;
    const std::string before = test::read(test::drawing("r2018.dxf"));
    for (const row& row : {
             row{"-LAYER OFF 墙体 ", {"- 8", "+ -8"}},
             row{"-LAYER OFF 0 N ", {}}, // the current layer is asked for
             row{"-LAYER OFF 0 Y ", {"- 7", "+ -7"}},
             row{"-LAYER ON * ", {"- -9", "+ 9"}},
             row{"-LAYER F 墙体,图框 ", {"- 0", "+ 1", "- 4", "+ 5"}},
             row{"-LAYER F 0 ", {}},
             row{"-LAYER T 旧底图 ", {"- 1", "+ 0"}},
             row{"-LAYER LO PIPE* U 图框 ", {"- 0", "+ 4", "- 0", "+ 4", "- 4", "+ 0"}},
             row{"-LAYER C 5 墙体 ", {"- 8", "+ 5"}},
             row{"-LAYER C -5 墙体 ", {"- 8", "+ -5"}},
             row{"-LAYER C red 家具 ", {"- -9", "+ 1"}}, // a colour turns the layer on
             row{"-LAYER C 0,127,255 墙体 ", {"- 8", "+ 150", "+ 420", "+ 32767"}},
             row{"-LAYER LW 0.52 PIPE-给水 ", {"- 50", "+ 53"}},
             row{"-LAYER P N 墙体 ", {"+ 290", "+ 0"}},
             row{"-LAYER TR 50 墙体 ",
                 {"- 200",
                  "+ 201",
                  "+ 1001",
                  "+ AcCmTransparency",
                  "+ 1071",
                  "+ 33554559",
                  "+ APPID",
                  "+ 5",
                  "+ 200",
                  "+ 330",
                  "+ 7",
                  "+ 100",
                  "+ AcDbSymbolTableRecord",
                  "+ 100",
                  "+ AcDbRegAppTableRecord",
                  "+ 2",
                  "+ AcCmTransparency",
                  "+ 70",
                  "+ 0",
                  "+ 0"}},
             row{"-LAYER D 外墙 线\\n墙体 ",
                 {"- 200",
                  "+ 201",
                  "+ 1001",
                  "+ AcAecLayerStandard",
                  "+ 1000",
                  "+ ",
                  "+ 1000",
                  "+ 外墙 线",
                  "+ APPID",
                  "+ 5",
                  "+ 200",
                  "+ 330",
                  "+ 7",
                  "+ 100",
                  "+ AcDbSymbolTableRecord",
                  "+ 100",
                  "+ AcDbRegAppTableRecord",
                  "+ 2",
                  "+ AcAecLayerStandard",
                  "+ 70",
                  "+ 0",
                  "+ 0"}},
             row{"-LAYER F \\nLO \\nOFF \\n\\n", {}}, // Enter where no default is shown
             row{"-LAYER N [x],A#1 LO [x] \\nU", {}},
             row{"-LAYER S 墙体 ", {"- 0", "+ 墙体"}},
             row{"-LAYER R 家具 家具2 ", {"- 家具", "+ 家具2", "- 家具", "+ 家具2"}},
             row{"_-LAYER _OFF 墙体 _ON 墙体 ", {}},
             row{"-LAYER OFF 墙体 \\nU", {}},
             row{"-LAYER OFF 墙体 \\nU\\nREDO", {"- 8", "+ -8"}},
         }) {
        const std::string out = (folder / "out.dxf").string();
        const auto result = test::zefhost({path_of("r2018.dxf"), "-c", std::string(row.script), "-o", out});
        EXPECT_EQ(result.status, 0) << row.script << "\n" << result.err << result.out;
        EXPECT_EQ(test::differences(before, test::read(out)), row.changes) << row.script;
    }
}

TEST(Program, ShowsWhatItIsAsked) {
    const auto result =
        test::zefhost({path_of("r2000_gbk.dxf"), "-c",
                       "LIST (handent \"102\") (handent \"106\") \\nSETVAR CLAYER 墙体\\n-LAYER ? 墙* "
                       "\\nARX ?\\nHELP\\nSETVAR ? P*\\nSETVAR DWGNAME"});
    EXPECT_EQ(result.status, 0) << result.err;
    for (const char* part : {"LINE    Layer: \"PIPE-给水\"", "Handle = 102", "INSERT    Layer: \"PIPE-给水\"",
                             "Color: 1", "Current layer: \"墙体\"", "zef_pipeSystem.arx", "ZEF_PIPESTSTEM",
                             "UnLockSelLayer", "PICKBOX      3", "DWGNAME = \"r2000_gbk.dxf\" (read only)"})
        EXPECT_TRUE(contains(result.out, part)) << part << "\n" << result.out;
}

TEST(Program, DrawingsOfOtherProgramsComeBackByteForByte) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    for (const auto& file : test::corpus()) {
        const std::string before = test::read(file);
        auto result = test::zefhost({file.string(), "-c", "QUIT", "-o", out});
        EXPECT_EQ(result.status, 0) << file << result.err;
        EXPECT_TRUE(test::read(out) == before) << file << ", unchanged";
        // Every layer off, locked and thawed, and all of it taken back.
        std::filesystem::remove(out);
        result = test::zefhost({file.string(), "-c",
                                "-LAYER OFF * Y \\nUnFrozenAllLayer\\nUnLockSelLayer\\n\\nU\\nU\\nU", "-o",
                                out, "--keep-going"});
        EXPECT_TRUE(result.status == 0 || result.status == 4) << file << " ended with " << result.status;
        EXPECT_TRUE(test::read(out) == before) << file << ", changed and taken back\n" << result.err;
    }
}
