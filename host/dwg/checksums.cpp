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

constexpr auto of_16 = table_of<std::uint16_t>(0xA001);
constexpr auto of_32 = table_of<std::uint32_t>(0xEDB88320);

} // namespace

std::uint16_t crc16(std::string_view bytes, std::uint16_t start) {
    for (const char byte : bytes)
        start =
            static_cast<std::uint16_t>(start >> 8 ^ of_16[(start ^ static_cast<unsigned char>(byte)) & 0xFF]);
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
