// The host's own commands: what they put into a drawing, and what they say.
#include "base/number_text.h"
#include "base/utf.h"
#include "host/db/core/imp_database.h"
#include "tests/support.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

constexpr std::uint64_t first_new_handle = 0x200; // of r2018.dxf

// The values of some groups of an entity, numbers rounded to two places.
std::string values(dxf::padded_text record, std::initializer_list<int> codes) {
    std::string found;
    const dxf::group_list groups(record);
    for (const int code : codes)
        if (const auto text = groups.text({"*"}, code)) {
            const auto real = base::parse_real(*text);
            found += " " + (real ? base::real_text(std::round(*real * 100.0) / 100.0 + 0.0)
                                 : std::string(dxf::trimmed(*text)));
        }
    return found;
}

std::string described(const dxf::record_table& records, dxf::record_id id) {
    const std::string type(records.type_name(id));
    const dxf::padded_text text = records.text(id);
    if (type == "LINE")
        return type + values(text, {10, 20, 11, 21});
    if (type == "CIRCLE")
        return type + values(text, {10, 20, 40});
    if (type == "TEXT")
        return type + values(text, {10, 20, 40, 50, 1, 72, 73});
    if (type == "INSERT")
        return type + values(text, {2, 10, 20, 41, 42, 50});
    if (type == "ATTRIB")
        return type + values(text, {2, 1});
    return type;
}

// What a drawing has of new entities, in the order in which they were made.
std::vector<std::string> new_entities(const std::string& file) {
    std::vector<std::string> found;
    AcDbDatabase database(false, true);
    if (database.dxfIn(base::widen(file).c_str()) != Acad::eOk)
        return {"unreadable"};
    const dxf::record_table& records = database.imp().records();
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if ((records.kind(id) == dxf::record_kind::entity || records.type(id) == dxf::type_attrib) &&
            records.handle(id) >= first_new_handle)
            found.push_back(described(records, id));
    return found;
}

} // namespace

TEST(HostCommands, WhatTheyMake) {
    struct row {
        std::string script;
        std::vector<std::string> made;
    };
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    const std::string plan = test::drawing("r2018.dxf").string();
    const std::string other = test::drawing("r12.dxf").string();
    for (const row& row : {
             row{"LINE 0,0 10,0 @0,10 C",
                 {"LINE 0.0 0.0 10.0 0.0", "LINE 10.0 0.0 10.0 10.0", "LINE 10.0 10.0 0.0 0.0"}},
             row{"LINE 0,0 1,1 2,2 U 3,3 U U U X", {}},
             row{"LINE 0,0 1,1 \nLINE\n\n2,0\n\n", {"LINE 0.0 0.0 1.0 1.0", "LINE 1.0 1.0 2.0 0.0"}},
             row{"LINE 0,0 1,1 ^C", {"LINE 0.0 0.0 1.0 1.0"}}, // what was drawn stays
             row{"CIRCLE 1,2 3\nCIRCLE 4,5\n\n", {"CIRCLE 1.0 2.0 3.0", "CIRCLE 4.0 5.0 3.0"}},
             row{"C 1,2 D 5\nC 3,3 3,7", {"CIRCLE 1.0 2.0 2.5", "CIRCLE 3.0 3.0 4.0"}},
             row{"C 2P 0,0 10,0\nC 3P 0,0 10,0 5,5", {"CIRCLE 5.0 0.0 5.0", "CIRCLE 5.0 0.0 5.0"}},
             row{"LINE 0,0 9000,0 \nLINE 0,0 0,9000 \nC T 8000,0 0,8000 10",
                 {"LINE 0.0 0.0 9000.0 0.0", "LINE 0.0 0.0 0.0 9000.0", "CIRCLE 10.0 10.0 10.0"}},
             // Of the eight circles that touch both, the one between them where they were picked.
             row{"C 80000,0 10\nC 80060,0 10\nC T 80000,10 80060,10 30",
                 {"CIRCLE 80000.0 0.0 10.0", "CIRCLE 80060.0 0.0 10.0", "CIRCLE 80030.0 26.46 30.0"}},
             row{"TEXT 1,2 3 90\na b\nC 0,0 1", {"TEXT 1.0 2.0 3.0 90.0 a b", "CIRCLE 0.0 0.0 1.0"}},
             row{"TEXT J R 1,2 3 0\nx\n", {"TEXT"}}, // its place depends on the font: not looked at here
             row{"INSERT 阀门 1,2 2  30\nDN50\n", {"INSERT 阀门 1.0 2.0 2.0 2.0 30.0", "ATTRIB DN DN50"}},
             row{"INSERT 阀门 S 3 R 15 1,2\n\n", {"INSERT 阀门 1.0 2.0 3.0 3.0 15.0", "ATTRIB DN DN20"}},
             row{"SETVAR ATTREQ 0\nINSERT 阀门 1,2 2 3 0\nSETVAR ATTREQ 1",
                 {"INSERT 阀门 1.0 2.0 2.0 3.0", "ATTRIB DN DN20"}},
             row{"LINE 0,0 1,1 \nERASE L \n", {}},
             row{"C 70000,0 5\nERASE W 69990,-10 70010,10 \n", {}},
         }) {
        std::filesystem::remove(out);
        const auto result =
            test::zefhost({plan, "-s", folder.write("a.scr", row.script).string(), "-o", out});
        EXPECT_EQ(result.status, 0) << row.script << "\n" << result.err << result.out;
        std::vector<std::string> made = new_entities(out);
        if (row.made == std::vector<std::string>{"TEXT"})
            for (std::string& one : made)
                one.resize(4);
        EXPECT_EQ(made, row.made) << row.script << "\n" << result.out;
    }
}

