// What is seen: the part of the drawing that fills the view, which decides how large the pick box is.
#pragma once

#include "gepnt2d.h"
#include "host/db/core/imp_database.h"

namespace ed {

struct view {
    AcGePoint2d center;
    double height = 1.0;
};

// The view of the current space: the saved one; without one the extents of what is drawn.
view current_view(AcDbImpDatabase& database);

// Half the side of the pick box in drawing units: PICKBOX pixels of a view that is 1080 pixels high.
double pick_reach(AcDbImpDatabase& database);

} // namespace ed
