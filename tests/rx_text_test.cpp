// The text functions of tchar.h, AcString, and the status names.
#include "acstring.h"
#include "afx.h"
#include "tchar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

TEST(tchar, reads_numbers_from_the_front) {
    struct row {
        const wchar_t* text;
        int integer;
        double real;
        int real_length; // how much of the text the real takes
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const row rows[] = {
        {L"", 0, 0.0, 0},
        {L"管", 0, 0.0, 0},
        {L"-", 0, 0.0, 0},
        {L"+.", 0, 0.0, 0},
        {L"12管", 12, 12.0, 2},
        {L" \t-7.5x", -7, -7.5, 6},
        {L"+3", 3, 3.0, 2},
        {L".5", 0, 0.5, 2},
        {L"5.", 5, 5.0, 2},
        {L"1e3", 1, 1000.0, 3},
        {L"1e", 1, 1.0, 1},
        {L"1e+x", 1, 1.0, 1},
        {L"1E-2,", 1, 0.01, 4},
        {L"0x10", 0, 0.0, 1},
        {L"nan", 0, 0.0, 0},
        {L"1,5", 1, 1.5 - 0.5, 1},
        {L"99999999999", 2147483647, 99999999999.0, 11},
        {L"-99999999999", -2147483647 - 1, -99999999999.0, 12},
        {L"1e999", 1, infinity, 5},
        {L"-1e999", -1, -infinity, 6},
        {L"1e-999", 1, 0.0, 6},
    };
    for (const row& r : rows) {
        EXPECT_EQ(_ttoi(r.text), r.integer) << r.text;
        EXPECT_EQ(_wtol(r.text), r.integer) << r.text;
        EXPECT_EQ(_tstof(r.text), r.real) << r.text;
        TCHAR* end = nullptr;
        _tcstod(r.text, &end);
        EXPECT_EQ(end - r.text, r.real_length) << r.text;
    }
    TCHAR* end = nullptr;
    const wchar_t* const colour = L"FF00管";
    EXPECT_EQ(_tcstol(colour, &end, 16), 0xFF00);
    EXPECT_EQ(*end, L'管');
    EXPECT_EQ(_tcstoul(L"4294967295", nullptr, 10), 4294967295u);
    EXPECT_EQ(_tcstoul(L"99999999999", nullptr, 10), 4294967295u);
    EXPECT_EQ(_tcstoul(L"-1", nullptr, 10), 4294967295u);
}

TEST(tchar, compares_without_case) {
    struct row {
        const wchar_t* a;
        const wchar_t* b;
        int whole;
        int first_three;
    };
    const row rows[] = {
        {L"Layer", L"lAYER", 0, 0}, {L"给水A", L"给水a", 0, 0}, {L"abcd", L"ABCE", -1, 0},
        {L"ab", L"abc", -1, -1},    {L"Ж", L"ж", 0, 0},         {L"b", L"A", 1, 1},
    };
    for (const row& r : rows) {
        EXPECT_EQ(_tcsicmp(r.a, r.b), r.whole) << r.a;
        EXPECT_EQ(_tcsnicmp(r.a, r.b, 3), r.first_three) << r.a;
    }
    wchar_t text[] = L"pipe管ä";
    EXPECT_STREQ(_tcsupr(text), L"PIPE管Ä");
    EXPECT_STREQ(_tcslwr(text), L"pipe管ä");
    wchar_t* const copy = _tcsdup(text);
    EXPECT_STREQ(copy, text);
    free(copy);
}

TEST(tchar, sized_writers_never_write_behind_the_end) {
    wchar_t buffer[6];
    const auto reset = [&] { std::wcscpy(buffer, L"#####"); };
    reset();
    EXPECT_EQ(_tcscpy_s(buffer, L"12345"), 0);
    EXPECT_STREQ(buffer, L"12345");
    EXPECT_NE(_tcscpy_s(buffer, L"123456"), 0);
    EXPECT_STREQ(buffer, L"");
    EXPECT_NE(_tcscpy_s(buffer, nullptr), 0);
    EXPECT_EQ(_tcscpy_s(buffer, L"12"), 0);
    EXPECT_EQ(_tcscat_s(buffer, L"345"), 0);
    EXPECT_STREQ(buffer, L"12345");
    EXPECT_NE(_tcscat_s(buffer, L"6"), 0);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(_stprintf_s(buffer, L"%s%d", L"管", 42), 3);
    EXPECT_STREQ(buffer, L"管42");
    EXPECT_EQ(swprintf_s(buffer, 6, L"%d", 123456), -1);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(_stprintf(buffer, L"%5.1f", 2.26), 5);
    EXPECT_STREQ(buffer, L"  2.3");
}

TEST(AcString, does_what_names_need) {
    AcString s(L"给水");
    s.append(L"-PIPE").append(L'1');
    EXPECT_STREQ(s.kACharPtr(), L"给水-PIPE1");
    EXPECT_EQ(s.length(), 8u);
    EXPECT_EQ(s.getAt(1), L'水');
    EXPECT_EQ(s.getAt(8), 0);
    EXPECT_EQ(s.getAt(-1), 0);
    EXPECT_EQ(s.compareNoCase(L"给水-pipe1"), 0);
    EXPECT_LT(s.compare(L"给水-pipe1"), 0);
    EXPECT_TRUE(s == L"给水-PIPE1" && s != L"" && s < AcString(L"给水-Q"));
    EXPECT_TRUE(s.matchesStart(L"给水"));
    EXPECT_FALSE(s.matchesStart(L"水"));
    EXPECT_EQ(s.find(L"PI"), 3);
    EXPECT_EQ(s.find(L'x'), -1);
    EXPECT_EQ(AcString(L"a|b|c").findRev(L'|'), 3);
    EXPECT_TRUE(s.substr(3, 4) == L"PIPE");
    EXPECT_TRUE(s.substr(3, -1) == L"PIPE1");
    EXPECT_TRUE(s.substr(99, 1).isEmpty());
    EXPECT_TRUE(AcString(L" \u3000a b\t").trim() == L"a b");
    EXPECT_TRUE(AcString(L"äb").makeUpper() == L"ÄB");
    EXPECT_TRUE(s.format(L"%s|%d", L"图层", 0) == L"图层|0");
    EXPECT_TRUE(AcString("\xE5\xB1\x82") == L"层");
    EXPECT_TRUE(AcString(static_cast<const ACHAR*>(nullptr)).isEmpty());
    EXPECT_TRUE((L"<" + s + L">").setEmpty().isEmpty());
}

// A text that turns into a pointer must not be ordered by its address.
TEST(Texts, sort_by_what_they_say) {
    std::vector<AcString> strings{L"c", L"a", L"", L"b"};
    std::vector<CString> texts{L"c", L"a", L"", L"b"};
    for (int turn = 0; turn < 4; ++turn) {
        std::rotate(strings.begin(), strings.begin() + turn, strings.end());
        std::ranges::sort(strings);
        EXPECT_EQ(strings, (std::vector<AcString>{L"", L"a", L"b", L"c"}));
        std::rotate(texts.begin(), texts.begin() + turn, texts.end());
        std::ranges::sort(texts);
        EXPECT_EQ(texts, (std::vector<CString>{L"", L"a", L"b", L"c"}));
    }
}

TEST(ErrorStatus, has_a_name_and_the_known_number) {
    EXPECT_STREQ(acadErrorStatusText(Acad::eOk), L"eOk");
    EXPECT_STREQ(acadErrorStatusText(Acad::eKeyNotFound), L"eKeyNotFound");
    EXPECT_STREQ(acadErrorStatusText(static_cast<Acad::ErrorStatus>(320)), L"eLockViolation");
    EXPECT_STREQ(acadErrorStatusText(Acad::eInvalidInput), L"eInvalidInput");
    EXPECT_STREQ(acadErrorStatusText(static_cast<Acad::ErrorStatus>(511)), L"unknown status");
}

} // namespace
