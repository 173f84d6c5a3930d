// CString against hand-made expectations, and CObject's run-time classes.
#include "afx.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

std::wstring wide(const CString& s) {
    return s.GetString();
}

TEST(CString, made_from_everything_that_may_be_null_or_narrow) {
    struct row {
        CString made;
        const wchar_t* text;
    };
    const row rows[] = {
        {CString(), L""},
        {CString(static_cast<LPCWSTR>(nullptr)), L""},
        {CString(static_cast<LPCSTR>(nullptr)), L""},
        {CString(L"给水管"), L"给水管"},
        {CString(L"给水管", 2), L"给水"},
        {CString(L"给水管", -1), L""},
        {CString("\xE7\xBB\x99水"), L"给水"},
        {CString("给水", 3), L"给"},
        {CString(L'-', 3), L"---"},
        {CString(L'-', -3), L""},
    };
    for (const row& r : rows) {
        EXPECT_EQ(wide(r.made), r.text);
        EXPECT_EQ(r.made.GetLength(), static_cast<int>(std::wcslen(r.text)));
        EXPECT_EQ(r.made.IsEmpty(), *r.text == 0);
    }
    CString s;
    s = "\xE6\xB0\xB4";
    s += "\xE7\xAE\xA1";
    EXPECT_EQ(wide(s), L"水管");
    s = L'阀';
    EXPECT_EQ(wide(s), L"阀");
    s = static_cast<LPCWSTR>(nullptr);
    EXPECT_TRUE(s.IsEmpty());
    s = CString(L"a\0b", 3);
    EXPECT_EQ(s.GetLength(), 3); // nought is a character like any other when the length is told
    EXPECT_EQ((s + s).GetLength(), 6);
}

TEST(CString, parts_leave_out_what_lies_outside) {
    const CString s = L"给水J-1";
    struct row {
        CString part;
        const wchar_t* text;
    };
    const row rows[] = {
        {s.Mid(2), L"J-1"},
        {s.Mid(2, 1), L"J"},
        {s.Mid(-3, 2), L"给水"},
        {s.Mid(5, 1), L""},
        {s.Mid(99), L""},
        {s.Mid(1, -1), L""},
        {s.Left(2), L"给水"},
        {s.Left(-1), L""},
        {s.Left(99), L"给水J-1"},
        {s.Right(2), L"-1"},
        {s.Right(0), L""},
        {s.Right(99), L"给水J-1"},
        {s.SpanIncluding(L"水给"), L"给水"},
        {s.SpanIncluding(L"1"), L""},
        {s.SpanExcluding(L"-J"), L"给水"},
        {s.SpanExcluding(L"x"), L"给水J-1"},
        {s.SpanIncluding(nullptr), L""},
    };
    for (const row& r : rows)
        EXPECT_EQ(wide(r.part), r.text);
}

TEST(CString, finding) {
    const CString s = L"管-管-阀";
    struct row {
        int found;
        int expected;
    };
    const row rows[] = {
        {s.Find(L'管'), 0},        {s.Find(L'管', 1), 2},    {s.Find(L'管', 3), -1},
        {s.Find(L'管', 99), -1},   {s.Find(L"-阀"), 3},      {s.Find(L"-管-"), 1},
        {s.Find(L"x"), -1},        {s.Find(L"管", -5), 0},   {s.ReverseFind(L'-'), 3},
        {s.ReverseFind(L'x'), -1}, {s.FindOneOf(L"阀-"), 1}, {s.FindOneOf(L""), -1},
    };
    for (std::size_t i = 0; i != std::size(rows); ++i)
        EXPECT_EQ(rows[i].found, rows[i].expected) << "row " << i;
}

