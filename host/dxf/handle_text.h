// A handle as files write it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace dxf {

inline std::string handle_text(std::uint64_t handle) {
    char digits[20];
    std::snprintf(digits, sizeof digits, "%llX", static_cast<unsigned long long>(handle));
    return digits;
}

} // namespace dxf
