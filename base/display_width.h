// How many columns a text takes on a terminal: most East Asian characters take two.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

// Source: the ranges that Unicode's East Asian Width (UAX #11) calls wide and full-width, put together
// coarsely.
constexpr bool is_wide(char32_t c) {
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF) || (c >= 0xAC00 && c <= 0xD7A3) ||
           (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE6F) || (c >= 0xFF00 && c <= 0xFF60) ||
           (c >= 0xFFE0 && c <= 0xFFE6) || (c >= 0x20000 && c <= 0x3FFFD);
}

inline std::size_t display_width(std::wstring_view text) {
    std::size_t width = 0;
    for (const wchar_t c : text)
        width += is_wide(static_cast<char32_t>(c)) ? 2 : 1;
    return width;
}

// The text with blanks behind it up to `width` columns.
inline std::wstring padded(std::wstring_view text, std::size_t width) {
    const std::size_t taken = display_width(text);
    return std::wstring(text) + std::wstring(taken < width ? width - taken : 0, L' ');
}

} // namespace base
