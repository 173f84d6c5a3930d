// From the world to a sheet: which part of a drawing is looked at, from where, and how large it becomes.
#pragma once

#include "gemat3d.h"
#include "gepnt2d.h"
#include "sys/paper.h"

#include <span>
#include <vector>

namespace picture {

// A rectangle of a sheet in millimetres, y downwards.
struct sheet_box {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};

class sheet_view {
public:
    // Looks along z: what lies within width and height around the middle (units of the drawing) fills a box
    // of the sheet, which has the same proportions.
    static sheet_view from_above(const AcGePoint3d& middle, double width, const sheet_box& box);
    // As a viewport looks: at the target, from where the direction points to, turned by a twist (radians),
    // the middle given in the plane of the view; `scale` is millimetres of the sheet to a unit.
    static sheet_view through(const AcGePoint3d& target, const AcGeVector3d& direction, double twist,
                              const AcGePoint2d& middle, double scale, const sheet_box& box);

    sys::sheet_point at(const AcGePoint3d& point) const;
    sys::sheet_point along(const AcGeVector3d& vector) const;
    double scale() const { return scale_; } // millimetres to a unit
    const sheet_box& box() const { return box_; }
    // The world's rectangle, seen from above, in which everything lies that is seen.
    void world_box(AcGePoint2d& least, AcGePoint2d& most) const;

    // The same lines and areas without what lies outside of the box, where coordinates are so large that
    // nobody can draw them. Lines may fall apart.
    std::vector<std::vector<sys::sheet_point>> near_lines(std::vector<sys::sheet_point> points) const;
    std::vector<sys::sheet_point> near_area(std::vector<sys::sheet_point> rim) const;
    // The part of the line from `from` along `direction` (to both sides) that lies near the box; empty when
    // it passes it.
    std::vector<sys::sheet_point> part_of_line(const sys::sheet_point& from,
                                               const sys::sheet_point& direction, bool both) const;

private:
    AcGeMatrix3d to_plane_; // of the view, millimetres, y upwards, its middle at the origin
    double scale_ = 1.0;
    sheet_box box_;
};

} // namespace picture
