#include "host/rx/letter_case.h"

#include "base/case_fold.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace rx {

namespace {

// Signs that fold to a letter without being its capital.
bool is_variant(char32_t c) {
    return c == 0x00B5 || c == 0x0345 || c == 0x1E9E || (c >= 0x13F8 && c <= 0x13FD) ||
           (c >= 0xAB70 && c <= 0xABBF);
}

// Folding leads from a capital to its small letter. The way back: of several that fold to one letter, the
// Kelvin sign and K for example, the first is the letter's own.
const std::unordered_map<char32_t, char32_t>& capitals() {
    static const auto* const all = [] {
        auto* const map = new std::unordered_map<char32_t, char32_t>;
        for (char32_t c = 0; c <= 0x1E943; ++c) {
            const char32_t small = base::fold_code_point(c);
            if (small != c && !is_variant(c))
                map->emplace(small, c);
        }
        return map;
    }();
    return *all;
}

char32_t capital_of(char32_t c) {
    const auto found = capitals().find(c);
    return found != capitals().end() ? found->second : c;
}

} // namespace

wchar_t to_upper(wchar_t c) {
    if (c < 0x80)
        return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c;
    const char32_t code = static_cast<char32_t>(c);
    return is_variant(code) ? c : static_cast<wchar_t>(capital_of(base::fold_code_point(code)));
}

wchar_t to_lower(wchar_t c) {
    if (c < 0x80)
        return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
    const char32_t code = static_cast<char32_t>(c);
    const char32_t small = base::fold_code_point(code);
    return capital_of(small) == code ? static_cast<wchar_t>(small) : c;
}

bool is_blank(wchar_t c) {
    constexpr wchar_t others[] = {0x20, 0x85, 0xA0, 0x1680, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000};
    return (c >= 9 && c <= 13) || (c >= 0x2000 && c <= 0x200A) ||
           std::find(std::begin(others), std::end(others), c) != std::end(others);
}

} // namespace rx
