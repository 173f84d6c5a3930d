// The markers (group 100) that records have from R13 on, for records of files that lack them: which there
// are, and which groups stand behind each.
#pragma once

#include "host/dxf/group_reader.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace version {

struct subclass {
    std::string_view marker;
    std::span<const int> codes = {}; // empty: what belongs to no other one
};

// What decides, besides its type, which markers an entity has: the first values of its groups, nought where
// it has none.
struct shape_of_record {
    std::int64_t flags = 0;       // group 70
    std::int64_t rows = 0;        // group 71
    std::int64_t owner_flags = 0; // group 70 of the POLYLINE that a VERTEX belongs to
};

// The markers behind AcDbEntity; none for a type that is not known.
std::vector<subclass> markers_of_entity(std::string_view type, const shape_of_record& shape);

// The marker of a symbol table's entries, by the type of the entries; empty for one that is not known.
std::string_view marker_of_entry(std::string_view type);

// Whether a group of an entity without markers is one that all entities have.
bool is_common(int code);

} // namespace version
