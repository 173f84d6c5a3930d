// What is seen: the part of the drawing that fills the view, which decides how large the pick box is.
#pragma once

#include "gepnt2d.h"
#include "gepnt3d.h"
#include "host/db/core/imp_database.h"

#include <optional>

namespace ed {

inline constexpr double width_to_height = 16.0 / 9.0; // of the screen that a view is thought to fill

struct view {
    AcGePoint2d center;
    double height = 1.0;

    double width() const { return height * width_to_height; }
};

// The view of the current space: the saved one; without one the extents of what is drawn.
view current_view(AcDbImpDatabase& database);

// The one that shows all between two corners; nothing where they are one point, or nowhere.
std::optional<view> view_of_window(const AcGePoint3d& first, const AcGePoint3d& second);

// Saves another view in the drawing, for the current space. False when the space has no record for it.
bool set_current_view(AcDbImpDatabase& database, const view& wanted);
// The view before the last one of the current space. False when there is none.
bool take_back_view(AcDbImpDatabase& database);

// Half the side of the pick box in drawing units: PICKBOX pixels of a view that is 1080 pixels high.
double pick_reach(AcDbImpDatabase& database);

} // namespace ed
