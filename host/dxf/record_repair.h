// Repairs in the records of a drawing: ends that are missing, entities outside of sections, handles, and what
// belongs together of blocks, block records and layouts.
#pragma once

#include "host/dxf/group_list.h"
#include "host/dxf/indexer.h"
#include "host/dxf/repair.h"
#include "host/dxf/text_codec.h"

#include <unordered_map>

namespace dxf {

// What the repairs know of the drawing.
struct drawing_manner {
    int version = 0;   // the number in $ACADVER; 0 when the file does not tell
    group_style style; // how new groups are written
    text_codec codec;  // for the words of the repairs
};

// Where records that were rewritten, and new ones, stand in the file.
using file_places = std::unordered_map<record_id, const char*>;
inline const char* place_of(record_id id, const record_table& records, const file_places& places) {
    const auto moved = places.find(id);
    return moved == places.end() ? records.text(id).data() : moved->second;
}

// Repairs the records between indexer::run() and indexer::settle(). Adds what it did to `repairs`.
//
// What a drawing's version does not ask for is left alone: records of R12 need no handles, and blocks have no
// records before R13 or where the drawing has no table for them. Layers that entities stand on and the table
// lacks are no damage either: the editor makes them when it is asked for them.
ACDB_PORT void repair_records(record_table& records, drawing_parts& parts, const drawing_damage& damage,
                              const drawing_manner& manner, placed_repairs& repairs, file_places& places);

} // namespace dxf
