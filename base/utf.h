// Between UTF-8 and wide text, whose units are UTF-32 or UTF-16 as wchar_t is wide. Bytes that are not UTF-8
// survive the way there and back: an undecodable byte b becomes the lone unit U+DC00+b.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

inline constexpr char32_t replacement_character = 0xFFFD;

// True for U+DC80..U+DCFF, each of which stands for one byte that could not be decoded.
constexpr bool is_escaped_byte(char32_t c) {
    return c >= 0xDC80 && c <= 0xDCFF;
}

// The text of some bytes. narrow() gives exactly these bytes back, whatever they are.
std::wstring widen(std::string_view utf8);

// The UTF-8 of a text. Units U+DC80..U+DCFF give their raw byte; two surrogates that make a pair are one
// character however wide wchar_t is; what is no character otherwise gives U+FFFD.
std::string narrow(std::wstring_view text);

// True when all bytes are UTF-8: nothing overlong, no surrogates, nothing above U+10FFFF. Fast over ASCII.
bool is_utf8(std::string_view bytes);

// Appends one character, with narrow()'s answers for what is none.
void append_utf8(std::string& out, char32_t c);

// Appends one code point: one unit, or two where wchar_t has 16 bits.
void append_wide(std::wstring& out, char32_t c);

// The code point that begins at `at`, which must lie inside the text; `at` moves behind it. A lone surrogate
// is given as it stands.
char32_t take_code_point(std::wstring_view text, std::size_t& at);

} // namespace base
