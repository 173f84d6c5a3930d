// Making blocks, and what of a block stands in its BLOCK rather than in its record.
#pragma once

#include "dbsymtb.h"
#include "host/db/core/imp_database.h"

namespace db {

// Gives a new block record its place in the drawing, with a BLOCK and an ENDBLK of its own; in drawings
// without block records the BLOCK is the record. A name of a star and a letter ("*U") gets the next free
// number; a sheet's is one of *Paper_Space. As AcDbSymbolTable::add answers.
Acad::ErrorStatus add_block(AcDbImpDatabase& database, AcDbBlockTableRecord& block, AcDbObjectId& id,
                            bool sheet = false);

} // namespace db
