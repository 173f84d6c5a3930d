// The tips of dimension lines and leaders.
#pragma once

#include "gemat3d.h"
#include "host/db/core/imp_object.h"

#include <cstdint>

class AcGiWorldDraw;

namespace db {

// Draws a tip that points along `pointing` in the plane with this normal: the block with a handle, at `size`,
// or where there is none the usual filled arrow.
void draw_arrowhead(const AcDbImpObject& entity, std::uint64_t block, const AcGePoint3d& tip,
                    const AcGeVector3d& pointing, const AcGeVector3d& normal, double size,
                    AcGiWorldDraw& draw);

} // namespace db
