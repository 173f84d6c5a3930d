#include "base/wide_format.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>

namespace {

using base::format_wide;

struct row {
    std::wstring got;
    std::wstring expected;
};

void check(std::initializer_list<row> rows) {
    int number = 0;
    for (const row& r : rows)
        EXPECT_EQ(r.got, r.expected) << "row " << number++;
}

TEST(BaseWideFormat, Text) {
    const wchar_t unended[] = {L'a', L'b', L'c'};
    const char unended_bytes[] = {'\xE6', '\xB0', '\xB4', '\xE6', '\xB0', '\xB4'};
    const wchar_t* const no_text = nullptr;
    const char* const no_bytes = nullptr;
    check({
        {format_wide(L"100%%"), L"100%"},
        {format_wide(L"[%s|%ls|%ws]", L"给水", L"b", L"c"), L"[给水|b|c]"},
        {format_wide(L"[%S|%hs|%hS|%lS]", "\xE6\xB0\xB4", "b", "c", L"d"), L"[水|b|c|d]"},
        {format_wide(L"[%5s|%-5s|%*s|%*s]", L"ab", L"ab", 4, L"x", -4, L"y"), L"[   ab|ab   |   x|y   ]"},
        {format_wide(L"[%.2s|%.*s|%.s|%.*s]", L"abc", 3, unended, L"abc", -1, L"all"), L"[ab|abc||all]"},
        {format_wide(L"[%.1S|%.2S]", unended_bytes, unended_bytes), L"[水|水水]"},
        {format_wide(L"%s %S %.3s", no_text, no_bytes, no_text), L"(null) (null) (nu"},
        {format_wide(L"[%c|%C|%lc|%hc|%3c]", L'水', 'b', L'火', 'd', L'e'), L"[水|b|火|d|  e]"},
        {format_wide(L"%c", 0), std::wstring(1, L'\0')},
        {format_wide(nullptr), L""},
    });
}

TEST(BaseWideFormat, Integers) {
    check({
        {format_wide(L"%d %i %u", -5, 7, 4000000000u), L"-5 7 4000000000"},
        {format_wide(L"%d %lld", INT_MIN, LLONG_MIN), L"-2147483648 -9223372036854775808"},
        {format_wide(L"%hd %hu %hhd %hhu", 65537, 65537, 257, -1), L"1 1 1 255"},
        {format_wide(L"%ld %lu", LONG_MIN, ULONG_MAX),
         sizeof(long) == 8 ? L"-9223372036854775808 18446744073709551615" : L"-2147483648 4294967295"},
        {format_wide(L"%I64d %I64x %I32d", std::int64_t(-1), std::uint64_t(1) << 40, -3),
         L"-1 10000000000 -3"},
        {format_wide(L"%zu %zd %td %jd", std::size_t(9), std::ptrdiff_t(-9), std::ptrdiff_t(-8), INTMAX_MAX),
         L"9 -9 -8 9223372036854775807"},
        {format_wide(L"%x %X %#x %#X %o %#o %#x %#o", 0xABCu, 0xABCu, 0xABCu, 0xABCu, 8u, 8u, 0u, 0u),
         L"abc ABC 0xabc 0XABC 10 010 0 0"},
        {format_wide(L"[%5d|%-5d|%05d|%+d|% d|%+ d]", 42, 42, -42, 42, 42, 42),
         L"[   42|42   |-0042|+42| 42|+42]"},
        {format_wide(L"[%.3d|%6.3d|%06.3d|%-06d|%.0d]", 7, 7, 7, 7, 0), L"[007|   007|   007|7     |]"},
        {format_wide(L"[%#06x|%-#6x|%*.*d]", 0xFFu, 0xFFu, 5, 2, 1), L"[0x00ff|0xff  |   01]"},
        {format_wide(L"%p", reinterpret_cast<void*>(0xABCD)),
         std::wstring(2 * sizeof(void*) - 4, L'0') + L"ABCD"},
    });
}

TEST(BaseWideFormat, Reals) {
    const double infinite = std::numeric_limits<double>::infinity();
    check({
        {format_wide(L"%f %.2lf %.0f %#.0f", 1.5, 2.345678, 2.5, 2.0), L"1.500000 2.35 2 2."},
        {format_wide(L"%e %.1E %.0e %#.0e", 12345.678, 0.00012, 5.0, 5.0),
         L"1.234568e+04 1.2E-04 5e+00 5.e+00"},
        {format_wide(L"%g %g %g %G %.3g %.0g", 0.0001, 0.00001, 1e6, 1e-10, 1234.5, 0.5),
         L"0.0001 1e-05 1e+06 1E-10 1.23e+03 0.5"},
        {format_wide(L"%#g %#.3g %#.2g %#g", 1.0, 0.00001, 99.9, 0.0), L"1.00000 1.00e-05 1.0e+02 0.00000"},
        {format_wide(L"%a %.0a %A", 1.5, 1.0, -0.5), L"0x1.8000000000000p+0 0x1p+0 -0X1.0000000000000P-1"},
        {format_wide(L"[%8.2f|%-8.2f|%08.2f|%+.1f|% .1f]", -1.5, 1.5, -1.5, 1.5, 1.5),
         L"[   -1.50|1.50    |-0001.50|+1.5| 1.5]"},
        {format_wide(L"%f %F %05f %e %g", infinite, -infinite, infinite, -0.0, -0.0),
         L"inf -INF   inf -0.000000e+00 -0"},
        {format_wide(L"%.1Lf", 2.25L), L"2.2"},
        {format_wide(L"%.*f", 1, 0.25), L"0.2"},
    });
    EXPECT_EQ(format_wide(L"%.400f", std::numeric_limits<double>::max()).size(), 309u + 1 + 400);
}

TEST(BaseWideFormat, UnknownConversionsStayAndTakeNothing) {
    check({
        {format_wide(L"%d%k%d", 1, 2), L"1%k2"},
        {format_wide(L"[%-5.2lq]", 1), L"[%-5.2lq]"},
        {format_wide(L"%1$s 50%", L"x"), L"%1$s 50%"},
        {format_wide(L"%n%m%"), L"%n%m%"},
        {format_wide(L"%-08.3"), L"%-08.3"},
    });
}

} // namespace