TEST(CString, changes_tell_how_many) {
    struct row {
        const wchar_t* before;
        int (*act)(CString&);
        int answer;
        const wchar_t* after;
    };
    const row rows[] = {
        {L"a-b-c", [](CString& s) { return s.Replace(L'-', L'_'); }, 2, L"a_b_c"},
        {L"a-b-c", [](CString& s) { return s.Replace(L"-", L"--"); }, 2, L"a--b--c"},
        {L"aaa", [](CString& s) { return s.Replace(L"aa", L"b"); }, 1, L"ba"},
        {L"给水给水", [](CString& s) { return s.Replace(L"水", nullptr); }, 2, L"给给"},
        {L"abc", [](CString& s) { return s.Replace(L"", L"x"); }, 0, L"abc"},
        {L"ab", [](CString& s) { return s.Replace(s, s + s); }, 1, L"abab"},
        {L"a-b-", [](CString& s) { return s.Remove(L'-'); }, 2, L"ab"},
        {L"ac", [](CString& s) { return s.Insert(1, L'b'); }, 3, L"abc"},
        {L"ac", [](CString& s) { return s.Insert(-4, L"给"); }, 3, L"给ac"},
        {L"ac", [](CString& s) { return s.Insert(99, L"给"); }, 3, L"ac给"},
        {L"abcd", [](CString& s) { return s.Delete(1, 2); }, 2, L"ad"},
        {L"abcd", [](CString& s) { return s.Delete(3); }, 3, L"abc"},
        {L"abcd", [](CString& s) { return s.Delete(2, 99); }, 2, L"ab"},
        {L"abcd", [](CString& s) { return s.Delete(99); }, 4, L"abcd"},
    };
    for (const row& r : rows) {
        CString s = r.before;
        EXPECT_EQ(r.act(s), r.answer) << wide(r.before);
        EXPECT_EQ(wide(s), r.after);
    }
}

TEST(CString, trims_turns_and_changes_case_in_all_scripts) {
    struct row {
        CString made;
        const wchar_t* text;
    };
    const wchar_t* const blanks = L" \t\r\n\u3000给 水\u00A0\u3000 ";
    const row rows[] = {
        {CString(blanks).Trim(), L"给 水"},
        {CString(blanks).TrimLeft(), L"给 水\u00A0\u3000 "},
        {CString(blanks).TrimRight(), L" \t\r\n\u3000给 水"},
        {CString(L" \t\n").Trim(), L""},
        {CString(L"--a--").Trim(L'-'), L"a"},
        {CString(L"--a--").TrimLeft(L'-'), L"a--"},
        {CString(L"-+a+-").TrimRight(L"+-"), L"-+a"},
        {CString(L"-+a+-").Trim(L"+-"), L"a"},
        {CString(L"管J-1").MakeReverse(), L"1-J管"},
        {CString(L"pipe管äßſçωμιж\uFF4A\u00B5").MakeUpper(), L"PIPE管ÄßSÇΩΜΙЖ\uFF2A\u00B5"},
        {CString(L"PIPE管ÄΩΣЖ\uFF2Aς").MakeLower(), L"pipe管äωσж\uFF4Aς"},
    };
    for (const row& r : rows)
        EXPECT_EQ(wide(r.made), r.text);
}

TEST(CString, tokens) {
    struct row {
        const wchar_t* text;
        const wchar_t* set;
        std::vector<std::wstring> parts;
    };
    const row rows[] = {
        {L"给水,热水;排水", L",;", {L"给水", L"热水", L"排水"}},
        {L",,a,,b,,", L",", {L"a", L"b"}},
        {L",,,", L",", {}},
        {L"", L",", {}},
        {L"a b", L"", {L"a b"}},
        {L"a b", nullptr, {L"a b"}},
    };
    for (const row& r : rows) {
        const CString text = r.text;
        std::vector<std::wstring> parts;
        int at = 0;
        for (CString part = text.Tokenize(r.set, at); at != -1; part = text.Tokenize(r.set, at))
            parts.push_back(wide(part));
        EXPECT_EQ(parts, r.parts) << r.text;
    }
}

