// Objects of classes that applications bring: they hold what their class knows in members of their own, which
// are filed into the sections of their record that begin with a marker (100) of their class. What the host's
// classes know of them stays a view on the record's groups.
#pragma once

#include "dbmain.h"
#include "host/db/imp_database.h"

#include <string>
#include <string_view>

namespace db {

// Calls `register_all`, and takes the classes that it registers for the host's own.
void register_host_classes(void (*register_all)());
bool is_host_class(const AcRxClass* type);
// Whether an application brought a class of objects.
bool has_application_classes();

// The class that an application registered for records of a type; null when there is none, or when it is one
// of entities where it should not be, or the other way round.
AcRxClass* application_class(std::string_view type, bool entity);

// The groups of an object that the host's classes file: [first, last).
std::pair<std::size_t, std::size_t> host_sections(const AcDbImpObject& object);

// Lets an object that was opened read its own sections. False when it does not want to (its class is older
// than the data, for instance).
bool read_own_sections(AcDbObject& object);
// Puts what it holds now into its groups: only what differs. False when the object could not say.
bool write_own_sections(AcDbObject& object);
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
