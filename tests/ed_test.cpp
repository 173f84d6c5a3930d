// Answers and how they are cut, keywords, filters.
#include "acutmem.h"
#include "adscodes.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/ed/input.h"
#include "host/ed/keywords.h"
#include "host/ed/selection_filter.h"
#include "tests/support.h"

#include <gtest/gtest.h>

namespace {

// The answers of a text as one line: Enter "<>", Escape "^", expressions and quoted texts as they came.
std::wstring answers(std::wstring_view text, bool takes_lines = false) {
    ed::input input;
    input.add_text(L"test", text);
    std::wstring found;
    for (int i = 0; i < 50; ++i) {
        const ed::answer answer =
            input.next(takes_lines ? ed::answer_rule::line : ed::answer_rule::word, L"");
        if (answer.kind == ed::answer_kind::end)
            return found;
        if (!found.empty())
            found += L" ";
        found += answer.kind == ed::answer_kind::enter    ? L"<>"
                 : answer.kind == ed::answer_kind::escape ? L"^"
                                                          : L"[" + answer.text + L"]";
    }
    return found + L" without end";
}

std::string digits(std::uint64_t handle) {
    ACHAR buffer[AcDbHandle::kStrSiz];
    AcDbHandle(handle).getIntoAsciiBuffer(buffer);
    const std::wstring text(buffer);
    return {text.begin(), text.end()};
}

} // namespace

TEST(Ed, ScriptsAreCutIntoAnswers) {
    struct row {
        const wchar_t* text;
        const wchar_t* expected;
    };
    for (const row& row :
         {row{L"LINE 0,0 10,0\n\n", L"[LINE] [0,0] [10,0] <>"}, row{L"; a comment\nA\n;another\n", L"[A]"},
          row{L"A ; no comment\n", L"[A] [;] [no] [comment]"},
          row{L"A \n", L"[A] <>"},                          // a blank more is an Enter more
          row{L"A  B\n", L"[A] <> [B]"}, row{L"A", L"[A]"}, // the last line may lack its end
          row{L"A\r\nB\r\n", L"[A] [B]"}, row{L"\"a b\" c\n", L"[a b] [c]"}, row{L"\"\"\nx\n", L"[] [x]"},
          row{L"\"A B\",\"C D\" E\n", L"[A B,C D] [E]"}, row{L"\"L\"x y\n", L"[Lx] [y]"},
          row{L"(handent \"2F\")\n", L"[(handent \"2F\")]"},
          row{L"(ssget \"X\" '((8 . \"给水)\"))) A\n", L"[(ssget \"X\" '((8 . \"给水)\")))] [A]"},
          row{L"^C\nA\n", L"^ [A]"}, row{L"^C^CA\n", L"^ ^ [A]"}, row{L"\x1b-layer\n\x1b", L"^ [-layer] ^"},
          row{L"A\x1b", L"[A] ^"}, row{L"\n\n", L"<> <>"}, row{L"", L""}})
        EXPECT_EQ(answers(row.text), row.expected) << row.text;
    EXPECT_EQ(answers(L"a b c\n\n\"x y\"\n", true), L"[a b c] <> [\"x y\"]") << "where blanks are text";
}

TEST(Ed, SentTextRunsBeforeTheRestOfTheScript) {
    ed::input input;
    input.add_text(L"script", L"A\nB\n");
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").text, L"A");
    EXPECT_EQ(input.place(), L"script, line 1");
    input.send(L"\x1b-layer\n");
    input.send(L";x\n");
    input.send(L"\x1bgpsbs ");
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").kind, ed::answer_kind::escape);
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").text, L"-layer");
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").text, L";x") << "sent text holds no comments";
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").kind, ed::answer_kind::escape);
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").text, L"gpsbs") << "the blank ends it and is no Enter";
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").text, L"B");
    EXPECT_EQ(input.next(ed::answer_rule::word, L"").kind, ed::answer_kind::end);
}

