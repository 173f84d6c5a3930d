// How deep blocks may hold each other to be drawn.
#pragma once

#include "host/db/core/imp_database.h"

#include <cstddef>

namespace gi {

// Each takes about 3 KB of a stack of 8 MB.
inline constexpr std::size_t most_nested_blocks = 500;

// Says that not all of a drawing is seen, once.
void tell_too_deep(const AcDbImpDatabase& drawing);

} // namespace gi
