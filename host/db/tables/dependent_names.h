// Names that depend on external references: an entry of a reference's symbol table is known in the drawing as
// "reference|name".
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/table_kind.h"

#include <string>
#include <string_view>

namespace db {

// Whether an entry of this name is the same in every drawing, and so depends on no reference. Source: the
// editor's help on names of external references, and what drawings with references hold.
bool is_shared_name(table_kind kind, std::wstring_view name);

// The name under which a drawing knows an entry of the reference that its block of the given name stands for.
// A name that depends on a reference inside the reference is known as it is, and so are those that every
// drawing has: layers 0 and DEFPOINTS, linetypes ByLayer, ByBlock and Continuous.
std::wstring dependent_name(table_kind kind, std::wstring_view reference, std::wstring_view name);

// The record of `drawing` that rules a layer of a reference: whether what stands on it is shown, its colour
// and the rest. `reference` is the name of the innermost block that is a reference on the way from the
// drawing to the entity; `layer` the layer's name in the reference. no_record when there is none.
//
// What stands on layer 0 takes the layer of the block reference that it is inserted by: that is for the
// caller.
dxf::record_id ruling_layer(AcDbImpDatabase& drawing, std::wstring_view reference, std::wstring_view layer);

// The name under which the user knows a layer of a drawing that may be a reference: the host's, by the block
// through which the reference was read first.
std::wstring layer_seen(const AcDbImpDatabase& drawing, std::wstring_view layer);

} // namespace db
