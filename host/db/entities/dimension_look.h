// What the points of a dimension measure, and how one without a look of its own is drawn.
#pragma once

#include "acgi.h"
#include "dbdim.h"

namespace db {

// A length, or an angle in radians.
double measured(const AcDbDimension& dimension);
// Its lines, arrows, text and points.
void draw_plain_dimension(const AcDbDimension& dimension, AcGiWorldDraw& draw);

} // namespace db
