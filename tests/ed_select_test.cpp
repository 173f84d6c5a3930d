// Selections: the modes of acedSSGet, the answers of its prompt, picks of entities and what they answer.
#include "acutmem.h"
#include "geassign.h"
#include "host/ed/selection_mode.h"
#include "rxmfcapi.h"
#include "rxregsvc.h"
#include "tests/ed_session.h"
#include "tests/support.h"

namespace {

std::filesystem::path picks() {
    return test::drawing("picks.dxf");
}

// What a mode selects; a number when it is none.
std::string selected(const wchar_t* mode, const void* first = nullptr, const void* second = nullptr,
                     const resbuf* filter = nullptr) {
    ads_name set;
    const int answered = acedSSGet(mode, first, second, filter, set);
    return answered == RTNORM ? test::handles_of(set) : std::to_string(answered);
}

resbuf* chain_of(std::initializer_list<AcGePoint3d> points) {
    resbuf* chain = nullptr;
    resbuf** tail = &chain;
    for (const AcGePoint3d& point : points) {
        *tail = acutNewRb(RT3DPOINT);
        asPnt3d((*tail)->resval.rpoint) = point;
        tail = &(*tail)->rbnext;
    }
    return chain;
}

} // namespace

TEST(EdSelect, ModesAreReadWithAllTheirParts) {
    using ed::way;
    struct row {
        const wchar_t* text;
        bool good;
        way how;
    };
    for (const row& row :
         {row{L"", true, way::ask}, row{L"_X", true, way::drawing}, row{L"x", true, way::drawing},
          row{L"_:S:E", true, way::ask}, row{L":SE", true, way::ask}, row{L"_+.:E:S", true, way::ask},
          row{L"_:$-M", true, way::ask}, row{L"CP", true, way::crossing_polygon},
          row{L"_A:L", true, way::all}, row{L"#", true, way::ask}, row{L"_:Q", false, way::ask},
          row{L"Y", false, way::ask}, row{L"_X:", false, way::ask}, row{L"-", false, way::ask},
          row{L"_:U", false, way::ask}, row{L"+Q", false, way::ask}}) {
        const auto mode = ed::parse_selection_mode(row.text);
        EXPECT_EQ(mode.has_value(), row.good) << row.text;
        if (mode && row.good) {
            EXPECT_EQ(mode->how, row.how) << row.text;
        }
    }
    const auto mode = ed::parse_selection_mode(L"_:$:D:E:K:L:N:S+W-CP-R");
    ASSERT_TRUE(mode);
    EXPECT_TRUE(mode->prompts && mode->doubles && mode->everything && mode->callbacks && mode->unlocked &&
                mode->nested && mode->once);
    EXPECT_EQ(mode->first, way::window);
    EXPECT_TRUE(mode->allows(way::crossing) && !mode->allows(way::crossing_polygon) &&
                !mode->allows(way::remove));
}

