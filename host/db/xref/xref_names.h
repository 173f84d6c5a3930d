// The entries of a reference's symbol tables as the drawing knows them, "reference|name".
//
// Those that the drawing's own tables hold keep their state there (VISRETAIN 1) or show the reference's
// (VISRETAIN 0). Those that they do not hold are implied: found and iterated, but saved only when they were
// changed.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/references.h"

#include <string_view>

namespace db {

// Makes the layers, linetypes, text styles and blocks of a reference known to the drawing whose block
// `reference` stands for it, and notes them in `known`.
void add_dependent_names(AcDbImpDatabase& drawing, std::wstring_view reference, AcDbImpDatabase& from,
                         dependents& known);

} // namespace db