TEST(HostCommands, BlocksFilesAndReferencesComeIn) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    const std::string plan = test::drawing("r2018.dxf").string();
    const std::string other = folder.write("valve.dxf", test::read(test::drawing("r2000_gbk.dxf"))).string();
    const auto run = [&](const std::string& script) {
        std::filesystem::remove(out);
        const auto result = test::zefhost({plan, "-s", folder.write("a.scr", script).string(), "-o", out});
        EXPECT_EQ(result.status, 0) << script << "\n" << result.err << result.out;
        return result.out;
    };
    const auto count = [&](std::string_view type) {
        std::size_t found = 0;
        for (const std::string& one : new_entities(out))
            found += one.starts_with(type) ? 1 : 0;
        return found;
    };
    // A file becomes a block once; then the block is there.
    run("INSERT " + other + "\n0,0 1  0\nINSERT valve 5,5 1  0\n");
    EXPECT_EQ(count("INSERT valve"), 2u);
    const std::size_t once = new_entities(out).size();
    run("INSERT " + other + "\n0,0 1  0\nINSERT valve=" + other + "\n5,5 1  0\n");
    EXPECT_EQ(new_entities(out).size(), once) << "redefined, not doubled";
    // Taken apart: lines, and the definition in place of the attribute.
    run("INSERT 阀门 0,0 1  0\n\nEXPLODE L \n");
    EXPECT_EQ(count("INSERT"), 0u);
    EXPECT_EQ(count("ATTDEF"), 1u);
    run("XATTACH\n" + other + "\nA 0,0 1  0\n");
    EXPECT_EQ(count("INSERT valve"), 1u);
    EXPECT_NE(test::read(out).find("\n  1\r\n" + other + "\r\n"), std::string::npos) << "the path is kept";
    const auto listed = test::zefhost({out, "-c", "INSERT ?\\n*"});
    EXPECT_NE(listed.out.find("\"valve\"  Xref"), std::string::npos) << listed.out;
}

