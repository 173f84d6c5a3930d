// A person who calls scripts: what goes wrong in one ends it, not the session.
#include "tests/support.h"
#include "tests/terminal.h"

#include <gtest/gtest.h>

TEST(ProgramScripts, APersonGoesOnWhereAScriptFails) {
    const test::folder folder;
    const std::string file = folder.write("plan.dxf", test::read(test::drawing("r2018.dxf"))).string();
    folder.write("wrong.scr", "CIRCLE 0,0 5\nNOSUCH\nCIRCLE 0,0 6\n");
    folder.write("text.scr", "TEXT 0,0 5 0\none line\nLINE 1,1 2,2 \n");
    test::terminal person({file}, (folder / "profile").string());
    ASSERT_TRUE(person.shows("Command: "));
    for (const auto& [typed, shown] : std::initializer_list<std::pair<const char*, const char*>>{
             {"SCRIPT wrong\r", "Unknown command \"NOSUCH\""},
             {"", "Command: "},
             {"LIST L \r", "radius 5.0"}, // and not 6: the rest was left out
             {"", "Command: "},
             {"SCRIPT text\r", "eXit/Undo"},
             {"", "Command: "},
             {"LIST L \r", "X=2.0000"},
             {"", "Command: "},
             {"TEXT 0,0 5 0\r", "Enter text: "}, // a person writes line after line
             {"a\r", "Enter text: "},
             {"b\r", "Enter text: "},
             {"\r", "Command: "},
             {"DELAY 30000\r", "DELAY 30000"},
             {test::key_interrupt.data(), "Command: "},
             {"QUIT\rY\r", ""},
         }) {
        person.type(typed);
        ASSERT_TRUE(person.shows(shown)) << "behind '" << typed << "'";
    }
    EXPECT_EQ(person.ends(), 4);
}
