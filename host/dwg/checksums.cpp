#include "host/dwg/checksums.h"

#include <algorithm>
#include <array>

namespace dwg {

namespace {

template<class Number>
constexpr std::array<Number, 256> table_of(Number polynomial) {
    std::array<Number, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) {
        Number value = static_cast<Number>(i);
        for (int bit = 0; bit < 8; ++bit)
            value = static_cast<Number>(value >> 1 ^ ((value & 1) != 0 ? polynomial : 0));
        table[i] = value;
    }
    return table;
}

// One table for each of eight bytes that are taken at once: what a byte does that so many others follow.
constexpr std::size_t at_once = 8;
constexpr auto of_16 = [] {
    std::array<std::array<std::uint16_t, 256>, at_once> tables{table_of<std::uint16_t>(0xA001)};
    for (std::size_t after = 1; after < at_once; ++after)
        for (std::size_t i = 0; i < 256; ++i) {
            const std::uint16_t before = tables[after - 1][i];
            tables[after][i] = static_cast<std::uint16_t>(before >> 8 ^ tables[0][before & 0xFF]);
        }
    return tables;
}();
constexpr auto of_32 = table_of<std::uint32_t>(0xEDB88320);

} // namespace

std::uint16_t crc16(std::string_view bytes, std::uint16_t start) {
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
    for (; bytes.size() >= at_once; bytes.remove_prefix(at_once)) {
        unsigned sum = of_16[7][(start ^ byte(0)) & 0xFF] ^ of_16[6][(start >> 8 ^ byte(1)) & 0xFF];
        for (std::size_t i = 2; i < at_once; ++i)
            sum ^= of_16[7 - i][byte(i)];
        start = static_cast<std::uint16_t>(sum);
    }
    for (std::size_t i = 0; i < bytes.size(); ++i)
        start = static_cast<std::uint16_t>(start >> 8 ^ of_16[0][(start ^ byte(i)) & 0xFF]);
    return start;
}

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes)
        sum = sum >> 8 ^ of_32[(sum ^ static_cast<unsigned char>(byte)) & 0xFF];
    return ~sum;
}

std::uint32_t page_sum(std::string_view bytes, std::uint32_t seed) {
    constexpr std::uint32_t modulus = 0xFFF1;
    std::uint32_t first = seed & 0xFFFF;
    std::uint32_t second = seed >> 16;
    for (std::size_t at = 0; at < bytes.size();) {
        // So many sums fit into 32 bits.
        for (const std::size_t stop = std::min(bytes.size(), at + 5000); at < stop; ++at) {
            first += static_cast<unsigned char>(bytes[at]);
            second += first;
        }
        first %= modulus;
        second %= modulus;
    }
    return second << 16 | first;
}

} // namespace dwg
