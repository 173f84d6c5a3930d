#include "sys/gb18030.h"

#include <iconv.h>

#include <cstddef>
#include <vector>

namespace sys {

namespace {

constexpr long first_of_planes = 189000; // the number of 90 30 81 30, U+10000
constexpr long in_base_plane = 39420;    // numbers that stand for characters below U+10000

// The characters below U+10000 by their numbers; 0 for none.
std::vector<char16_t> base_plane() {
    std::vector<char16_t> all(in_base_plane, u'\0');
    iconv_t handle = ::iconv_open("UTF-16LE", "GB18030");
    if (handle == reinterpret_cast<iconv_t>(-1))
        return all;
    for (long number = 0; number < in_base_plane; ++number) {
        char bytes[4] = {static_cast<char>(0x81 + number / 12600),
                         static_cast<char>(0x30 + number / 1260 % 10),
                         static_cast<char>(0x81 + number / 10 % 126), static_cast<char>(0x30 + number % 10)};
        unsigned char out[4] = {};
        char* from = bytes;
        char* to = reinterpret_cast<char*>(out);
        std::size_t from_left = sizeof bytes;
        std::size_t to_left = sizeof out;
        if (::iconv(handle, &from, &from_left, &to, &to_left) == 0 && to_left == 2)
            all[static_cast<std::size_t>(number)] = static_cast<char16_t>(out[0] | out[1] << 8);
        else
            ::iconv(handle, nullptr, nullptr, nullptr, nullptr);
    }
    ::iconv_close(handle);
    return all;
}

} // namespace

// Source: GB 18030's own numbering: lead and third byte from 81 to FE, the others digits.
long gb18030_character(const unsigned char* at, long left) {
    const auto is_lead = [](unsigned byte) { return byte >= 0x81 && byte <= 0xFE; };
    const auto is_digit = [](unsigned byte) { return byte >= 0x30 && byte <= 0x39; };
    for (long i = 0; i < 4; ++i) {
        if (i == left)
            return -1;
        if (i % 2 == 0 ? !is_lead(at[i]) : !is_digit(at[i]))
            return 0;
    }
    const long number = (((at[0] - 0x81) * 10 + at[1] - 0x30) * 126 + at[2] - 0x81) * 10 + at[3] - 0x30;
    if (number >= first_of_planes)
        return number - first_of_planes < 0x100000 ? number - first_of_planes + 0x10000 : 0;
    if (number >= in_base_plane)
        return 0;
    static const std::vector<char16_t> characters = base_plane();
    return characters[static_cast<std::size_t>(number)];
}

} // namespace sys
