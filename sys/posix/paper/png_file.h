// The dots of a picture as a PNG: drawings are mostly empty, and packing them fast makes hardly larger files.
#pragma once

#include <cstdint>
#include <string>

namespace sys {

// Of rows of dots, each blue, green, red and a byte that is not used.
std::string png_file(const std::uint8_t* dots, int width, int height, int row_bytes);

} // namespace sys