// picks.dxf: 20 a line along the x axis and 22 a circle on PIPE, 21 a line up the y axis on LOCKED, 24 a line
// at y 80 on COLD, which is frozen, 23 at y 90 on HIDDEN, which is off, 25 invisible.
TEST(EdSelect, ProgramsSelectByModes) {
    test::session session(picks());
    const auto all = selected(L"_X");
    EXPECT_NE(all.find("23"), std::string::npos) << "X sees what is hidden";
    EXPECT_EQ(selected(L"X"), all);
    EXPECT_EQ(selected(L"_P"), all) << "the set before";
    EXPECT_EQ(selected(L"_A").find("24"), std::string::npos) << "frozen";
    EXPECT_EQ(selected(L"_A").find("21"), std::string::npos) << "locked";
    EXPECT_NE(selected(L"_A").find("23"), std::string::npos) << "off";
    ads_point low = {-1.0, -1.0, 0.0}, high = {101.0, 1.0, 0.0}, left = {-1.0, 5.0, 0.0};
    EXPECT_EQ(selected(L"_W", low, high), "20");
    EXPECT_EQ(selected(L"_C", low, high), "21 20");
    EXPECT_EQ(selected(L"_B", low, high), "20") << "from left to right";
    EXPECT_EQ(selected(L"_B", high, low), "21 20") << "from right to left";
    EXPECT_EQ(selected(L"_C:L", low, high), "20") << "not what is locked";
    EXPECT_EQ(selected(L"", left), "-5001");
    EXPECT_EQ(test::error_number(), 0);
    ads_point on_line = {50.0, 0.0, 0.0};
    EXPECT_EQ(selected(nullptr, on_line), "20");
    resbuf* const around = chain_of({{-1, -1, 0}, {101, -1, 0}, {101, 1, 0}, {-1, 1, 0}});
    EXPECT_EQ(selected(L"_WP", around), "20");
    EXPECT_EQ(selected(L"_CP", around), "21 20");
    EXPECT_EQ(selected(L"_F", around), "21") << "what the fence itself meets";
    acutRelRb(around);
    resbuf* const two = chain_of({{0, 0, 0}, {1, 1, 0}});
    EXPECT_EQ(selected(L"_WP", two), "-5003") << "no polygon";
    acutRelRb(two);
    EXPECT_EQ(selected(L"_W", low), "-5003") << "one corner";
    EXPECT_EQ(selected(L"_I"), "-5001") << "nothing was picked first";
    EXPECT_EQ(selected(L"_G", L"NONE"), "-5001");
    resbuf* const bad = acutBuildList(-4, L"<OR", 0);
    EXPECT_EQ(selected(L"_X", nullptr, nullptr, bad), "-5003");
    acutRelRb(bad);
}

