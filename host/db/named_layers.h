// Layers that a drawing has although no table says so: layer 0, and those that its entities name.
#pragma once

#include "host/db/imp_database.h"

namespace db {

// Makes those that the table of layers lacks known to the drawing: found and iterated as any other, and saved
// once they are changed or something new names them. Names that depend on an external reference
// ("reference|layer") are left to the reference, until it was read: `dependent` says that it was.
void imply_layers(AcDbImpDatabase& drawing, bool dependent);

// Makes layer 0 the drawing's own, where the file lacks it: before it gets the first layer of its own.
void settle_layer_zero(AcDbImpDatabase& drawing);

} // namespace db
