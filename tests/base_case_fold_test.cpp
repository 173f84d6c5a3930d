#include "base/case_fold.h"

#include <gtest/gtest.h>

namespace {

TEST(BaseCaseFold, ComparesByFoldedCodePoint) {
    const struct {
        std::wstring_view a;
        std::wstring_view b;
        int order;
    } rows[] = {
        {L"", L"", 0},
        {L"Layer", L"lAYER", 0},
        {L"a", L"B", -1},
        {L"_", L"A", -1}, // '_' is behind 'A' and before 'a'
        {L"ab", L"A", 1},
        {L"给水-A", L"给水-a", 0},
        {L"ÄÖÜ", L"äöü", 0},
        {L"ŽLUŤOUČKÝ", L"žluťoučký", 0},
        {L"ΣΊΣΥΦΟΣ", L"σίσυφος", 0}, // both small sigmas
        {L"ПРИВЕТ", L"привет", 0},
        {L"ſ", L"S", 0},
        {L"K", L"k", 0}, // the sign of kelvin
        {L"ß", L"ss", 1},
        {L"ẞ", L"ß", 0},
        {L"I", L"ı", -1},
        {L"ｆｕｌｌ", L"ＦＵＬＬ", 0},
        {L"Ꭰ", L"ꭰ", 0}, // folds to the capital
        {L"\U00010400", L"\U00010428", 0},
        {L"\U0001E900x", L"\U0001E922X", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(base::compare_no_case(row.a, row.b), row.order) << testing::PrintToString(row.a);
        EXPECT_EQ(base::compare_no_case(row.b, row.a), -row.order) << testing::PrintToString(row.a);
        EXPECT_EQ(base::equal_no_case(row.a, row.b), row.order == 0);
        EXPECT_EQ(base::folded(row.a) == base::folded(row.b), row.order == 0);
    }
}

// Unicode 14.0.0 folds 1454 code points, each to one that stays as it is.
TEST(BaseCaseFold, WholeCharacterSet) {
    int count = 0;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        const char32_t to = base::fold_code_point(c);
        count += to != c;
        ASSERT_EQ(base::fold_code_point(to), to) << std::hex << static_cast<unsigned>(c);
    }
    EXPECT_EQ(count, 1454);
    EXPECT_EQ(base::fold_case(L'Ō'), L'ō');
    EXPECT_EQ(base::fold_case(L'İ'), L'İ'); // without a locale it has no simple folding
}

} // namespace
