// Repairs of entities that say two things of the space that they stand in.
#pragma once

#include "host/dxf/record_repair.h"

namespace dxf {

// What stands in the ENTITIES section without group 67 is in model space. Where its group 330 names another
// block, model space is put there instead; that is added to `repairs`. Between repair_records() and
// indexer::settle().
ACDB_PORT void repair_spaces(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                             placed_repairs& repairs, const file_places& places);

} // namespace dxf
