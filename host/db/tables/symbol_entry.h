// Making new records of symbol tables.
#pragma once

#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

#include <string>
#include <string_view>

namespace db {

// The groups of a new record of a class, with every value that the format wants and an empty name.
std::string new_entry_text(std::string_view class_name);

// The groups of a new block record: those of its BLOCK stand behind the marker AcDbBlockBegin until it has
// one.
extern const char* const new_block_text;

// The record of a new entry as the drawing's file would hold it, with a handle of its own: in the groups that
// the drawing's version knows, in its encoding. The drawing must have the table.
std::string entry_text(AcDbImpDatabase& database, table_kind kind, const AcDbImpObject& entry);

// Gives a new record, but for one of a block (host/db/creation/new_block.h), its place in the drawing: behind
// the last one of its table, with handle and owner, in the groups that the drawing's version knows.
Acad::ErrorStatus add_entry(AcDbImpDatabase& database, table_kind kind, AcDbSymbolTableRecord& entry,
                            AcDbObjectId& id);

// Makes sure that an application may have extended data in a drawing. False when the drawing can not hold
// any.
bool register_application(AcDbImpDatabase& database, const ACHAR* name);
// The same for all whose extended data a new object brings.
void register_applications(AcDbImpDatabase& database, const AcDbImpObject& object);

} // namespace db
