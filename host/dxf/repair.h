// What was repaired in a drawing while it was read. A repair is the drawing's own state from then on: it can
// not be undone, does not count as a change, and goes out when the drawing is saved.
#pragma once

#include "adesk.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dxf {

enum class repair_kind {
    zero_bytes,           // between the lines' characters
    cut_end,              // the file ends inside of a group
    lost_code,            // a group without its code or its value, which its neighbours tell
    stray_line,           // a line that is no part of a group, or a group whose code is lost for good
    missing_end,          // SEQEND, ENDBLK, ENDTAB, ENDSEC, EOF
    needless_end,         // an ENDSEC where no section is open
    repeated_section,     // of blocks, entities or objects: its members belong to the first one
    outside_of_sections,  // entities between two sections
    wrong_space,          // an entity of model space that names another block as its owner
    missing_handle,       // also an empty one, zero, or one that is no number
    duplicate_handle,     // the first one keeps it
    low_handle_seed,      // $HANDSEED, when new handles are given
    lost_name,            // of a block record, which its block tells
    block_without_record, // a BLOCK that has no entry in the table
    record_without_block, // and the other way round
    layout_without_block, // a sheet whose block is missing
};

struct repair {
    repair_kind kind;
    std::size_t line; // in the file, counted from 1; of a binary one the byte, counted from 0
    std::wstring what;
    std::wstring done;
};

// A repair whose line is not counted yet.
struct placed_repair {
    const char* at; // in the drawing's text
    repair_kind kind;
    std::wstring what;
    std::wstring done;
};
using placed_repairs = std::vector<placed_repair>;

// What a user is told, one line each: "repair 1: line 123: duplicate handle 2F of a LINE: given the handle
// 1A5". Of many repairs of one kind the first ones and how many more there are.
ACDB_PORT std::vector<std::wstring> messages_of(const std::vector<repair>& repairs, bool binary);

} // namespace dxf