TEST(HostCommands, LayoutsAreMadeCopiedRenamedAndDeleted) {
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    const std::string plan = test::drawing("r2018.dxf").string();
    const auto result = test::zefhost({plan, "-c",
                                       "LAYOUT N Sheet\\nLAYOUT S sheet\\nC 1,1 1\\nLAYOUT C  Copy\\nLAYOUT "
                                       "R Copy Blatt\\nLAYOUT N Third\\n"
                                       "LAYOUT D Third\\nLAYOUT S Model",
                                       "-o", out});
    EXPECT_EQ(result.status, 0) << result.err << result.out;
    const auto listed = test::zefhost({out, "-c", "LAYOUT ?\\nLAYOUT S Blatt\\nLIST ALL "});
    EXPECT_EQ(listed.status, 0) << listed.err;
    for (const char* part : {"Layout: Model (current)", "Layout: Sheet\n   Block name: *Paper_Space0.",
                             "Layout: Blatt\n   Block name: *Paper_Space1.", "CIRCLE"})
        EXPECT_NE(listed.out.find(part), std::string::npos) << part << "\n" << listed.out;
    EXPECT_EQ(listed.out.find("Third"), std::string::npos);
    for (const char* refused : {"LAYOUT N Layout1", "LAYOUT R Model X", "LAYOUT D Layout1", "MSPACE"}) {
        const auto wrong = test::zefhost({plan, "-c", std::string(refused)});
        EXPECT_EQ(wrong.status, 4) << refused << "\n" << wrong.out;
    }
}

TEST(HostCommands, LayerStatesBringBackWhatLayersShowed) {
    const test::folder folder;
    const std::string plan = test::drawing("r2018.dxf").string();
    const auto states = [&](const std::string& script) {
        const auto result = test::zefhost({plan, "-c", script + "\\n-LAYER ?  "});
        EXPECT_EQ(result.status, 0) << script << "\n" << result.err << result.out;
        return result.out.substr(result.out.rfind("Layer name "));
    };
    const std::string before = states("-LAYER A S one ");
    EXPECT_NE(states("-LAYER A S one OFF 墙体,家具 F 图框 LO 墙体 C 1,2,3 家具 LW 0.5 墙体 P N 墙体 "),
              before);
    EXPECT_EQ(
        states("-LAYER A S one OFF 墙体,家具 F 图框 LO 墙体 C 1,2,3 家具 LW 0.5 墙体 P N 墙体 A R one "),
        before);
    EXPECT_EQ(test::zefhost({plan, "-c", "-LAYER A S one A D one A R one"}).status, 4) << "it is deleted";
}

TEST(HostCommands, WhatScriptsOfTheEditorCall) {
    struct row {
        std::string script;
        int status;
        std::string_view told;
    };
    const test::folder folder;
    const std::string plan = folder.write("plan.dxf", test::read(test::drawing("r2018.dxf"))).string();
    folder.write("line.scr", "LINE 0,0 1,1 \n");
    folder.write("both.scr", "SCRIPT line\nSCRIPT LINE.SCR\nLIST L \n");
    folder.write("loop.scr", "REGEN\nSCRIPT loop\nREGEN");
    for (const row& row : {
             // The name of a variable shows it, and sets it, also inside of a command.
             row{"LTSCALE 2\nLTSCALE\n", 0, "<2.0>"},
             row{"_.osmode 3\nLINE 'OSMODE 5 0,0 1,1 \nOSMODE 0", 0, "<5>"},
             row{"MILLISECS", 0, "(read only)"},
             row{"USERS1 two words\nUSERS1 .\nUSERS1\n", 0, "<\"\">"},
             row{"SECURELOAD 0\nTRUSTEDPATHS /a;/b\nTRUSTEDPATHS\n", 0, "/a;/b"},
             row{"LTSCALE 0", 4, "Cannot set LTSCALE"},
             row{"AREA", 4, "Unknown command"}, // the editor's command of that name is not there
             row{"SCRIPT both\nLIST L ", 0, "X=1.0000"},
             row{"SCRIPT none", 4, "none.scr"},
             row{"SCRIPT loop", 4, "without end"},
             row{"REGENALL\nDELAY 20\nLAYOUT S Layout1\nMODEL\nCTAB\n", 0, "<\"Model\">"},
             row{"-PURGE LA NONE* N", 0, "No unreferenced layers found."},
             row{"-LAYER N FREE1,FREE2 \n-PURGE LA FREE* Y Y N\n-LAYER ? FREE* ", 0,
                 "Deleting layer \"FREE1\"."},
             row{"-LAYER N FREE1 L VR-J FREE1 \n-PURGE ALL * N", 0, "Deleting linetype \"VR-J\"."},
             row{"AUDIT N", 0, "Total errors found 0 fixed 0"},
             row{"LIST (ssget \"X\" '((-3 (\"ZEF_*\")) (0 . \"LINE\"))) ", 0, "Handle = 102"},
         }) {
        const auto result = test::zefhost({plan, "-s", folder.write("a.scr", row.script + "\n").string()});
        EXPECT_EQ(result.status, row.status) << row.script << "\n" << result.out << result.err;
        EXPECT_NE((result.out + result.err).find(row.told), std::string::npos) << row.script << "\n"
                                                                               << result.out;
    }
    EXPECT_EQ(test::zefhost({plan, "-c", "-LAYER N FREE1,FREE2 \\n-PURGE LA FREE* Y Y N\\n-LAYER ? FREE* "})
                  .out.find("FREE1   "),
              std::string::npos)
        << "purged, and the one that was declined stays";
}

