// Which of several records with the same handle a reference means.
#pragma once

#include "host/dxf/record_table.h"

#include <cstddef>
#include <vector>

namespace dxf {

// A group that holds a handle that several records have.
struct reference_to_double {
    record_id holder;  // the record in which it stands
    std::size_t group; // its place among that one's groups
    record_id meant;
};

// Every reference that means one of `doubles`, records whose handle one before them has. What stands in,
// behind or under a record belongs to that one; what it owns it names, and is named by; else the kind of
// object tells that the group wants. A reference that might mean several records means the first one, and is
// not among these.
ACDB_PORT std::vector<reference_to_double> references_to(const std::vector<record_id>& doubles,
                                                         const record_table& records);

} // namespace dxf
