// Which groups of a record a version does not know, and what of that a user misses.
#pragma once

#include "host/dxf/record_table.h"
#include "host/version/losses.h"

#include <string_view>
#include <vector>

namespace version {

class dropped_groups {
public:
    dropped_groups(int version, const dxf::record_table& records);

    // Whether records of a type, by its number, have any such group at all; whether a group is one.
    bool any(std::uint32_t type) const { return !codes_[type].empty(); }
    bool has(std::uint32_t type, int code) const;
    // Counts what goes with a group.
    static void tell(std::string_view type, int code, std::string_view value, losses& lost);

private:
    std::vector<std::vector<int>> codes_; // sorted, by number of type
};

} // namespace version
