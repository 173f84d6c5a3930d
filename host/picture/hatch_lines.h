// The lines of a hatch's pattern within its rims.
#pragma once

#include "dbhatch.h"
#include "gemat3d.h"

#include <optional>
#include <span>
#include <vector>

namespace picture {

// The lines of a hatch between its rims (in the world), in the world too; `to_world` leads there from where
// the hatch stands. Nothing when there would be more than `most` of them: then they lie so close that an area
// shows the same.
std::optional<std::vector<std::vector<AcGePoint3d>>>
hatch_lines(const AcDbHatch& hatch, const AcGeMatrix3d& to_world,
            std::span<const std::vector<AcGePoint3d>> rims, std::size_t most);

} // namespace picture
