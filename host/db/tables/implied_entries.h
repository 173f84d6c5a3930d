// Entries of symbol tables that a drawing has although no table of its file says so: layer 0, layers that its
// entities name, and what depends on external references. They are found and iterated as any other, and
// saved once they are changed or something new names them.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

namespace db {

// Makes an entry known. no_record when the drawing has no such table.
dxf::record_id add_implied_entry(AcDbImpDatabase& drawing, table_kind kind, const AcDbImpObject& entry);

// Makes those layers known that the table of layers lacks. Names that depend on an external reference
// ("reference|layer") are left to the reference, until it was read: `dependent` says that it was.
void imply_layers(AcDbImpDatabase& drawing, bool dependent);

// Makes an implied entry, and the implied ones that it names, the drawing's own.
void settle_entry(AcDbImpDatabase& drawing, dxf::record_id entry);

// Makes layer 0 the drawing's own, where the file lacks it: before it gets the first layer of its own.
void settle_layer_zero(AcDbImpDatabase& drawing);

} // namespace db
