#include "base/wildcard.h"

#include <gtest/gtest.h>

namespace {

TEST(BaseWildcard, Grammar) {
    const struct {
        std::wstring_view pattern;
        std::vector<std::wstring_view> matching;
        std::vector<std::wstring_view> others;
    } rows[] = {
        {L"", {L""}, {L"a"}},
        {L"abc", {L"abc"}, {L"ABC", L"ab", L"abcd"}},
        {L"#", {L"7", L"７"}, {L"a", L"", L"-", L"12"}},
        {L"@", {L"a", L"Z", L"é", L"水"}, {L"1", L"_", L"。", L"７"}},
        {L".", {L" ", L"-", L"，", L"×", L"°"}, {L"a", L"1", L"水"}},
        {L"?", {L"a", L"水", L"\U00020000"}, {L"", L"ab"}},
        {L"*", {L"", L"anything, at all"}, {}},
        {L"a*b", {L"ab", L"axxb", L"abb"}, {L"a", L"abc"}},
        {L"*TEXT", {L"TEXT", L"MTEXT"}, {L"TEXTS"}},
        {L"*ab*ab*", {L"abab", L"xabxabx"}, {L"xab", L"aab"}},
        {L"[abc]x", {L"ax", L"cx"}, {L"dx", L"x"}},
        {L"[a-c]", {L"a", L"b", L"c"}, {L"d", L"-", L"B"}},
        {L"[a-]", {L"a", L"-"}, {L"b"}},
        {L"[-a]", {L"a", L"-"}, {L"b"}},
        {L"[~a-c]", {L"d", L"~"}, {L"b", L""}},
        {L"[a~]", {L"a", L"~"}, {L"b"}},
        {L"[`]`-]", {L"]", L"-"}, {L"`", L"\\"}},
        {L"[,x]", {L",", L"x"}, {L""}},
        {L"[*?#]", {L"*", L"?", L"#"}, {L"1"}},
        {L"[]x", {}, {L"x", L"]x"}},
        {L"[ab", {L"[ab"}, {L"a"}},
        {L"~*m*", {L"abc", L""}, {L"m", L"amb"}},
        {L"~[ab]", {L"c", L"aa"}, {L"a"}},
        {L"a~", {L"a~"}, {L"a"}},
        {L"`~a", {L"~a"}, {L"b"}},
        {L"A*,B?", {L"A", L"Axx", L"B1"}, {L"B", L"C"}},
        {L"a,", {L"a", L""}, {L","}},
        {L"???,~*m*,N*", {L"mmm", L"abcd", L"Nmmm"}, {L"mmmm"}},
        {L"a`,b", {L"a,b"}, {L"a", L"b"}},
        {L"`#`@`.`*", {L"#@.*"}, {L"1a-x"}},
        {L"a`", {L"a`"}, {L"a"}},
    };
    for (const auto& row : rows) {
        for (const auto text : row.matching)
            EXPECT_TRUE(base::wildcard_match(text, row.pattern, false))
                << testing::PrintToString(row.pattern) << " with " << testing::PrintToString(text);
        for (const auto text : row.others)
            EXPECT_FALSE(base::wildcard_match(text, row.pattern, false))
                << testing::PrintToString(row.pattern) << " with " << testing::PrintToString(text);
    }
}

TEST(BaseWildcard, WithoutCase) {
    for (const std::wstring_view pattern : {L"äb*", L"ÄB*", L"[Ä-Ö]b?", L"~x*,Y"}) {
        EXPECT_TRUE(base::wildcard_match(L"äBc", pattern, true)) << testing::PrintToString(pattern);
        EXPECT_FALSE(base::wildcard_match(L"Xäbc", pattern, true)) << testing::PrintToString(pattern);
    }
}

// Were every star tried anew for each character, this would not end.
TEST(BaseWildcard, ManyStars) {
    std::wstring pattern;
    for (int i = 0; i < 50; ++i)
        pattern += L"*a";
    const std::wstring text(5000, L'a');
    EXPECT_FALSE(base::wildcard_match(text, pattern + L"*b", true));
    EXPECT_TRUE(base::wildcard_match(text + L"b", pattern + L"*b", true));
}

} // namespace
