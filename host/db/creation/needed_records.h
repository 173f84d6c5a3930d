// What some entities of a drawing need to be whole in a drawing of their own: layers, styles, blocks with
// what is in them, objects, and what holds those.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

#include <unordered_set>
#include <vector>

namespace db {

struct needed_records {
    std::vector<bool> needed; // by record
    // Of the needed ones those that may name others which are not.
    std::unordered_set<dxf::record_id> with_loose_ends;

    bool has(dxf::record_id id) const { return id != dxf::no_record && id < needed.size() && needed[id]; }
};

// Hard pointers and what is owned by hard or soft ownership are followed, and names; soft pointers are not.
// With it comes what every drawing has: layer 0, standard styles, the spaces, the editor's own dictionaries;
// of applications that made one of the entities, what they keep in the named-objects dictionary; of sheets
// those that hold one of the entities, and the first one.
needed_records find_needed(AcDbImpDatabase& drawing, const std::vector<dxf::record_id>& entities);

// What stands in the header where it would name an entry that is not there.
const wchar_t* usual_name(table_kind kind);

// What a group with a handle means to the object that has it.
enum class link_kind { none, soft, hard };
link_kind link_of(int code);

// A hatch no longer follows its boundary: the objects that it was made from are not there.
void free_from_boundary(dxf::group_list& hatch);

} // namespace db
