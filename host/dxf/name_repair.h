// Repairs of block records that lost their names.
#pragma once

#include "host/dxf/record_repair.h"

namespace dxf {

// A block record without a name gets that of the block that names it as its owner, when no other record has
// it. Adds what it did to `repairs`. Before repair_records().
ACDB_PORT void repair_names(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                            placed_repairs& repairs, file_places& places);

} // namespace dxf
