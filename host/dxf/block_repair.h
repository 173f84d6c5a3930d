// Repairs of what belongs together: a block, its record in the table, and the layout of a sheet.
#pragma once

#include "host/dxf/record_tools.h"

namespace dxf {

// A block without a record gets one, a record without a block and a sheet whose block is missing an empty
// block. A drawing without a table for records of blocks is left alone.
void repair_blocks(record_tools& tools);

} // namespace dxf
