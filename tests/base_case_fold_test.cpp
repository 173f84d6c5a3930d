#include "base/case_fold.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

TEST(BaseCaseFold, ComparesByFoldedCodePoint) {
    // Each is equal to the next, or else before it.
    const struct {
        std::vector<std::wstring_view> texts;
        bool equal;
    } rows[] = {
        {{L"Layer-给水", L"lAYER-给水"}, true},
        {{L"ÄÖÜ ŽLUŤOUČKÝ", L"äöü žluťoučký"}, true},
        {{L"ΣΊΣΥΦΟΣ", L"σίσυφος", L"ςίςυφοσ"}, true},
        {{L"ПРИВЕТ", L"привет"}, true},
        {{L"sk", L"ſ\u212A", L"SK"}, true}, // the long s and the sign of kelvin
        {{L"ẞ", L"ß"}, true},
        {{L"\u13A0", L"\uAB70"}, true}, // Cherokee folds to capitals
        {{L"\U00010400\U0001E900x", L"\U00010428\U0001E922X"}, true},
        {{L"", L"_", L"A", L"ab", L"B", L"i", L"ss", L"ß", L"ı"}, false},
    };
    for (const auto& row : rows) {
        for (std::size_t i = 1; i < row.texts.size(); ++i) {
            const auto a = row.texts[i - 1];
            const auto b = row.texts[i];
            EXPECT_EQ(base::compare_no_case(a, b), row.equal ? 0 : -1) << testing::PrintToString(b);
            EXPECT_EQ(base::compare_no_case(b, a), row.equal ? 0 : 1) << testing::PrintToString(b);
            EXPECT_EQ(base::folded(a) == base::folded(b), row.equal) << testing::PrintToString(b);
        }
    }
}

// Unicode 14.0.0 folds 1454 code points, each to one that stays as it is; the sum is of the products of the
// two.
TEST(BaseCaseFold, WholeCharacterSet) {
    int count = 0;
    std::uint64_t sum = 0;
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        const char32_t to = base::fold_code_point(c);
        count += to != c;
        sum += to != c ? std::uint64_t(c) * to : 0;
        ASSERT_EQ(base::fold_code_point(to), to) << std::hex << static_cast<unsigned>(c);
    }
    EXPECT_EQ(count, 1454);
    EXPECT_EQ(sum, 2084836764568u);
}

} // namespace
