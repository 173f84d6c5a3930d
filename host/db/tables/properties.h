// Where the properties of objects stand in their groups, and how colours and weights are written.
#pragma once

#include "acdb.h"
#include "dbcolor.h"
#include "host/db/tables/entry_fields.h"

class AcDbImpObject;

namespace db {

// The place of what all entities have in common. Source of the order: the DXF
// reference's group tables, as the files of the big programs show them.
extern const dxf::group_place entity_place;
// The name of a symbol table record, whatever its class.
extern const dxf::group_place name_place;

// A colour of groups 62, 420 and 430; of an entity without them, ByLayer.
AcCmColor read_color(const AcDbImpObject& object, const dxf::group_place& place, int missing);
// Writes them. `sign` is -1 for a layer that is off: its index is negative.
void write_color(AcDbImpObject& object, const dxf::group_place& place, const AcCmColor& color, int sign = 1);

// Gives an entity the layer, colour, linetype, its scale, lineweight and visibility of another one, and its
// plot style and transparency, as they stand in its groups. What comes out of a reference gets the names by
// which the user knows that one's layers and linetypes.
void copy_properties(const AcDbImpObject& from, AcDbImpObject& to);

bool is_line_weight(int weight);

// Whether files of the object's drawing hold lineweights, plot flags (2000 on) and true colours (2004 on).
bool knows_line_weights(const AcDbImpObject& object);
bool knows_true_colors(const AcDbImpObject& object);

} // namespace db
