// A block in rows and columns, as a reference draws it.
#pragma once

#include "acgi.h"
#include "host/db/entities/block_reference_groups.h"

namespace db {

// Of the rows and columns only those that are wanted.
void draw_block_array(const reference_groups& groups, const named_block& block, AcGiWorldDraw& draw);

} // namespace db
