// Names that depend on external references: entries of a reference's symbol tables as the drawing knows them,
// "reference|name".
//
// Those that the drawing's own tables hold keep their state there (VISRETAIN 1) or show the reference's
// (VISRETAIN 0). Those that they do not hold are implied: found and iterated, but saved only when they were
// changed.
#pragma once

#include "host/db/imp_database.h"
#include "host/db/xrefs.h"

#include <string>
#include <string_view>

namespace db {

// The name under which a drawing knows an entry of the reference that its block of the given name stands for.
// A name that depends on a reference inside the reference is known as it is, and so are those that every
// drawing has: layers 0 and DEFPOINTS, linetypes ByLayer, ByBlock and Continuous.
std::wstring dependent_name(table_kind kind, std::wstring_view reference, std::wstring_view name);

// Makes the layers, linetypes, text styles and blocks of a reference known to the drawing whose block
// `reference` stands for it, and notes them in `known`.
void add_dependent_names(AcDbImpDatabase& drawing, std::wstring_view reference, AcDbImpDatabase& from,
                         dependents& known);

// Makes an implied entry, and the implied ones that it names, the drawing's own.
void settle_entry(AcDbImpDatabase& drawing, dxf::record_id entry);

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
