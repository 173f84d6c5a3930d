#include "host/ed/circle_tangents.h"

#include "dbents.h"

#include <cmath>
#include <limits>
#include <vector>

namespace ed {

namespace {

// Where the centre of a circle may lie that touches one object: on a line, or on a circle.
struct locus {
    AcGePoint3d point;
    AcGeVector3d along; // of unit length, of a line
    double radius = 0.0;
};

AcGeVector3d left_of(const AcGeVector3d& v) {
    return {-v.y, v.x, 0.0};
}

std::vector<locus> loci(const tangent_to& object, double radius) {
    if (object.radius == 0.0) {
        const AcGeVector3d aside = left_of(object.along) * radius;
        return {{object.point + aside, object.along}, {object.point - aside, object.along}};
    }
    std::vector<locus> found = {{object.point, {}, object.radius + radius}};
    if (object.radius != radius)
        found.push_back({object.point, {}, std::abs(object.radius - radius)});
    return found;
}

// Both points at a distance from the middle of a chord.
void add_chord(std::vector<AcGePoint3d>& points, const AcGePoint3d& middle, const AcGeVector3d& along,
               double half_squared) {
    if (half_squared < 0.0)
        return;
    const AcGeVector3d half = along * std::sqrt(half_squared);
    points.push_back(middle + half);
    points.push_back(middle - half);
}

std::vector<AcGePoint3d> crossings(const locus& a, const locus& b) {
    std::vector<AcGePoint3d> points;
    if (a.radius != 0.0 && b.radius == 0.0)
        return crossings(b, a);
    const AcGeVector3d between = b.point - a.point;
    if (b.radius == 0.0) { // two lines
        const double cross = a.along.x * b.along.y - a.along.y * b.along.x;
        if (std::abs(cross) > 1e-12)
            points.push_back(a.point + a.along * ((between.x * b.along.y - between.y * b.along.x) / cross));
    } else if (a.radius == 0.0) { // a line and a circle
        const AcGePoint3d foot = a.point + a.along * between.dotProduct(a.along);
        const double apart = foot.distanceTo(b.point);
        add_chord(points, foot, a.along, b.radius * b.radius - apart * apart);
    } else if (const double apart = between.length(); apart > 1e-12) { // two circles
        const double to_chord = (apart * apart + a.radius * a.radius - b.radius * b.radius) / (2 * apart);
        const AcGeVector3d along = between / apart;
        add_chord(points, a.point + along * to_chord, left_of(along),
                  a.radius * a.radius - to_chord * to_chord);
    }
    return points;
}

// Where a circle about a centre touches an object.
AcGePoint3d touch(const tangent_to& object, const AcGePoint3d& center) {
    if (object.radius == 0.0)
        return object.point + object.along * (center - object.point).dotProduct(object.along);
    return object.point + (center - object.point).normal() * object.radius;
}

} // namespace

std::optional<AcGePoint3d> center_through(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& c) {
    const AcGeVector3d u = b - a;
    const AcGeVector3d v = c - a;
    const AcGeVector3d normal = u.crossProduct(v);
    const double size = normal.lengthSqrd();
    if (size <= 1e-24 * u.lengthSqrd() * v.lengthSqrd())
        return std::nullopt;
    return a +
           (v.crossProduct(normal) * u.lengthSqrd() - u.crossProduct(normal) * v.lengthSqrd()) / (2 * size);
}

std::optional<tangent_to> tangent_object(const AcDbEntity& entity, const AcGePoint3d& near) {
    tangent_to found;
    found.near = near;
    if (const AcDbLine* const line = AcDbLine::cast(&entity)) {
        found.point = line->startPoint();
        found.along = line->endPoint() - line->startPoint();
        found.along.z = 0.0;
        if (found.along.isZeroLength())
            return std::nullopt;
        found.along.normalize();
    } else if (const AcDbCircle* const circle = AcDbCircle::cast(&entity)) {
        found.point = circle->center();
        found.radius = circle->radius();
    } else if (const AcDbArc* const arc = AcDbArc::cast(&entity)) {
        found.point = arc->center();
        found.radius = arc->radius();
    } else {
        return std::nullopt;
    }
    found.point.z = 0.0;
    return found;
}

std::optional<AcGePoint3d> center_of_tangent_circle(const tangent_to& first, const tangent_to& second,
                                                    double radius) {
    std::optional<AcGePoint3d> best;
    double least = std::numeric_limits<double>::infinity();
    for (const locus& a : loci(first, radius))
        for (const locus& b : loci(second, radius))
            for (const AcGePoint3d& center : crossings(a, b)) {
                const double away = touch(first, center).distanceTo(first.near) +
                                    touch(second, center).distanceTo(second.near);
                if (away < least) {
                    least = away;
                    best = center;
                }
            }
    return best;
}

} // namespace ed
