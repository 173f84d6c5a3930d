// Dialogs on the command line: what is shown, which answers are taken, how they end.
#include "aced.h"
#include "tests/ed_session.h"
#include "tests/support.h"
#include "ui/presenter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Two lists and two fields, of which one takes small numbers alone.
ui::dialog sample() {
    const auto refusal = [](const std::wstring& value) {
        return std::wstring(value.size() == 1 ? L"" : L"One digit is wanted.");
    };
    ui::dialog dialog{L"选择", {{L"Size", L"5", refusal}, {L"名称", L"旧", nullptr}}, {}};
    dialog.lists.push_back({{{L"层名", 80}, {L"Note", 80}},
                            {{{L"0", L""}, false}, {{L"给水管线", L"a b"}, true}, {{L"B", L"c"}, false}}});
    dialog.lists.push_back({{{L"层名", 180}}, {{{L"X|墙"}, false}}});
    return dialog;
}

// Values and marks: "5 旧 0100".
std::string state(const ui::dialog& dialog) {
    std::wstring text;
    for (const ui::field& field : dialog.fields)
        text += field.value + L' ';
    for (const ui::check_list& list : dialog.lists)
        for (const ui::line& line : list.lines)
            text += line.checked ? L'1' : L'0';
    return base::narrow(text);
}

} // namespace

TEST(UiDialog, IsShownWithItsLinesNumberedThroughAllLists) {
    test::session session(test::drawing("layer_states.dxf"));
    ed::command_line::instance().fresh_line(); // whatever was shown before
    session.type(L"-* CANCEL ");
    ui::dialog dialog = sample();
    EXPECT_FALSE(ui::run(dialog));
    EXPECT_EQ(session.shown, "选择\n"
                             "Size=5\n"
                             "名称=旧\n"
                             "      层名     Note\n"
                             "1 [ ] 0\n"
                             "2 [x] 给水管线 a b\n"
                             "3 [ ] B        c\n"
                             "      层名\n"
                             "4 [ ] X|墙\n"
                             "Size=VALUE, 名称=VALUE, lines 1 to 4 or their names to check (1,3 2-5 * A* \"A "
                             "B\") or behind - to uncheck, "
                             "OK or CANCEL <OK>: -*\n"
                             "0 of 4 checked\n"
                             "Size=VALUE, 名称=VALUE, lines 1 to 4 or their names to check (1,3 2-5 * A* \"A "
                             "B\") or behind - to uncheck, "
                             "OK or CANCEL <OK>: CANCEL\n");
}

TEST(UiDialog, AnswersChangeWhatTheyNameAndOkTakesThem) {
    constexpr std::wstring_view range = L"lines 1 to 4";
    const struct {
        const wchar_t* typed;
        bool ok;
        const char* became;
        std::wstring_view refused; // part of the reason, empty when nothing is refused
    } rows[] = {
        {L"OK", true, "5 旧 0100", {}},
        {L"\n", true, "5 旧 0100", {}},
        {L"1,3 OK", true, "5 旧 1110", {}},
        {L"2-4 OK", true, "5 旧 0111", {}},
        {L"1,3-4,1 OK", true, "5 旧 1111", {}},
        {L"* OK", true, "5 旧 1111", {}},
        {L"-2 OK", true, "5 旧 0000", {}},
        {L"* -1-2,4 OK", true, "5 旧 0010", {}},
        {L"Size=7 OK", true, "7 旧 0100", {}},
        {L"size=7\n名称=\n\n", true, "7  0100", {}},
        {L"\"名称=新 层\" OK", true, "5 新 层 0100", {}},
        {L"名称=a=b OK", true, "5 a=b 0100", {}},
        // By names and patterns; a number that is one of no line is a name.
        {L"-给水* b,x|? OK", true, "5 旧 0011", {}},
        {L"0 OK", true, "5 旧 1100", {}},
        {L"\"B\",\"0\" OK", true, "5 旧 1110", {}},
        {L"\"1\" OK", true, "5 旧 0100", L"no line \"1\""},
        {L"3,C* OK", true, "5 旧 0100", L"no line \"C*\""},
        // Cancelled: nothing of it stays.
        {L"* Size=7 CANCEL", false, "5 旧 0100", {}},
        {L"* ^C", false, "5 旧 0100", {}},
        // Refused as a whole, and asked again.
        {L"5 1 OK", true, "5 旧 1100", range},
        {L"4-3 OK", true, "5 旧 0100", range},
        {L"1,,3 OK", true, "5 旧 0100", range},
        {L"- OK", true, "5 旧 0100", range},
        {L"1- OK", true, "5 旧 0100", range},
        {L"99999999999999999999 OK", true, "5 旧 0100", range},
        {L"(handent \"31\") OK", true, "5 旧 0100", range},
        {L"Size=77 OK", true, "5 旧 0100", L"One digit is wanted."},
        {L"Weight=7 OK", true, "5 旧 0100", L"no field \"Weight\""},
    };
    test::session session(test::drawing("layer_states.dxf"));
    for (const auto& row : rows) {
        session.type(row.typed);
        ui::dialog dialog = sample();
        EXPECT_EQ(ui::run(dialog), row.ok) << base::narrow(row.typed);
        EXPECT_EQ(state(dialog), row.became) << base::narrow(row.typed);
        EXPECT_EQ(session.errors.find(base::narrow(row.refused)) != std::string::npos &&
                      !session.errors.empty(),
                  !row.refused.empty())
            << base::narrow(row.typed) << session.errors;
        EXPECT_TRUE(session.all_used()) << base::narrow(row.typed);
    }
}

