// The clip boundary of a block reference, which its extension dictionary holds.
#pragma once

#include "acgi.h"

#include <optional>

class AcDbObject;

namespace db {

// Nothing for a reference that has none, or has it turned off.
std::optional<AcGiClipBoundary> clip_of(const AcDbObject& reference);

} // namespace db
