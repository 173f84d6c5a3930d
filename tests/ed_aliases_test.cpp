// Aliases of commands: lines of the file, its encodings, and that a change counts at once.
#include "host/ed/command_aliases.h"
#include "tests/sys_support.h"

#include <gtest/gtest.h>

namespace {

TEST(EdAliases, AreReadFromTheFileAsItIsNow) {
    const test::profile profile;
    std::filesystem::create_directories(sys::system_folder());
    const struct {
        std::string file;
        const wchar_t* alias;
        const wchar_t* command;
    } rows[] = {
        {"L, *LINE\n", L"l", L"LINE"},
        {"; L, *ARC\r\n  l ,\t *line \r\n", L"L", L"line"},
        {"L,*LINE\nL,*CIRCLE", L"L", L"CIRCLE"},
        {"EDIT, START EDIT, 9,File: ,\nL, *\n, *LINE\nL *LINE\n", L"L", L""},
        {"EDIT, START EDIT, 9,File: ,\n", L"EDIT", L""},
        {"\xB9\xDC, *gxsz\n", L"管", L"gxsz"},
        {std::string("\xFF\xFE\x7B\xA1,\0*\0X\0", 10), L"ꅻ", L"X"},
        {"\xFF\xFF, *X\nL, *LINE\n", L"L", L""}, // in no encoding
        {"", L"L", L""},
    };
    for (const auto& row : rows) {
        test::put(sys::system_folder() / "Acad.PGP", row.file);
        EXPECT_EQ(ed::command_of_alias(row.alias), row.command) << row.file;
    }
    std::filesystem::remove_all(sys::system_folder());
    EXPECT_EQ(ed::command_of_alias(L"L"), L"");
}

TEST(EdAliases, WorkAtThePromptBehindTheCommandsOwnNames) {
    const test::folder profile;
    std::filesystem::create_directories(profile / "sys");
    profile.write("sys/acad.pgp", "q7, *_.setvar\nLINE, *QUIT\nloop, *loop\n");
    const auto run = test::zefhost({"--no-module", "--profile", profile.path().string(), "--keep-going"},
                                   "Q7 LUNITS\n\nLINE 0,0 1,1 \nloop\n");
    EXPECT_NE(run.out.find("LUNITS"), run.out.npos) << run.out;
    EXPECT_NE(run.out.find("first point"), run.out.npos) << run.out;
    EXPECT_EQ(run.status, 4) << "loop is no command";
}

} // namespace
