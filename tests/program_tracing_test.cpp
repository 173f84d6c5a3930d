// What an application is told while the program works, in which order, as the application itself writes it
// down: the whole transcript of a session.
#include "tests/support.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

// The application's lines of a session, and behind ">" the commands that were typed.
std::string told(const test::run_result& run) {
    constexpr std::string_view prompt = "Command: ";
    std::istringstream all(run.out);
    std::string lines;
    for (std::string line; std::getline(all, line);) {
        if (line.starts_with("~ "))
            lines += line.substr(2) + "\n";
        else if (const auto at = line.find(prompt); at != line.npos && line.size() > at + prompt.size())
            lines += "> " + line.substr(at + prompt.size()) + "\n";
    }
    return lines;
}

std::string opening(const std::string& document) {
    return "database made\n"
           "document " +
           document +
           ": create started\n"
           "document " +
           document +
           ": created\n"
           "document " +
           document +
           ": to be active\n"
           "document " +
           document +
           ": current\n"
           "document " +
           document +
           ": active\n"
           "load message for " +
           document +
           "\n"
           "model space: eLockViolation\n";
}

std::string closing(const std::string& document) {
    return "closing begins\n"
           "unload message for " +
           document +
           "\n"
           "document " +
           document +
           ": active no more\n"
           "document " +
           document +
           ": goes\n"
           "data of a document go\n"
           "database goes\n"
           "goodbye\n"
           "a document without a name is gone\n";
}

// A command, its lock around it.
std::string command(const std::string& name, const std::string& does, const std::string& ends = "ended") {
    return "> " + name +
           "\n"
           "lock of " +
           name +
           ": from unlocked to write\n"
           "lock of " +
           name + ": now write\n" + name + " will start\n" + does + name + " " + ends +
           "\n"
           "lock of #" +
           name +
           ": from write to unlocked\n"
           "lock of #" +
           name + ": now unlocked\n";
}

const std::string line_added = "opened AcDbBlockTableRecord\n"
                               "appended AcDbLine\n"
                               "modified AcDbBlockTableRecord\n";
const std::string lines_changed = line_added + line_added +
                                  "opened AcDbLine\n"
                                  "modified AcDbLine\n"
                                  "opened AcDbLine\n"
                                  "erased AcDbLine\n";
const std::string one = "Drawing1.dxf";
const std::string two = "Drawing2.dxf";

} // namespace

