// Whole numbers in the bytes of a file, little or big end first, whatever this machine's order is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace base {

// The number in the `count` bytes (at most 4) at `at`, which must be there.
inline std::uint32_t little_endian(std::string_view bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = count; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

inline std::uint32_t big_endian(std::string_view bytes, std::size_t at, std::size_t count) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

// Writes the number's lowest `count` bytes (at most 4) over those at `at`, which must be there.
inline void put_little_endian(std::string& bytes, std::size_t at, std::size_t count, std::uint32_t value) {
    for (std::size_t i = 0; i < count; ++i, value >>= 8)
        bytes[at + i] = static_cast<char>(value & 0xFF);
}

inline void put_big_endian(std::string& bytes, std::size_t at, std::size_t count, std::uint32_t value) {
    for (std::size_t i = count; i-- > 0; value >>= 8)
        bytes[at + i] = static_cast<char>(value & 0xFF);
}

} // namespace base
