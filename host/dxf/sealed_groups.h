// Groups whose bytes are no text that anybody reads: what solids are made of is written disguised, in groups
// 1 and 3.
#pragma once

#include "host/dxf/record_table.h"

#include <string_view>
#include <vector>

namespace dxf {

// Those of a drawing, in the order of its records.
std::vector<std::string_view> sealed_groups(const record_table& records);

} // namespace dxf