TEST(EdSelect, ThePromptTakesAllItsAnswers) {
    test::session session(picks());
    struct row {
        const wchar_t* mode;
        const wchar_t* typed;
        const char* expected;
        int refused;
        int error;
    };
    for (const row& row : {
             row{L"", L"50,0\n\n", "20", 0, -1},
             row{L"", L"50,0\n0,50\n50,0\n\n", "20 21", 0, -1},
             row{L"", L"w\n-1,-1\n101,1\n\n", "20", 0, -1},
             row{L"", L"Crossing\n-1,-1\n101,1\n\n", "21 20", 0, -1},
             row{L"", L"_c\n-1,-1\n@102,2\n\n", "21 20", 0, -1},
             row{L"", L"box\n101,1\n-1,-1\n\n", "21 20", 0, -1},
             row{L"", L"wp\n-1,-1\n101,-1\n101,1\n-1,1\n\n\n", "20", 0, -1},
             row{L"", L"cp\n-1,-1\n101,-1\n101,1\n-1,1\n\n\n", "21 20", 0, -1},
             row{L"", L"f\n-1,1\n101,1\n\n\n", "21", 0, -1},
             row{L"", L"wp\n0,0\n1,1\n\n50,0\n\n", "20", 0, -1},
             row{L"", L"c\n-1,-1\n101,1\nr\n0,50\na\n50,0\n\n", "20", 0, -1},
             row{L"", L"50,0\nc\n-1,-1\n101,1\nu\n\n", "20", 0, -1},
             row{L"", L"50,0\nr\n50,0\nu\n\n", "20", 0, -1},
             row{L"", L"m\n50,0\n0,50\n\n\n", "20 21", 0, -1},
             row{L"", L"si\n50,0\n", "20", 0, -1},
             row{L"", L"au\n-1,-1\n101,1\n\n", "20", 0, -1},
             row{L"", L"?\n50,0\n\n", "20", 0, -1},
             row{L"", L"(handent \"25\")\n\n", "25", 0, -1},
             row{L"", L"(ssget \"_X\" '((0 . \"CIRCLE\")))\n\n", "22", 0, -1},
             row{L"", L"nonsense\n50,0\n\n", "20", 1, -1},
             row{L"", L"g\nNONE\n\x1b", "-5002", 1, -1},
             row{L"", L"\n", "-5001", 0, 52},
             row{L"", L"5,5\n\n", "-5001", 0, 52},
             row{L"", L"50,0\n\x1b", "-5002", 0, -1},
             row{L"", L"w\n\x1b", "-5002", 0, -1},
             row{L"_:S", L"50,0\n", "20", 0, -1},
             row{L"_:S", L"c\n-1,-1\n101,1\n", "21 20", 0, -1},
             row{L"_:S", L"5,5\n", "-5001", 0, 7},
             row{L"_:S", L"r\na\n50,0\n", "20", 0, -1},
             row{L"_+.:S", L"w\n50,0\n", "20", 1, -1},
             row{L"_.", L"5,5\n", "-5001", 0, 7},
             row{L"_.", L"50,0\n", "20", 0, -1},
             row{L"_:E:S", L"0,0\n", "21 20", 0, -1},
             row{L"_:S", L"0,0\n", "21", 0, -1},
             row{L"_-W", L"w\n50,0\n\n", "20", 1, -1},
             row{L"_#", L"50,0\nl\n\n", nullptr, 1, -1},
             row{L"_M", L"50,0\n0,50\n\n\n", "20 21", 0, -1},
             row{L"_:L", L"0,50\n50,0\n\n", "20", 0, -1},
             row{L"_:D", L"50,0\n50,0\n\n", "20 20", 0, -1},
             row{L"_+W:S", L"-1,-1\n101,1\n", "20", 0, -1},
         }) {
        const std::wstring name = std::wstring(row.mode) + L" / " + row.typed;
        session.type(row.typed);
        const std::string found = selected(row.mode);
        if (row.expected != nullptr) {
            EXPECT_EQ(found, row.expected) << name << "\n" << session.shown;
        }
        EXPECT_EQ(std::count(session.errors.begin(), session.errors.end(), '\n'), row.refused)
            << name << session.errors;
        if (row.error >= 0) {
            EXPECT_EQ(test::error_number(), row.error) << name;
        }
        acedUsrBrk();
        EXPECT_TRUE(session.all_used()) << name;
    }
    session.type(L"c\n-1,-1\n101,1\n50,0\n\n");
    resbuf* const filter = acutBuildList(8, L"PIPE", 0);
    EXPECT_EQ(selected(L"", nullptr, nullptr, filter), "20");
    acutRelRb(filter);
    EXPECT_NE(session.shown.find("2 found, 1 filtered out, 1 total"), std::string::npos) << session.shown;
    EXPECT_NE(session.shown.find("1 found, 1 duplicate"), std::string::npos) << session.shown;
    const ACHAR* prompts[] = {L"\nWhich pipes: ", nullptr};
    session.type(L"50,0\n\n");
    EXPECT_EQ(selected(L"_:$", prompts), "20");
    EXPECT_NE(session.shown.find("Which pipes: "), std::string::npos);
}

namespace {

ads_name called_with; // what the callback hands out
std::wstring called_by;

resbuf* callback(const ACHAR* keyword) {
    called_by = keyword;
    resbuf* const chain = acutBuildList(RTSTR, L"as you like", RTENAME, called_with, 0);
    return chain;
}

} // namespace

TEST(EdSelect, KeywordsOfASelectionAreCalledOrAnswered) {
    test::session session(picks());
    acdbGetAdsName(called_with, session.id(0x22));
    acedSSSetKwordCallbackPtr(callback);
    session.type(L"circ\n50,0\n\n");
    acedInitGet(0, L"CIRCle");
    EXPECT_EQ(selected(L"_:K"), "22 20");
    EXPECT_EQ(called_by, L"CIRCle");
    EXPECT_NE(session.shown.find("as you like"), std::string::npos);
    acedSSSetKwordCallbackPtr(nullptr);
    session.type(L"circ\n");
    acedInitGet(0, L"CIRCle");
    EXPECT_EQ(selected(L""), std::to_string(RTKWORD));
    AcString word;
    EXPECT_EQ(acedGetInput(word), RTNORM);
    EXPECT_STREQ(word.constPtr(), L"CIRCle");
}

