// Giving new objects that are no entities their place in a drawing.
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_database.h"

namespace db {

// Puts a new object at the end of the drawing's objects; its owner (0: nobody yet) is one of its reactors too
// where `reactor` is set. It stays open for write, and the database owns it.
//
// eIllegalEntityType for an entity, eNotApplicable when the drawing can hold no objects (R12), eNoClassId for
// a class without a name in drawing files. Then it still belongs to the caller.
Acad::ErrorStatus add_object(AcDbImpDatabase& database, AcDbObject& object, std::uint64_t owner, bool reactor,
                             AcDbObjectId& id);

} // namespace db
