// The console as a person has it: at a terminal, key by key.
#include "tests/support.h"
#include "tests/terminal.h"

#include <csignal>

#include <gtest/gtest.h>

namespace {

using test::key_end;
using test::key_enter;
using test::key_escape;
using test::key_interrupt;
using test::key_left;
using test::key_tab;
using test::key_up;

// A copy: who works at a terminal has his drawing to himself, and other tests read that one meanwhile.
std::string plan() {
    static const test::folder folder;
    return folder.write("plan.dxf", test::read(test::drawing("r2018.dxf"))).string();
}

// What is typed at one prompt after another, and what each shows behind it.
struct step {
    std::string_view keys;
    std::string_view shown;
};

void act(test::terminal& terminal, std::initializer_list<step> steps) {
    for (const step& step : steps) {
        terminal.type(step.keys);
        ASSERT_TRUE(terminal.shows(step.shown)) << "behind '" << step.keys << "'";
    }
}

} // namespace

TEST(Terminal, EscapeAndInterruptCancelAtEveryKindOfPrompt) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    ASSERT_TRUE(terminal.shows("Command: "));
    for (const std::string_view cancel : {key_escape, key_interrupt}) {
        act(terminal, {{"LIN", "LIN"}, {cancel, "*Cancel*"}, {"", "Command: "}});
        for (const step& prompt : {step{"LINE\r", "first point: "},                // a point
                                   {"LINE\r0,0\r", "[Undo]: "},                    // with keywords
                                   {"CIRCLE\r0,0\r", "or [Diameter]"},             // a distance
                                   {"ERASE\r", "Select objects: "},                // objects
                                   {"ERASE\rW\r", "first corner: "},               // a window of them
                                   {"-LAYER\r", "Enter an option"},                // a keyword
                                   {"-LAYER\rD\r", "description: "},               // a line of text
                                   {"SETVAR\rPICKBOX\r", "new value for PICKBOX"}, // an integer
                                   {"OPEN\r", "drawing to open: "},                // a file
                                   {"OpenSelLayer\r", "<退出>:"}})                 // the module's
        {
            act(terminal, {prompt, {cancel, "*Cancel*"}, {"", "Command: "}});
        }
    }
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.ends(), 0) << "nothing was changed, so nothing is asked";
}

TEST(Terminal, AWrongAnswerIsAskedAgain) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    act(terminal, {{"", "Command: "},
                   {"NOSUCH\r", "Unknown command \"NOSUCH\""},
                   {"", "Command: "},
                   {"CIRCLE\r", "Specify center point"},
                   {"nowhere\r", "Specify center point"},
                   {"\r", "Specify center point"}, // Enter is no answer here
                   {"1,1\r", "radius of circle"},
                   {"-3\r", "radius of circle"},
                   {"2\r", "Command: "},
                   {"SETVAR\r", "variable name"},
                   {"NOSUCH\r", "Unknown variable name"},
                   {"", "variable name"},
                   {"PICKBOX\r", "new value"},
                   {"many\r", "Requires an integer"},
                   {"", "new value"},
                   {"5\r", "Command: "},
                   {"-LAYER\r", "Enter an option"},
                   {"nonsense\r", "Invalid option keyword"},
                   {"", "Enter an option"},
                   // What stands behind a wrong answer on its line was meant for questions that do not come.
                   {"OFF NOSUCH ERASE ALL\r", "No matching layer names"},
                   {"", "turn off: "},
                   {"\r", "Enter an option"},
                   {"\r", "Command: "},
                   {"QUIT\r", "discard all changes"},
                   {"perhaps\r", "discard all changes"},
                   {"Y\r", ""}});
    EXPECT_EQ(terminal.ends(), 0);
}

TEST(Terminal, TabCompletes) {
    const test::folder profile;
    const test::folder folder;
    folder.write("ground floor.dxf", test::read(test::drawing("r12.dxf")));
    folder.write("ground notes.txt", "none of ours");
    test::terminal terminal({plan()}, profile.path().string());
    // What was completed is seen by what it does: the line itself is redrawn by pieces.
    act(terminal, {{"", "Command: "},
                   {"xatt\t\r", "name of file to attach"}, // a command
                   {key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"_.opensel\t\r", "<退出>:"}, // one of the module's, behind prefixes
                   {key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"RED\t\t", "REDO "}, // two of them: both are shown
                   {"", "REDRAW"},
                   {key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"-LAYER\r", "Enter an option"},
                   {"des\t\r", "Enter description: "}, // a keyword
                   {key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"ERASE\r", "Select objects: "},
                   {"cross\t\r", "first corner: "}, // a way to select
                   {key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"OPEN\r", "drawing to open: "}});
    terminal.type(folder.path().string() + "/gr\t\r"); // a file; nothing else is offered
    act(terminal, {{"", "Command: "}, {"SETVAR DWGNAME\r", "ground floor.dxf"}, {"", "Command: "}});
    terminal.type("QUIT\r");
    EXPECT_EQ(terminal.ends(), 0);
}