TEST(EdSelect, WhatIsPickedFirstIsForCommandsThatUseIt) {
    test::session session(picks());
    static std::string found;
    AcEdCommandStack* const commands = acedRegCmds;
    commands->addCommand(L"ED_TEST", L"TAKES", L"TAKES", ACRX_CMD_USEPICKSET,
                         [] { found = selected(L"_I") + "/" + selected(L""); });
    commands->addCommand(L"ED_TEST", L"IGNORES", L"IGNORES", ACRX_CMD_MODAL, [] { found = selected(L"_I"); });
    static AcDbObjectId circle;
    circle = session.id(0x22);
    commands->addCommand(L"ED_TEST", L"PICKS", L"PICKS", ACRX_CMD_MODAL, [] {
        ads_name entity, one;
        acdbGetAdsName(entity, circle);
        acedSSAdd(entity, nullptr, one);
        acedSSSetFirst(one, nullptr);
        acedSSFree(one);
    });
    ads_name set;
    ads_point low = {-1.0, -1.0, 0.0}, high = {101.0, 1.0, 0.0};
    ASSERT_EQ(acedSSGet(L"_C", low, high, nullptr, set), RTNORM);
    EXPECT_EQ(acedSSSetFirst(set, nullptr), RTNORM);
    acedSSFree(set);
    ed::editor& editor = ed::editor::instance();
    editor.run_command(L"TAKES");
    EXPECT_EQ(found, "21 20/21 20");
    session.type(L"50,0\n\n");
    editor.run_command(L"TAKES");
    EXPECT_EQ(found, "-5001/20") << "the command before has used it";
    editor.run_command(L"PICKS");
    editor.run_command(L"IGNORES");
    EXPECT_EQ(found, "-5001");
    editor.run_command(L"PICKS");
    editor.run_command(L"TAKES");
    EXPECT_EQ(found, "22/22") << "what a command picks is for the next one";
    resbuf *grips = nullptr, *picked = nullptr;
    ads_name entity;
    ASSERT_EQ(acdbGetAdsName(entity, session.id(0x22)), Acad::eOk);
    ASSERT_EQ(acedSSSetFirst(entity, nullptr), RTERROR) << "an entity is no set";
    EXPECT_EQ(test::error_number(), 2);
    acedSSSetFirst(nullptr, nullptr);
    EXPECT_EQ(acedSSGetFirst(&grips, &picked), RTNORM);
    EXPECT_EQ(picked->restype, RTNONE);
    acutRelRb(grips);
    acutRelRb(picked);
    session.type(L"50,0\n\n");
    editor.run_command(L"TAKES");
    EXPECT_EQ(found, "-5001/20") << "asked for";
    commands->removeGroup(L"ED_TEST");
}

// What LIST shows without asking, when it was picked at the command prompt; the Enter behind it answers what
// it asks.
TEST(EdSelect, PicksAtTheCommandPromptAreForTheNextCommand) {
    const struct {
        const char* script;
        const char* handles;
    } rows[] = {
        {"50,0\nLIST\n", "20 "},
        {"(handent \"22\")\n50,0\nLIST\n", "22 20 "},
        {"(ssget \"X\" '((8 . \"COLD\")))\nLIST\n", "2A 24 "},
        {"SETVAR PICKADD 0\n(handent \"22\")\n50,0\nLIST\n", "20 "},
        {"SETVAR PICKAUTO 1\n-1,-1\n101,1\nLIST\n", "20 "},
        {"50,0\n^C\nLIST\n\n", ""},
        {"50,0\nREGEN\nLIST\n\n", ""},
        {"300,300\nLIST\n\n", ""},
        {"SETVAR PICKFIRST 0\n50,0\nLIST\n\n", "refused"},
        {"(handent \"FFF\")\nLIST\n\n", "refused"},
    };
    for (const auto& row : rows) {
        const auto ran = test::zefhost({picks().string(), "--keep-going"}, row.script);
        std::string handles = ran.status == 4 ? "refused" : "";
        constexpr std::string_view mark = "Handle = ";
        for (std::size_t at = ran.out.find(mark); at != ran.out.npos; at = ran.out.find(mark, at + 1))
            handles += ran.out.substr(at + mark.size(), 2) + " ";
        EXPECT_EQ(handles, row.handles) << row.script << ran.out << ran.err;
    }
}

