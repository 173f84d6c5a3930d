// Code page 936, in the form of code_page_table; the source is written when the program is built.
#pragma once

#include <cstdint>

namespace sys {

extern const char16_t page_936_characters[0x10000];
extern const std::uint16_t page_936_codes[0x10000];

} // namespace sys