TEST(Ed, KeywordsAreMatchedByTheirCapitals) {
    struct row {
        const wchar_t* list;
        const wchar_t* typed;
        const wchar_t* keyword; // null: refused
    };
    for (const row& row : {row{L"LType eXit", L"lt", L"LType"},
                           row{L"LType eXit", L"LTY", L"LType"},
                           row{L"LType eXit", L"l", nullptr},
                           row{L"LType eXit", L"x", L"eXit"},
                           row{L"LType eXit", L"exit", L"eXit"},
                           row{L"LType eXit", L"ex", nullptr},
                           row{L"LTYPE,LT", L"lt", L"LTYPE"},
                           row{L"LTYPE,LT", L"ltyp", L"LTYPE"},
                           row{L"LTYPE", L"lt", nullptr},
                           row{L"LTYPE", L"ltype", L"LTYPE"},
                           row{L"Yes No", L"_y", L"Yes"},
                           row{L"Ja Nein _ Yes No", L"j", L"Yes"},
                           row{L"Ja Nein _ Yes No", L"_No", L"No"},
                           row{L"Ja Nein _ Yes No", L"yes", nullptr},
                           row{L"1 2 3 Red", L"2", L"2"},
                           row{L"ON OFF", L"off", L"OFF"},
                           row{L"ON OFF", L"o", nullptr},
                           row{L"E C", L"e", L"E"},
                           row{L"?  Make", L"?", L"?"},
                           row{L"", L"x", nullptr},
                           row{L"Yes No", L"", nullptr},
                           row{L"Yes No", L"Yess", nullptr}}) {
        const auto found = ed::keyword_list(row.list).match(row.typed);
        EXPECT_EQ(found.has_value(), row.keyword != nullptr) << row.list << " / " << row.typed;
        if (found && row.keyword != nullptr) {
            EXPECT_EQ(*found, row.keyword);
        }
    }
}

TEST(Ed, FiltersSelectByGroupsAndOperators) {
    AcDbDatabase database(false, true);
    ASSERT_EQ(database.dxfIn(test::drawing("r2018.dxf").wstring().c_str()), Acad::eOk);
    const auto selected = [&](resbuf* chain) {
        const auto filter = ed::selection_filter::make(database.imp(), chain);
        std::string found = filter ? "" : "refused";
        const dxf::record_table& records = database.imp().records();
        for (dxf::record_id id = 0; filter && id < records.size(); ++id)
            if (records.kind(id) == dxf::record_kind::entity && records.handle(id) >= 0x100 &&
                filter->fits(id))
                found += (found.empty() ? "" : " ") + digits(records.handle(id));
        acutRelRb(chain);
        return found;
    };
    const auto rb = [](auto... values) { return acutBuildList(values..., 0); };
    EXPECT_EQ(selected(nullptr), "100 101 102 103 104 105 108 109 10A 10B");
    EXPECT_EQ(selected(rb(RTDXF0, L"insert,LWPOLY*")), "103 105");
    EXPECT_EQ(selected(rb(8, L"pipe-给水")), "102 103 105");
    EXPECT_EQ(selected(rb(8, L"PIPE`-*", RTDXF0, L"LINE")), "102 104");
    EXPECT_EQ(selected(rb(8, L"~PIPE*")), "100 101 108 109 10A 10B");
    EXPECT_EQ(selected(rb(8, L"墙体", 8, L"PIPE-给水")), "") << "two layers at once";
    EXPECT_EQ(selected(rb(-4, L"<OR", 8, L"墙体", 8, L"家具", -4, L"OR>")), "100 101 108 10A");
    EXPECT_EQ(selected(rb(-4, L"<NOT", RTDXF0, L"LINE", -4, L"NOT>")), "103 105 10A");
    EXPECT_EQ(selected(rb(-4, L"<XOR", RTDXF0, L"LINE", 8, L"PIPE*", -4, L"XOR>")),
              "100 101 103 105 108 109 10B");
    EXPECT_EQ(selected(rb(-4, L"<AND", RTDXF0, L"LINE", 8, L"PIPE*", -4, L"AND>")), "102 104");
    EXPECT_EQ(selected(rb(62, 256, 8, L"PIPE-给水")), "103 105") << "what is left out is ByLayer";
    EXPECT_EQ(selected(rb(-3, 1001, L"zef_*")), "102") << "has extended data of the application";
    EXPECT_EQ(selected(rb(-3, 1001, L"OTHER")), "");
    EXPECT_EQ(selected(rb(60, 1)), "109");
    EXPECT_EQ(selected(rb(67, 1)), "10B");
    EXPECT_EQ(selected(rb(-4, L">", 40, 349.0, RTDXF0, L"TEXT")), "10A");
    EXPECT_EQ(selected(rb(1, L"厨*")), "10A");
    EXPECT_EQ(selected(rb(-4, L"<OR", 8, L"墙体")), "refused") << "not closed";
    EXPECT_EQ(selected(rb(-4, L"OR>")), "refused");
    EXPECT_EQ(selected(rb(-4, L"<NOT", -4, L"NOT>")), "refused");
    EXPECT_EQ(selected(rb(-4, L"?", 62, 1)), "refused");
}