TEST(EdSelect, SetsAreCounted) {
    test::session session(picks());
    ads_name line, sets[129];
    acdbGetAdsName(line, session.id(0x20));
    int made = 0;
    while (made < 129 && acedSSAdd(line, nullptr, sets[made]) == RTNORM)
        ++made;
    EXPECT_EQ(made, 128);
    EXPECT_EQ(test::error_number(), 3);
    EXPECT_EQ(selected(L"_X"), std::to_string(RTERROR));
    for (int i = 0; i < made; ++i)
        EXPECT_EQ(acedSSFree(sets[i]), RTNORM);
    EXPECT_EQ(acedSSFree(sets[0]), RTERROR) << "once only";
    ads_name set;
    ASSERT_EQ(acedSSAdd(nullptr, nullptr, set), RTNORM);
    acedSSAdd(line, set, set);
    acedSSAdd(line, set, set);
    long length = 0;
    EXPECT_EQ(acedSSLength(set, &length), RTNORM);
    EXPECT_EQ(length, 1) << "no doubles";
    EXPECT_EQ(acedSSMemb(line, set), RTNORM);
    EXPECT_EQ(acedSSDel(line, set), RTNORM);
    EXPECT_EQ(acedSSDel(line, set), RTERROR);
    ads_name none;
    EXPECT_EQ(acedSSName(set, 0, none), RTERROR);
    acedSSFree(set);
}

namespace {

int presses = 0;
bool keeps = false;

BOOL watch(MSG* message) {
    presses += message->message == 513 ? 1 : 0;
    return keeps ? TRUE : FALSE;
}

} // namespace

TEST(EdSelect, PicksAnswerWhatTheyMetAndFiltersSeeThem) {
    test::session session(picks());
    EXPECT_TRUE(acedRegisterFilterWinMsg(watch));
    EXPECT_FALSE(acedRegisterFilterWinMsg(watch)) << "once is enough";
    struct row {
        const wchar_t* typed;
        int answered;
        int error; // -1: any
        std::uint64_t handle;
        int presses;
    };
    for (const row& row :
         {row{L"50,0\n", RTNORM, -1, 0x20, 1}, row{L"5,5\n", RTERROR, 7, 0, 1}, row{L"\n", RTERROR, 52, 0, 0},
          row{L"\x1b", RTCAN, -1, 0, 0}, row{L"50,80\n", RTERROR, 7, 0, 1},
          row{L"0,50\n", RTNORM, -1, 0x21, 1}, row{L"(handent \"22\")\n", RTNORM, -1, 0x22, 0},
          row{L"k\n", RTKWORD, -1, 0, 0}, row{L"x\n50,0\n", RTNORM, -1, 0x20, 1}}) {
        presses = 0;
        session.type(row.typed);
        acedInitGet(RSG_NONULL, L"Keyword");
        ads_name entity;
        ads_point at;
        EXPECT_EQ(acedEntSel(nullptr, entity, at), row.answered) << row.typed;
        AcDbObjectId id;
        if (row.handle != 0) {
            EXPECT_EQ(acdbGetObjectId(id, entity), Acad::eOk) << row.typed;
            EXPECT_EQ(id, session.id(row.handle)) << row.typed;
        }
        if (row.error >= 0) {
            EXPECT_EQ(test::error_number(), row.error) << row.typed;
        }
        EXPECT_EQ(presses, row.presses) << row.typed;
        acedUsrBrk();
    }
    keeps = true;
    session.type(L"50,0\n");
    ads_name entity;
    ads_point at;
    EXPECT_EQ(acedEntSel(nullptr, entity, at), RTERROR) << "the filter kept the click";
    keeps = false;
    EXPECT_TRUE(acedRemoveFilterWinMsg(watch));
    EXPECT_FALSE(acedRemoveFilterWinMsg(watch));
    presses = 0;
    session.type(L"50,0\n");
    EXPECT_EQ(acedEntSel(nullptr, entity, at), RTNORM);
    EXPECT_EQ(presses, 0);
}