TEST(UiDialog, WithoutLinesTakesAllOfThemAndNoOne) {
    test::session session(test::drawing("layer_states.dxf"));
    ui::dialog dialog;
    dialog.lists.push_back({{{L"层名", 80}}, {}});
    session.type(L"* OK");
    EXPECT_TRUE(ui::run(dialog));
    EXPECT_EQ(session.errors, "");
    session.type(L"1 OK");
    EXPECT_TRUE(ui::run(dialog));
    EXPECT_NE(session.errors.find("Expects OK or CANCEL"), std::string::npos) << session.errors;
}

TEST(UiDialog, ABatchStopsAtARefusedAnswerAndAtTheEndOfItsInput) {
    const std::string drawing = test::drawing("layer_states.dxf").string();
    const struct {
        const char* script;
        int status;
        const char* error;
    } rows[] = {
        {"OpenLayer\n7\nOK\n", 4, "line 2: at the prompt 'lines 1 to 3 or their names to check"},
        {"OpenLayer\n1\n", 5, "inside command OpenLayer"},
        {"OpenLayer\n1\nCANCEL\n", 0, ""},
    };
    for (const auto& row : rows) {
        const test::run_result ran = test::zefhost({drawing}, row.script);
        EXPECT_EQ(ran.status, row.status) << row.script << ran.out;
        EXPECT_NE(ran.err.find(row.error), std::string::npos) << ran.err;
        EXPECT_EQ(ran.err.find("changed and not saved"), std::string::npos) << row.script;
    }
}

TEST(UiDialog, AColourIsChosenAsFarAsTheTabsAllow) {
    constexpr auto all =
        static_cast<AcCm::DialogTabs>(AcCm::kACITab | AcCm::kTrueColorTab | AcCm::kColorBookTab);
    const struct {
        const wchar_t* typed;
        bool meta;
        AcCm::DialogTabs tabs;
        bool ok;
        int index;
        bool true_color;
        bool refused;
    } rows[] = {
        {L"OK", false, all, true, 5, false, false},
        {L"Color=3 OK", false, all, true, 3, false, false},
        {L"Color=3 CANCEL", false, all, false, 5, false, false},
        {L"Color=Magenta OK", false, all, true, 6, false, false},
        {L"Color=255,0,0 OK", false, all, true, 1, true, false},
        {L"Color=ByLayer Color=2 OK", false, all, true, 2, false, true},
        {L"Color=bylayer OK", true, all, true, 256, false, false},
        {L"Color=BYBLOCK OK", true, all, true, 0, false, false},
        {L"Color=0 OK", true, all, true, 5, false, true},
        {L"Color=-3 OK", false, all, true, 5, false, true},
        {L"Color=1,2 OK", false, all, true, 5, false, true},
        {L"Color=255,0,0 OK", false, AcCm::kACITab, true, 5, false, true},
        {L"Color=3 OK", false, AcCm::kTrueColorTab, true, 5, false, true},
        {L"Color=3 OK", false, AcCm::kColorBookTab, true, 5, false, true},
    };
    test::session session(test::drawing("layer_states.dxf"));
    for (const auto& row : rows) {
        session.type(row.typed);
        AcCmColor color;
        color.setColorIndex(5);
        EXPECT_EQ(acedSetColorDialogTrueColor(color, row.meta, color, row.tabs), row.ok)
            << base::narrow(row.typed);
        EXPECT_EQ(color.colorIndex(), row.index) << base::narrow(row.typed);
        EXPECT_EQ(color.isByColor(), row.true_color) << base::narrow(row.typed);
        EXPECT_EQ(!session.errors.empty(), row.refused) << base::narrow(row.typed) << session.errors;
    }
    AcCmColor exact;
    exact.setRGB(1, 2, 3);
    session.type(L"OK");
    EXPECT_TRUE(acedSetColorDialogTrueColor(exact, false, exact, AcCm::kACITab));
    EXPECT_TRUE(exact.isByColor()) << "what is left as it is stays";

    int index = 256;
    session.type(L"Color=1,2,3 Color=4 OK");
    EXPECT_TRUE(acedSetColorDialog(index, false, 7));
    EXPECT_EQ(index, 4);
    EXPECT_NE(session.errors, "") << "an index is asked for";
    index = 257;
    EXPECT_FALSE(acedSetColorDialog(index, true, 7));
}