TEST(Terminal, EscapeAndANewSizeLeaveOnePrompt) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    ASSERT_TRUE(terminal.shows("Command: "));
    act(terminal, {{"LIN", "LIN"}, {key_escape, "*Cancel*"}, {"", "Command: "}});
    EXPECT_EQ(terminal.seen().beginning_with("Command: LIN"), 1) << terminal.seen().text();
    EXPECT_EQ(terminal.seen().beginning_with("Command:"), 2) << terminal.seen().text();
    act(terminal, {{"LI", "LI"}});
    terminal.resize(60, 24);
    ASSERT_TRUE(terminal.shows("Command: LI")); // once more, in the place of the old one
    EXPECT_EQ(terminal.seen().beginning_with("Command: LI"), 2) << terminal.seen().text();
    // The list stands between a prompt of three rows and the same prompt again.
    act(terminal, {{"\x15", ""}, {"-LAYER\r", "rEconcile/Xref]: "}, {"LT\t", ""}});
    act(terminal, {{"\x15L\t", "LOck"}, {"", "rEconcile/Xref]: L"}});
    EXPECT_EQ(terminal.seen().beginning_with("LOck"), 1) << terminal.seen().text();
    EXPECT_EQ(terminal.seen().beginning_with("Enter an option"), 2) << terminal.seen().text();
}

TEST(Terminal, TabKnowsLayerNames) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    act(terminal, {{"", "Command: "},
                   {"-LAYER\r", "Enter an option"},
                   {"N\r", "new layer(s): "},
                   {"\"A one\"\r", "Enter an option"},
                   {"LO\r", "to lock: "},
                   {"def\t,a\t\r", "Enter an option"}, // the second one has a blank
                   {"?\r", "to list"},
                   {"\r", "Layer name"},
                   {"", "Defpoints"},
                   {"", "On Locked"},
                   {"", "A one"},
                   {"", "On Locked"},
                   {"", "Enter an option"}});
}

TEST(Terminal, LongListsStopAfterEachScreenfulAndAtEscape) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    terminal.resize(80, 10);
    constexpr std::string_view more = "Press ENTER to continue: ";
    act(terminal, {{"", "Command: "}, {"LIST ALL\r", "found"}, {"\r", more}, {"\r", more}});
    EXPECT_EQ(terminal.seen().beginning_with("Command: "), 0) << "a screenful of it";
    act(terminal, {{key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"gxsz\r", "<退"},
                   {"B\r", more},
                   {"\r", more},
                   {key_interrupt, "*Cancel*"},
                   {"", "Command: "}, // it does not ask further
                   {"HELP\r", more},
                   {key_interrupt, "*Cancel*"},
                   {"", "Command: "},
                   {"SETVAR PICKBOX\r", "new value"}, // which the interrupt is not meant for any more
                   {"\r", "Command: "},
                   {"QUIT\r", ""}});
    EXPECT_EQ(terminal.ends(), 0);
}

// CloseSelLayer turns object snap off while it asks what is to be hidden in a reference.
TEST(Terminal, WhatACommandSetsOnItsWayIsNotKeptWhenItIsKilled) {
    const test::folder profile;
    for (const int signal : {0, SIGTERM, SIGHUP}) {
        test::terminal terminal({test::drawing("layer_tools/pipes.dxf").string()}, profile.path().string());
        act(terminal, {{"", "Command: "}, {"SETVAR OSMODE\r", signal == 0 ? "<4133>" : "<37>"}});
        act(terminal, {{"37\r", "Command: "}});
        act(terminal,
            {{"CloseSelLayer\r", "<退出>:"}, {"(handent \"216\")\r", "外部参照上要关闭的图元<退出>: "}});
        act(terminal, {{"'SETVAR OSMODE\r", "<0>"}, {"\r", "<退出>: "}});
        if (signal == 0)
            terminal.hang_up();
        else
            terminal.send_signal(signal);
        terminal.ends();
    }
}

