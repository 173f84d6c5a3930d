#include "host/view/extents_canvas.h"

#include <cmath>

namespace gi {

namespace {

// Whether boxes stay boxes: each axis goes to an axis.
bool keeps_boxes(const AcGeMatrix3d& m) {
    for (unsigned row = 0; row < 3; ++row) {
        int used = 0;
        for (unsigned column = 0; column < 3; ++column)
            used += std::fabs(m(row, column)) > 1e-12 * m.scale() ? 1 : 0;
        if (used > 1)
            return false;
    }
    return true;
}

} // namespace

bool is_empty(const AcDbExtents& extents) {
    const AcGePoint3d least = extents.minPoint();
    const AcGePoint3d most = extents.maxPoint();
    return !(least.x <= most.x && least.y <= most.y && least.z <= most.z);
}

std::array<AcGePoint3d, 8> corners_of(const AcDbExtents& extents) {
    const AcGePoint3d least = extents.minPoint();
    const AcGePoint3d most = extents.maxPoint();
    std::array<AcGePoint3d, 8> corners;
    for (unsigned corner = 0; corner < 8; ++corner)
        corners[corner] = {(corner & 1) != 0 ? most.x : least.x, (corner & 2) != 0 ? most.y : least.y,
                           (corner & 4) != 0 ? most.z : least.z};
    return corners;
}

bool extents_canvas::enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) {
    constexpr std::size_t most_entered = 100'000;
    if (!keeps_boxes(to_world) && *entered_ < most_entered)
        return true;
    if (!is_empty(block)) {
        AcDbExtents moved = block;
        moved.transformBy(to_world);
        add(moved.minPoint());
        add(moved.maxPoint());
    }
    return false;
}

// What lies further out than extents begin, or nowhere, is damage.
void extents_canvas::add(const AcGePoint3d& point) {
    constexpr double furthest = 1e20;
    if (std::fabs(point.x) < furthest && std::fabs(point.y) < furthest && std::fabs(point.z) < furthest)
        extents_.addPoint(point);
}

void extents_canvas::lines(std::span<const AcGePoint3d> points) {
    for (const AcGePoint3d& point : points)
        add(point);
}

void extents_canvas::curve(const arc& arc) {
    add(arc.at(arc.start));
    add(arc.at(arc.start + arc.sweep));
    // Each coordinate is c + a cos t + b sin t: extreme where tan t = b / a, and half a turn on.
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double t = std::atan2(arc.v[axis], arc.u[axis]);
        constexpr double half = 3.14159265358979323846;
        for (int turn = -4; turn <= 4; ++turn) {
            const double at = t + half * turn;
            const double along = (at - arc.start) / (arc.sweep == 0.0 ? 1.0 : arc.sweep);
            if (arc.is_whole() || (along >= 0.0 && along <= 1.0))
                add(arc.at(at));
        }
    }
}

} // namespace gi
