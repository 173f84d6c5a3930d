// Circles from what they touch.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"

#include <optional>

namespace ed {

// The point that is as far from three points, in their plane; nothing when they stand on one line.
std::optional<AcGePoint3d> center_through(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& c);

// What a circle is to touch, in the plane of the drawing, and about where.
struct tangent_to {
    AcGePoint3d near;
    AcGePoint3d point;   // of a line one that it goes through; of a circle its centre
    AcGeVector3d along;  // of a line
    double radius = 0.0; // of a circle; nought: it is a line
};

// Takes a line, a circle or an arc; nothing for other entities.
std::optional<tangent_to> tangent_object(const AcDbEntity& entity, const AcGePoint3d& near);
// Of the circles with a radius that touch both, the one that touches them the nearest to where they were
// picked: its centre.
std::optional<AcGePoint3d> center_of_tangent_circle(const tangent_to& first, const tangent_to& second,
                                                    double radius);

} // namespace ed
