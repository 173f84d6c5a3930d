// Repairs of the entries of dictionaries, where a damaged line took the handle of what they name.
#pragma once

#include "host/dxf/record_repair.h"

namespace dxf {

// An entry that names nothing gets the one object that its dictionary owns and no other entry names. When
// there is no such object, or more than one, it is left out.
void repair_entries(record_table& records, const drawing_parts& parts, const drawing_manner& manner,
                    placed_repairs& repairs, file_places& places);

} // namespace dxf
