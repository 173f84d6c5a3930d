// The characters of a code page, as the system's library of conversions tells them one by one.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace sys {

struct code_page_table {
    // By the byte, or by lead * 256 + trail: the character, 0 when there is none.
    std::vector<char16_t> characters;
    // By the character: the byte, or lead * 256 + trail; 0 when the page does not have it.
    std::vector<std::uint16_t> codes;
};

// Nothing for a number that is none of ours, or that the system does not know.
std::optional<code_page_table> ask_for_code_page(int number);

} // namespace sys