TEST(ProgramTracing, ASessionIsToldInItsOrder) {
    struct row {
        std::string_view name;
        std::string script;
        std::string expected; // between the opening of the first document and the closing of the last
        std::string last = one;
        int status = 0;
        std::string_view word = ""; // on standard error
    };
    std::string new_document = "> NEW\nNEW will start\n" + opening(two) + "NEW ended\n";
    new_document.insert(new_document.find("document Drawing2.dxf: to be"),
                        "document Drawing1.dxf: active no more\n");
    const row rows[] = {
        {"changes, undo and redo", "TRCHANGE\nU\nREDO\n",
         command("TRCHANGE", lines_changed) + command("U", "unappended AcDbLine, undoing\n") +
             command("REDO", "reappended AcDbLine, undoing\n")},
        {"a cancelled command keeps what it did", "TRASK\n2\n^C\nU\n",
         command("TRASK", line_added, "cancelled") + command("U", "unappended AcDbLine, undoing\n")},
        {"a failed command", "_trfail\n", "> _trfail\n" + command("TRFAIL", "", "failed").substr(9), one, 4,
         "command TRFAIL failed"},
        {"no command", "NOSUCH\n", "> NOSUCH\nunknown: NOSUCH\n", one, 4, "NOSUCH"},
        {"who hears of the end may change the drawing and ask nobody", "TRAFTER\nTRCHANGE\nTRCHANGE\nU\n",
         command("TRAFTER", "") +
             [] {
                 std::string all = command("TRCHANGE", lines_changed);
                 const std::string end = "TRCHANGE ended\n";
                 return all.insert(all.find(end) + end.size(), line_added + "nobody can be asked\n");
             }() +
             command("U", "unappended AcDbLine, undoing\nunappended AcDbLine, undoing\n")},
        {"a refused lock, and the application's context", "TRVETO\nTRCHANGE\nTRCHANGE\nTRSESSION\n",
         command("TRVETO", "") +
             "> TRCHANGE\n"
             "lock of TRCHANGE: from unlocked to write\n"
             "lock of TRCHANGE: now write\n"
             "vetoed\n"
             "lock of TRCHANGE: vetoed\n"
             "> TRSESSION\n"
             "TRSESSION will start\n"
             "application context\n"
             "model space: eLockViolation\n"
             "no commands here\n"
             "lock of TRLOCK: from unlocked to write\n"
             "lock of TRLOCK: now write\n" +
             line_added +
             "lock of #TRLOCK: from write to unlocked\n"
             "lock of #TRLOCK: now unlocked\n"
             "TRSESSION ended\n",
         one, 4, "TRCHANGE: eVetoed"},
        {"outside of the command, and after it", "TROUTSIDE\n",
         command("TROUTSIDE", "model space: eLockViolation\n") +
             command("EXECUTEFUNCTION", "called later\n" + line_added).substr(18) +
             command("TRASK", line_added)},
        {"commands inside of a command", "TRNEST\n",
         command("TRNEST", "TRASK will start\n" + line_added + line_added +
                               "TRASK ended\n"
                               "TRASK will start\n"
                               "TRASK ended\n"
                               "TRASK will start\n"
                               "TRASK cancelled\n"
                               "unknown: NOSUCHTHING\n"
                               "5100 -5001 -5001 -5001\n")},
        {"a command in the middle of a question", "TRASK\n'REGEN\n1\n'TRCHANGE\n\n",
         command("TRASK", "REGEN will start\nREGEN ended\n" + line_added), one, 4, "transparently"},
        {"transactions", "TRTRANS\n",
         command("TRTRANS", "transaction started, 1 now\n"
                            "opened AcDbLayerTableRecord\n"
                            "transaction started, 2 now\n" +
                                line_added +
                                "unappended AcDbLine, undoing\n"
                                "transaction aborted, 1 now\n"
                                "the outermost transaction ends\n"
                                "modified AcDbLayerTableRecord\n"
                                "transaction ended, 0 now\n"
                                "transaction started, 1 now\n"
                                "transaction aborted, 0 now\n"),
         one, 0, "left 1 transactions open"},
        {"a second document", "TRCHANGE\nNEW\n\nTRCOUNT\nTRCHANGE\nCLOSE\nY\nU\nTRCOUNT\n",
         command("TRCHANGE", lines_changed) + new_document +
             command("TRCOUNT", "1 commands in Drawing2.dxf\n") + command("TRCHANGE", lines_changed) +
             "> CLOSE\nCLOSE will start\n" + closing(two) +
             "document Drawing1.dxf: to be active\n"
             "document Drawing1.dxf: current\n"
             "document Drawing1.dxf: active\n"
             "CLOSE ended\n" +
             command("U", "unappended AcDbLine, undoing\n") +
             command("TRCOUNT", "3 commands in Drawing1.dxf\n")},
        {"what another document is given, it does when it is looked at", "NEW\n\nTROTHERS\nU\n",
         new_document +
             "> TROTHERS\nTROTHERS will start\n"
             "lock of : from unlocked to write\n"
             "lock of : now write\n"
             "document Drawing1.dxf: current\n" +
             line_added +
             "lock of #: from write to unlocked\n"
             "lock of #: now unlocked\n"
             "TROTHERS ended\n"
             "document Drawing2.dxf: current\n"
             "document Drawing2.dxf: active no more\n"
             "document Drawing1.dxf: to be active\n"
             "document Drawing1.dxf: current\n"
             "document Drawing1.dxf: active\n" +
             command("TRCOUNT", "1 commands in Drawing1.dxf\n") +
             command("U", "unappended AcDbLine, undoing\n") +
             [] {
                 std::string all = closing(two); // nobody looked at it
                 const std::string active = "document Drawing2.dxf: active no more\n";
                 return all.erase(all.find(active), active.size());
             }()},
        {"a variable of the drawing", "SETVAR\nLTSCALE\n2\nQUIT\n",
         command("SETVAR", "variable LTSCALE will change\n"
                           "header LTSCALE will change\n"
                           "header LTSCALE changed\n"
                           "variable LTSCALE changed\n") +
             "> QUIT\nQUIT will start\nquit\nQUIT ended\n"},
    };
    for (const row& row : rows) {
        const auto run =
            test::zefhost({"--no-module", "--load", "tracing", "--keep-going", "-c", row.script});
        EXPECT_EQ(told(run), opening(one) + row.expected + closing(row.last)) << row.name;
        EXPECT_EQ(run.status, row.status) << row.name << run.err;
        EXPECT_NE(run.err.find(row.word), run.err.npos) << row.name << run.err;
    }
}

TEST(ProgramTracing, FilesAreOpenedAndSavedAsToldOf) {
    const test::folder folder;
    const std::string path = folder.write("a.dxf", test::read(test::drawing("r2018.dxf"))).string();
    const auto run =
        test::zefhost({path, "--no-module", "--load", "tracing", "-c", "QSAVE\nOPEN\nnone.dxf\n"});
    const std::string all = told(run);
    EXPECT_TRUE(all.starts_with("opening begins\n"
                                "database made\n"
                                "document a.dxf: create started\n"
                                "document a.dxf: created\n"
                                "opening ends\n"
                                "document a.dxf: to be active\n"))
        << all;
    EXPECT_NE(all.find("QSAVE will start\nsave begins\nsave complete\nQSAVE ended\n"), all.npos) << all;
    EXPECT_NE(all.find("opening begins\n"
                       "database made\n"
                       "document none.dxf: create started\n"
                       "document none.dxf: not created\n"
                       "database goes\n"
                       "OPEN failed\n"),
              all.npos)
        << all;
}
