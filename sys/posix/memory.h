// How much memory the machine has.
#pragma once

#include <cstdint>
#include <unistd.h>

namespace sys {

inline std::uintmax_t half_of_memory() {
    return static_cast<std::uintmax_t>(::sysconf(_SC_PHYS_PAGES)) *
           static_cast<std::uintmax_t>(::sysconf(_SC_PAGESIZE)) / 2;
}

} // namespace sys