TEST(CString, order) {
    struct row {
        const wchar_t* a;
        const wchar_t* b;
        int exact;
        int no_case;
    };
    const row rows[] = {
        {L"a", L"b", -1, -1}, {L"B", L"a", -1, 1},    {L"Pipe", L"pIPE", -1, 0},
        {L"", nullptr, 0, 0}, {L"给水", L"给", 1, 1}, {L"ÄΩ", L"äω", -1, 0},
    };
    const auto sign = [](int n) { return n < 0 ? -1 : n > 0; };
    for (const row& r : rows) {
        const CString a = r.a;
        EXPECT_EQ(sign(a.Compare(r.b)), r.exact) << r.a;
        EXPECT_EQ(sign(a.CompareNoCase(r.b)), r.no_case) << r.a;
        EXPECT_EQ(a == r.b, r.exact == 0);
        EXPECT_EQ(a == CString(r.b), r.exact == 0);
        EXPECT_EQ(r.b != a, r.exact != 0);
        EXPECT_EQ(a < r.b, r.exact < 0);
        EXPECT_EQ(a >= CString(r.b), r.exact >= 0);
    }
}

TEST(CString, formats_strings_as_they_are) {
    CString s;
    const CString system = L"给水";
    const wchar_t layer[] = L"PIPE";
    s.Format(L"%s-%ls_%d %.2f %hs%c", system, layer, 7, 0.128, "narrow", L'管');
    EXPECT_EQ(wide(s), L"给水-PIPE_7 0.13 narrow管");
    s.Format(L"<%s>", s);
    s.AppendFormat(L"%%%04X", 0xBEu);
    EXPECT_EQ(wide(s), L"<给水-PIPE_7 0.13 narrow管>%00BE");
    s.Format(nullptr);
    EXPECT_EQ(wide(s), L"");
}

TEST(CString, buffers) {
    CString s = L"ab";
    wchar_t* buffer = s.GetBuffer(5);
    EXPECT_STREQ(buffer, L"ab");
    std::wcscpy(buffer, L"12345"); // all of them, and the nought
    s.ReleaseBuffer();
    EXPECT_EQ(wide(s), L"12345");
    s.GetBuffer(10)[1] = 0;
    s.ReleaseBuffer();
    EXPECT_EQ(wide(s), L"1");
    std::wcscpy(s.GetBufferSetLength(3), L"xyz");
    s.ReleaseBuffer(2);
    EXPECT_EQ(wide(s), L"xy");
    s.SetAt(0, L'管');
    EXPECT_EQ(s[0], L'管');
    EXPECT_EQ(s[s.GetLength()], 0);
    CString copy = s;
    copy += L"!";
    copy += L'?';
    EXPECT_EQ(wide(s), L"管y");
    EXPECT_EQ(wide(L"<" + copy + L'>'), L"<管y!?>");
}

class CBase : public CObject {
    DECLARE_DYNAMIC(CBase)
};
class CMadeByName : public CBase {
    DECLARE_DYNCREATE(CMadeByName)
};
class COther : public CObject {
    DECLARE_DYNAMIC(COther)
};
IMPLEMENT_DYNAMIC(CBase, CObject)
IMPLEMENT_DYNCREATE(CMadeByName, CBase)
IMPLEMENT_DYNAMIC(COther, CObject)

TEST(CObject, knows_its_class_and_those_above) {
    CMadeByName derived;
    CBase base;
    EXPECT_STREQ(derived.GetRuntimeClass()->m_lpszClassName, "CMadeByName");
    EXPECT_TRUE(derived.IsKindOf(RUNTIME_CLASS(CMadeByName)));
    EXPECT_TRUE(derived.IsKindOf(RUNTIME_CLASS(CBase)));
    EXPECT_TRUE(derived.IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(base.IsKindOf(RUNTIME_CLASS(CMadeByName)));
    EXPECT_FALSE(derived.IsKindOf(RUNTIME_CLASS(COther)));
    EXPECT_FALSE(COther().IsKindOf(RUNTIME_CLASS(CBase)));
    EXPECT_EQ(DYNAMIC_DOWNCAST(CBase, &derived), &derived);
    EXPECT_EQ(DYNAMIC_DOWNCAST(CMadeByName, &base), nullptr);
    EXPECT_EQ(DYNAMIC_DOWNCAST(CBase, nullptr), nullptr);

    const std::unique_ptr<CObject> made(RUNTIME_CLASS(CMadeByName)->CreateObject());
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetRuntimeClass(), RUNTIME_CLASS(CMadeByName));
    EXPECT_EQ(RUNTIME_CLASS(CBase)->CreateObject(), nullptr);
}

} // namespace
