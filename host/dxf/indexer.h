// Reads the bytes of an ASCII drawing once, from front to back, into a record table.
#pragma once

#include "base/result.h"
#include "host/dxf/record_table.h"

#include <string_view>
#include <vector>

namespace dxf {

// Where the parts of a drawing begin; no_record for what the file does not have.
struct drawing_parts {
    record_id header = no_record; // SECTION records
    record_id tables = no_record;
    record_id blocks = no_record;
    record_id entities = no_record;
    record_id objects = no_record;
    record_id end_of_file = no_record;
    std::vector<record_id> table_heads;  // TABLE records
    std::vector<record_id> block_begins; // BLOCK records
    bool high_bytes = false;             // whether any byte is above 127
};

// Fills `records` from `bytes`, which must stay where they are and be followed by 64 readable bytes. Gives
// where the parts begin, or why this is no drawing, with the line.
//
// Entities in a block belong to it; those of the ENTITIES section to the block that group 330 names, and
// where it names none, to model or paper space by group 67. Records without a handle get one that the file
// does not use.
ACDB_PORT base::result<drawing_parts> index_records(std::string_view bytes, record_table& records);

// The number of the line in which `at` stands, counted from 1.
ACDB_PORT std::size_t line_number(std::string_view bytes, const char* at);

} // namespace dxf
