#include "sys/code_page.h"

#include "sys/posix/code_page_table.h"
#include "sys/posix/page_936.h"

#include <algorithm>
#include <utility>

namespace sys {

bool code_page::fill() {
    if (number_ == 936) {
        characters_ = page_936_characters;
        codes_ = page_936_codes;
    } else {
        auto table = ask_for_code_page(number_);
        if (!table)
            return false;
        own_characters_ = std::move(table->characters);
        own_codes_ = std::move(table->codes);
        characters_ = own_characters_.data();
        codes_ = own_codes_.data();
    }
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
        const char16_t* const first = characters_ + byte * 0x100;
        is_lead_[byte] =
            characters_[byte] == 0 && std::any_of(first, first + 0x100, [](char16_t c) { return c != 0; });
    }
    return true;
}

} // namespace sys
