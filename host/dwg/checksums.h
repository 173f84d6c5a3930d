// The check sums of DWG files.
#pragma once

#include "adesk.h"

#include <cstdint>
#include <string_view>

namespace dwg {

// What objects, header, classes and pages of the object map start with.
inline constexpr std::uint16_t crc_start = 0xC0C1;

// CRC-16 with the reflected polynomial 0xA001.
ACDB_PORT std::uint16_t crc16(std::string_view bytes, std::uint16_t start);
// CRC-32 as zip files have it.
std::uint32_t crc32(std::string_view bytes);
// The two sums of a page of 2004 and later.
std::uint32_t page_sum(std::string_view bytes, std::uint32_t seed);

} // namespace dwg
