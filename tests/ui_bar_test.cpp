// Bars on the command line: how they are printed, what presses them, and when.
#include "aced.h"
#include "tests/ed_session.h"
#include "ui/presenter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Two buttons, one of them with a state, and three rows of which two are on a page.
class sample : public ui::bar {
public:
    ~sample() override { ui::hide(*this); }
    ui::bar_content content() const override {
        ui::bar_content shown;
        shown.title = L"图层";
        shown.enabled = enabled;
        shown.groups = {{{7, L"  更新 全部"}, {8, L" Walls", L"lamp", L"on"}}, {{11, L"墙"}}};
        shown.row_names = {L"系统", L"MARK"};
        shown.columns = {{L"Lit", L"ON"}, {L"冻结", L"FREEZE"}};
        for (int row = 0; row < 3; ++row) {
            const std::wstring name = L"水" + std::to_wstring(row);
            shown.rows.push_back(
                {{20 + row, name}, {{30 + 2 * row, L"", L"", L"on"}, {31 + 2 * row, L"", L"", L"-"}}});
        }
        shown.first_row = first;
        shown.rows_shown = 2;
        shown.page = first / 2 + 1;
        shown.pages = 2;
        shown.paging = {{1, L"First"}, {2, L"Last"}};
        return shown;
    }
    void press(int id) override {
        pressed += std::to_string(id) + ' ';
        in_command = ed::names_under_way();
        first = id == 2 ? 2 : first;
    }

    bool enabled = true;
    std::string pressed;
    std::wstring in_command;
    std::size_t first = 0;
};

std::string typed(test::session& session, std::wstring_view text) {
    session.type(text);
    ed::editor::instance().run();
    return session.shown;
}

} // namespace

TEST(UiBar, IsPrintedAsAPicture) {
    test::session session(test::drawing("layer_states.dxf"));
    sample bar;
    ed::command_line::instance().fresh_line();
    session.type(L"");
    ui::show(bar);
    EXPECT_EQ(session.shown, "图层\n"
                             "7 更新 全部      8 Walls      on\n"
                             "11 墙\n"
                             "\n"
                             "系统    Lit  冻结\n"
                             "20 水0  on   -\n"
                             "21 水1  on   -\n"
                             "\n"
                             "1 First  1/2  2 Last\n");
    const std::string whole = session.shown;
    EXPECT_NE(typed(session, L"bar\n").find(whole), std::string::npos);
    EXPECT_NE(typed(session, L"BAR Last\n").find("22 水2  on   -\n\n1 First  2/2"), std::string::npos)
        << "another page is shown: " << session.shown;
}

TEST(UiBar, PressesWhatALineNames) {
    const struct {
        const wchar_t* typed;
        const char* pressed;
        const char* shown = "";
    } rows[] = {
        {L"BAR 8", "8 ", "Walls: on\n"},
        {L"'_bar walls", "8 ", "Walls: on\n"},
        {L"BAR 更新 全部", "7 "},
        {L"BAR \"更新 全部\"", "7 "},
        {L"BAR 水1", "21 "},
        {L"BAR 水1 mark", "21 "},
        {L"BAR 水2 ON", "34 ", "水2 Lit: on\n"}, // also of another page
        {L"BAR \"水2\" freeze", "35 ", "水2 冻结: -\n"},
        {L"BAR 水0/FREEZE", "31 ", "水0 冻结: -\n"},
        {L"BAR 31\nBAR 2 ", "31 2 "},
        {L"LINE 0,0 'BAR 8\n1,1 \n", "8 ", "Walls: on\nSpecify next point"},
        {L"BAR 9", "", "There is no button \"9\"."},
        {L"BAR 水1 OFF", "", "There is no button \"水1 OFF\"."},
        {L"BAR 水9 ON", "", "There is no button"},
        {L"BAR \"", "", "图层\n"},
    };
    for (const auto& row : rows) {
        test::session session(test::drawing("layer_states.dxf"));
        sample bar;
        ui::show(bar);
        const std::string shown = typed(session, row.typed);
        EXPECT_EQ(bar.pressed, row.pressed) << base::narrow(row.typed);
        EXPECT_NE(shown.find(row.shown), std::string::npos) << base::narrow(row.typed) << shown;
        EXPECT_EQ(session.errors.empty(), std::string(row.shown).find("no button") == std::string::npos)
            << base::narrow(row.typed) << session.errors;
    }
}

TEST(UiBar, IsPressedWhileItIsThereAndEnabled) {
    test::session session(test::drawing("layer_states.dxf"));
    {
        sample bar;
        EXPECT_NE(typed(session, L"BAR 7\n").find("No bar is shown."), std::string::npos);
        ui::show(bar);
        bar.enabled = false;
        EXPECT_NE(typed(session, L"BAR 7\n").find("can not be used now"), std::string::npos);
        EXPECT_NE(typed(session, L"BAR\n").find("图层 (disabled)"), std::string::npos);
        EXPECT_EQ(bar.pressed, "");
        bar.enabled = true;
        typed(session, L"BAR 水1 FREEZE\n");
        EXPECT_EQ(bar.in_command, L"水1 冻结");
    }
    EXPECT_NE(typed(session, L"BAR 7\n").find("No bar is shown."), std::string::npos);
}
