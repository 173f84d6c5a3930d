// B-splines in space: a degree, knots, control points, and weights when they are rational.
#pragma once

#include "gepnt3d.h"

#include <span>
#include <vector>

namespace ge {

struct bspline {
    int degree = 0;
    std::vector<double> knots;        // points + degree + 1 of them, none below the one before
    std::vector<AcGePoint3d> points;  // more than the degree
    std::vector<double> weights = {}; // none, or as many as points, all above nought

    // The ends of its parameter.
    double first() const { return knots[static_cast<std::size_t>(degree)]; }
    double last() const { return knots[points.size()]; }
    // The different knots from end to end: between two of them it is as smooth as a polynomial.
    std::vector<double> breaks() const;

    // Point and derivatives; a parameter behind an end is taken as the end.
    struct place {
        AcGePoint3d point;
        AcGeVector3d first; // derivative
        AcGeVector3d second;
    };
    place at(double t) const;

    // The same curve in the other direction, its parameter from the same first to the same last value.
    bspline reversed() const;
};

// Makes a whole of what a file or a program says: equal distances of knots where they are not what they must
// be, no weights where they are not, a degree that the points are enough for. False when nothing can be made:
// of fewer than two points, or of a degree below 1 or above 25.
bool mend(bspline& spline);

// The cubic curve through these points: its parameter grows with the chords between them. At an end it leaves
// in the direction of the tangent, as fast as the chords; where the tangent is null, without bending there.
// Of a point that is where the one before is only one counts; with fewer than two the result has no points.
bspline through(std::span<const AcGePoint3d> points, const AcGeVector3d& start, const AcGeVector3d& end);

// Parameters from end to end, of whose points no chord is further from the curve than about `deviation`.
std::vector<double> flattening(const bspline& spline, double deviation);

// Where the curve goes furthest in a direction, and where it turns: parameters at which its derivative stands
// at right angles to it, without the ends.
std::vector<double> turns(const bspline& spline, const AcGeVector3d& direction);

} // namespace ge
