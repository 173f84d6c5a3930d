// Giving new entities their place in a drawing.
#pragma once

#include "dbmain.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/record_text.h"

namespace db {

// Puts a new entity at the end of a block (a definition, model space or a sheet), with the parts that it
// holds behind it: with handle and owner, in the groups that the drawing's version knows and in its encoding.
// What it was not given (layer, colour, linetype and its scale, lineweight) it takes from the drawing. It
// stays open for write, and the database owns it.
//
// eIllegalEntityType for what files of the drawing's version can not hold, and for parts alone;
// eIsXRefObject for the block of an external reference; eNotApplicable for a block that the file does not
// close. Then it still belongs to the caller.
Acad::ErrorStatus add_entity(AcDbImpDatabase& database, dxf::record_id block, AcDbEntity& entity,
                             AcDbObjectId& id);

// Puts a new part (VERTEX, ATTRIB) behind an entity of the drawing, last of its parts, and ends their
// sequence where nothing did. As above.
Acad::ErrorStatus add_part(AcDbImpDatabase& database, dxf::record_id owner, AcDbEntity& part,
                           AcDbObjectId& id);

// Adds the groups of a new object behind its head, as far as the drawing's version knows them. `on_paper`:
// for an entity of a sheet.
void add_data(record_text& text, const AcDbImpObject& object, bool on_paper);

// Gives a new entity the drawing's defaults: all, or only those that it was not given.
void give_defaults(AcDbImpDatabase& database, AcDbImpObject& entity, bool all);

} // namespace db
