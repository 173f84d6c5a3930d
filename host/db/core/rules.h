// What core/ asks of the rooms above when something happens to objects of which it knows nothing: declared
// here and defined there.
#pragma once

#include "dbmain.h"
#include "host/db/core/table_kind.h"
#include "host/dxf/record_table.h"

#include <string_view>

class AcDbImpDatabase;

namespace db {

// ---- host/db/custom/custom_objects.cpp

// Lets an object of an application's class that was opened read its own sections. False when it does not want
// to (its class is older than the data, for instance).
bool read_own_sections(AcDbObject& object);
// Puts what it holds now into its groups: only what differs. False when the object could not say.
bool write_own_sections(AcDbObject& object);

// ---- host/db/tables/implied_entries.cpp

// A database got its drawing: what its tables leave out is made known.
void drawing_came(AcDbImpDatabase& database);
// A layer, or an entry that no table of the file has, got another record: what is saved must not name what is
// not. `was_implied` says that no table had it before.
void entry_changed(AcDbImpDatabase& database, dxf::record_id entry, bool was_implied);

// ---- host/db/tables/name_references.cpp

// Gives all that names a record the new name, both as the file spells them; also objects that are open and
// the header.
void follow_name(AcDbImpDatabase& database, table_kind kind, std::string_view before, std::string_view after);

} // namespace db
