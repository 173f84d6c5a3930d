// Put in front of every source that mutate.py seeds faults into: which of them is on, by the environment's
// ZEF_FAULT.
#pragma once

#include <cstdlib>

inline const int zef_fault_on =
    std::getenv("ZEF_FAULT") == nullptr ? -1 : std::atoi(std::getenv("ZEF_FAULT"));

// Whether this fault is on; what compilers work out themselves has none.
constexpr bool zef_fault(int number) {
    return !__builtin_is_constant_evaluated() && number == zef_fault_on;
}
