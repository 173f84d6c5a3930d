// A handle as files write it.
#pragma once

#include <cstdint>
#include <iterator>
#include <string>

namespace dxf {

inline std::string handle_text(std::uint64_t handle) {
    char digits[16];
    char* first = std::end(digits);
    do
        *--first = "0123456789ABCDEF"[handle & 0xF];
    while ((handle >>= 4) != 0);
    return {first, std::end(digits)};
}

} // namespace dxf