TEST(HostCommands, AuditFindsWhatDoesNotFitTogetherAndMendsIt) {
    struct row {
        std::string_view before;
        std::string_view after;
        std::string_view told;
    };
    const std::string plan = test::read(test::drawing("r2018.dxf"));
    const test::folder folder;
    const std::string out = (folder / "out.dxf").string();
    for (const row& row : {
             row{"AcDbEntity\r\n  8\r\n墙体", "AcDbEntity\r\n  8\r\n墙体\r\n  6\r\nWAVY",
                 "LINE(100): Linetype \"WAVY\""},
             row{"AcDbEntity\r\n  8\r\n墙体", "AcDbEntity\r\n  8\r\n墙体\r\n 62\r\n   999",
                 "LINE(100): Color 999"},
             row{"AcDbEntity\r\n  8\r\n墙体", "AcDbEntity\r\n  8\r\n墙体\r\n370\r\n    14",
                 "LINE(100): Lineweight 14"},
             row{"     1\r\n  2\r\n阀门", "     1\r\n  2\r\nnone", "INSERT(105): Block \"none\""},
         }) {
        std::string damaged = plan;
        const std::size_t at = damaged.find(row.before);
        ASSERT_NE(at, std::string::npos) << row.told;
        damaged.replace(at, row.before.size(), row.after);
        const std::string file = folder.write("plan.dxf", damaged).string();
        auto result = test::zefhost({file, "-c", "AUDIT N", "-o", out});
        EXPECT_EQ(result.status, 1) << row.told << result.out << result.err;
        EXPECT_NE(result.out.find(row.told), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("Total errors found 1 fixed 0"), std::string::npos) << result.out;
        EXPECT_EQ(test::read(out), damaged);
        result = test::zefhost({file, "-c", "AUDIT Y\\nAUDIT N", "-o", out});
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.out.find("Total errors found 1 fixed 1"), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("Total errors found 0 fixed 0"), std::string::npos) << result.out;
        EXPECT_EQ(test::zefhost({out, "-c", "AUDIT N"}).status, 0);
    }
}

// Without a drawing only what needs none runs.
TEST(HostCommands, TheLastDrawingMayBeClosed) {
    const std::string plan = test::drawing("r2018.dxf").string();
    auto result = test::zefhost({plan, "-c", "CLOSE\\nLINE"});
    EXPECT_EQ(result.status, 4) << result.out;
    result = test::zefhost({plan, "-c", "CLOSE\\nHELP\\nNEW\\n\\nLINE 0,0 1,1 \\nCLOSE Y\\nQUIT"});
    EXPECT_EQ(result.status, 0) << result.err << result.out;
    result = test::zefhost({plan, "-c", "CLOSE", "-o", "-"});
    EXPECT_EQ(result.status, 6) << "there is nothing to save";
}
