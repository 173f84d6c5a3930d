// Bytes as hexadecimal digits, two each, as binary groups hold them.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace db {

// The value of each hexadecimal digit; of what is none more than a digit has.
inline constexpr std::array<unsigned char, 256> digit_values = [] {
    std::array<unsigned char, 256> values{};
    values.fill(0xFF);
    for (unsigned char value = 0; value < 16; ++value) {
        values[static_cast<unsigned char>("0123456789ABCDEF"[value])] = value;
        values[static_cast<unsigned char>("0123456789abcdef"[value])] = value;
    }
    return values;
}();

// The bytes that digits stand for, added to others: up to what is no pair of digits.
inline void append_bytes(std::string& bytes, std::string_view digits) {
    const std::size_t before = bytes.size();
    bytes.resize(before + digits.size() / 2);
    char* to = bytes.data() + before;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        const unsigned high = digit_values[static_cast<unsigned char>(digits[i])];
        const unsigned low = digit_values[static_cast<unsigned char>(digits[i + 1])];
        if ((high | low) > 15)
            break;
        *to++ = static_cast<char>(high * 16 + low);
    }
    bytes.resize(static_cast<std::size_t>(to - bytes.data()));
}

// Two digits for each byte, in capitals.
inline std::string digits_of(std::string_view bytes) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text(bytes.size() * 2, '0');
    char* to = text.data();
    for (const char byte : bytes) {
        *to++ = digits[static_cast<unsigned char>(byte) >> 4];
        *to++ = digits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

} // namespace db
