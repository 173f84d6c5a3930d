// Names without case, as symbol tables, commands and registry keys compare them: simple case folding over the
// whole character set, one code point to one, the same in every locale.
#pragma once

#include <string>
#include <string_view>

namespace base {

// A code point by the table of those that have case.
char32_t fold_by_table(char32_t c);

// The folded form of a code point: the code point itself when it has no case.
inline char32_t fold_code_point(char32_t c) {
    if (c < 0x80)
        return c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c;
    constexpr char32_t first_without_case = 0x2E80; // the signs of East Asia
    constexpr char32_t last_without_case = 0xA4FF;
    return c >= first_without_case && c <= last_without_case ? c : fold_by_table(c);
}

// The same for one unit of wide text; where wchar_t has 16 bits a surrogate stays as it is.
inline wchar_t fold_case(wchar_t c) {
    return static_cast<wchar_t>(fold_code_point(static_cast<char32_t>(c)));
}

// Negative, 0 or positive as `a` stands before, with or behind `b`, by folded code points.
int compare_no_case(std::wstring_view a, std::wstring_view b);

// True when the two differ in case only.
bool equal_no_case(std::wstring_view a, std::wstring_view b);

// The text with every code point folded: equal for two texts exactly when equal_no_case() is true.
std::wstring folded(std::wstring_view text);

} // namespace base
