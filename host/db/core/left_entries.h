// What erased objects left behind: the entries of the dictionaries that name them still. They are taken out
// of a dictionary's record when it is committed, when a command ends, and before the drawing is saved.
#pragma once

#include "host/db/core/imp_database.h"

namespace db {

// An object was erased: it leaves the dictionary that owns it; reviving it does not put it back.
void leave_dictionary(const AcDbImpDatabase& database, dxf::record_id object);
// Whether an object has left the dictionary that names it still.
bool has_left(const AcDbImpDatabase& database, dxf::record_id dictionary, dxf::record_id object);
// Takes what has left a dictionary that is open for write out of its groups.
void settle_dictionary(AcDbImpObject& dictionary);
// Settles all of them.
ACDB_PORT void settle_dictionaries(const AcDbImpDatabase& database);

} // namespace db