TEST(Terminal, HistoryGoesOnInTheNextSessionAndIsBounded) {
    const test::folder profile;
    {
        test::terminal terminal({plan()}, profile.path().string());
        act(terminal, {{"", "Command: "},
                       {"SETVAR PICKBOX 7\r", "Command: "},
                       {key_up, "SETVAR PICKBOX 7"},
                       {key_left, ""},
                       {"1\r", "Command: "}, // 17: a digit typed in front of the last one
                       {"SETVAR PICKBOX\r", "<17>"},
                       {key_escape, "*Cancel*"},
                       {"", "Command: "},
                       {"QUIT\r", ""}});
        EXPECT_EQ(terminal.ends(), 0);
    }
    {
        test::terminal terminal({plan()}, profile.path().string());
        act(terminal, {{"", "Command: "},
                       {key_up, "QUIT"},
                       {key_up, "SETVAR PICKBOX"},
                       {key_up, "17"},
                       {key_escape, "*Cancel*"},
                       {"", "Command: "},
                       {"QUIT\r", ""}});
        EXPECT_EQ(terminal.ends(), 0);
    }
    std::string many;
    for (int i = 0; i < 5000; ++i)
        many += "SETVAR PICKBOX " + std::to_string(i % 50) + "\n";
    profile.write("history", many);
    test::terminal terminal({plan()}, profile.path().string());
    act(terminal, {{"", "Command: "},
                   {key_up, "SETVAR PICKBOX 49"},
                   {key_escape, "*Cancel*"},
                   {"", "Command: "},
                   {"QUIT\r", ""}});
    EXPECT_EQ(terminal.ends(), 0);
    EXPECT_LT(test::read(profile / "history").size(), many.size() / 4);
}

TEST(Terminal, NothingLosesTheDrawingUnasked) {
    const test::folder profile;
    const test::folder folder;
    const std::string bytes = test::read(test::drawing("r2018.dxf"));
    const std::string file = folder.write("plan.dxf", bytes).string();
    test::terminal terminal({file}, profile.path().string());
    // Ctrl-D in a command ends the command, at the command prompt it asks.
    act(terminal, {{"", "Command: "},
                   {"ERASE (handent \"102\")\r", "Select objects: "},
                   {"\r", "Command: "},
                   {"LINE\r", "first point: "},
                   {key_end, "*Cancel*"},
                   {"", "Command: "},
                   {key_end, "discard all changes"},
                   {key_end, "*Cancel*"},
                   {"", "Command: "},
                   {key_interrupt, "*Cancel*"},
                   {"", "Command: "},
                   {"CLOSE\r", "discard all changes"},
                   {"N\r", "Command: "},
                   {"U\r", "ERASE"},
                   {"", "Command: "},
                   {"QSAVE\r", "Command: "}});
    EXPECT_EQ(test::read(file), bytes);
    act(terminal,
        {{"LINE 0,0 10,0\r", "[eXit/Undo]: "}, {"\r", "Command: "}, {key_end, "discard all changes"}});
    terminal.type("Y\r");
    EXPECT_EQ(terminal.ends(), 0);
    EXPECT_EQ(test::read(file), bytes);
}

// A line may hold the answers to several questions; those that are asked meanwhile are shown with them.
TEST(Terminal, LinesTypedAheadAnswerQuestionByQuestion) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    ASSERT_TRUE(terminal.shows("Command: "));
    act(terminal, {{"LINE 0,0 10,0\r", "Specify first point: 0,0"},
                   {"", "Specify next point or [Undo]: 10,0"},
                   {"", "[eXit/Undo]: "},
                   // Several lines before they are asked for.
                   {"X\rCIRCLE\r5,5\r2\rLIST L\r", "1 found"},
                   {"", "Select objects: "},
                   {"\r", "center point,"},
                   {"", "Command: "},
                   {"QUIT Y\r", "discard all changes"}});
    EXPECT_EQ(terminal.ends(), 0);
}

TEST(Terminal, HelpTellsByGroupAndByName) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    terminal.resize(200, 200); // one page
    act(terminal, {{"", "Command: "},
                   {"HELP\r", "The host's commands:"},
                   {"", "draws a circle"},
                   {"", "Commands of ZEF_PIPESTSTEM"},
                   {"", "OpenSelLayer"},
                   {"", "keeps only the layers of picked entities on"},
                   {"", "Command: "},
                   {"HELP RE\r", "brings the display up to date"},
                   {"", "also as REGEN"},
                   {"", "'RE"},
                   {"", "Command: "},
                   {"HELP opensellayer\r", "a command of ZEF_PIPESTSTEM"},
                   {"", "Command: "},
                   {"HELP NOSUCH\r", "Unknown command \"NOSUCH\""}});
}

// A window that is closed ends the program.
TEST(Terminal, ATerminalThatGoesAwayEndsTheRun) {
    const test::folder profile;
    test::terminal terminal({plan()}, profile.path().string());
    ASSERT_TRUE(terminal.shows("Command: "));
    terminal.hang_up();
    EXPECT_NE(terminal.ends(), 0);
}
