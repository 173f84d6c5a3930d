// Objects of classes that applications bring: they hold what their class knows in members of their own, which
// are filed into the sections of their record that begin with a marker (100) of their class. What the host's
// classes know of them stays a view on the record's groups.
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_database.h"

#include <string>
#include <utility>

namespace db {

// The groups of an object that the host's classes file: [first, last).
std::pair<std::size_t, std::size_t> host_sections(const AcDbImpObject& object);

// Keeps what an entity of an application's class draws, for programs that do not know its class. Nothing of
// others, and of new ones.
void save_graphics(AcDbObject& object);

// Makes a new object of an application's class fit to join a drawing: its type, its own sections, and from
// R13 on an entry of its class in the drawing. eNoClassId for a class that has no name in drawing files,
// eIllegalEntityType in files of R12, eFilerError when the object could not say what it holds.
Acad::ErrorStatus prepare_new(AcDbImpDatabase& database, AcDbObject& object);

// The groups of an object without what belongs to it alone (handle, owner, reactors, extension dictionary),
// as those of a new one.
std::string text_for_copy(const AcDbImpObject& object);
// Gives a copy what the class of the original files, as groups or, when it files none, as values.
void copy_own_fields(const AcDbObject& from, AcDbObject& to);

} // namespace db
