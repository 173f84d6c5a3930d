// What a pick box, a window, a crossing or a fence covers of the plane, and whether drawn figures touch it.
#pragma once

#include "gepnt2d.h"
#include "host/gi/canvas.h"

#include <span>
#include <vector>

namespace gi {

// A polygon with its inside, or the line of a fence, in the plane that the view looks at (x and y of the
// world).
class ACGI_PORT region {
public:
    // A box from one corner to the opposite one.
    static region box(const AcGePoint2d& first, const AcGePoint2d& second);
    static region polygon(std::vector<AcGePoint2d> corners) { return {std::move(corners), true}; }
    static region fence(std::vector<AcGePoint2d> points) { return {std::move(points), false}; }

    const AcGePoint2d& least() const { return least_; }
    const AcGePoint2d& most() const { return most_; }

    bool holds(const AcGePoint2d& point) const;
    // Whether an upright box lies in it, away from the rim; it may say no where one does.
    bool holds_box(const AcGePoint2d& least, const AcGePoint2d& most) const;
    // Whether a straight line meets the inside or the rim.
    bool touches(const AcGePoint2d& a, const AcGePoint2d& b) const;
    // Whether it meets the rim.
    bool crosses_rim(const AcGePoint2d& a, const AcGePoint2d& b) const;
    const std::vector<AcGePoint2d>& points() const { return points_; }

private:
    region(std::vector<AcGePoint2d> points, bool closed);

    std::vector<AcGePoint2d> points_;
    bool closed_;
    bool is_box_ = false;
    AcGePoint2d least_;
    AcGePoint2d most_;
};

// Whether a point lies in a closed figure (by the even-odd rule).
ACGI_PORT bool holds(std::span<const AcGePoint2d> figure, const AcGePoint2d& point);

// Whether figures touch a region, and whether all of them lie in it.
class ACGI_PORT region_test {
public:
    explicit region_test(const region& region) : region_(region) {}

    void lines(std::span<const AcGePoint3d> points);
    void area(std::span<const AcGePoint3d> points);
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims);
    void curve(const arc& arc);
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both);

    bool touched() const { return touched_; }
    // Whether some figure, or a part of one, does not.
    bool any_outside() const { return outside_; }
    // Of figures that were met, at least one.
    bool all_inside() const { return any_ && !outside_; }

private:
    void piece(const arc& arc, double size, double start, double sweep);

    const region& region_;
    double fine_ = 0.0; // how far a chord may be from the curve that is tested
    bool any_ = false;
    bool touched_ = false;
    bool outside_ = false;
};

} // namespace gi
