#include "host/picture/sheet_view.h"

#include <algorithm>
#include <cmath>

namespace picture {

namespace {

// How far outside of its box a view still draws: ends of lines that are cut there are not seen.
constexpr double margin = 50.0;

// The part of a + t d within a box, t from `first` through `last`; false when it passes it.
bool cut_line(const sys::sheet_point& a, const sys::sheet_point& d, const sheet_box& box, double& first,
              double& last) {
    const auto side = [&](double step, double room) { // step * t <= room
        if (step == 0.0)
            return room >= 0.0;
        const double t = room / step;
        if (step > 0.0)
            last = std::min(last, t);
        else
            first = std::max(first, t);
        return first <= last;
    };
    return side(d.x, box.right - a.x) && side(-d.x, a.x - box.left) && side(d.y, box.bottom - a.y) &&
           side(-d.y, a.y - box.top);
}

bool holds(const sheet_box& box, const sys::sheet_point& point) {
    return point.x >= box.left && point.x <= box.right && point.y >= box.top && point.y <= box.bottom;
}

sheet_box around(const sheet_box& box) {
    return {box.left - margin, box.top - margin, box.right + margin, box.bottom + margin};
}

// What of a polygon lies on one side: where `depth` is not below nought.
template<class Depth>
void cut_side(std::vector<sys::sheet_point>& rim, Depth depth) {
    std::vector<sys::sheet_point> kept;
    for (std::size_t i = 0; i < rim.size(); ++i) {
        const sys::sheet_point& a = rim[i];
        const sys::sheet_point& b = rim[(i + 1) % rim.size()];
        const double at_a = depth(a);
        const double at_b = depth(b);
        if (at_a >= 0.0)
            kept.push_back(a);
        if ((at_a < 0.0) != (at_b < 0.0)) {
            const double t = at_a / (at_a - at_b);
            kept.push_back({a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t});
        }
    }
    rim = std::move(kept);
}

} // namespace

sheet_view sheet_view::from_above(const AcGePoint3d& middle, double width, const sheet_box& box) {
    return through(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, 0.0, {middle.x, middle.y},
                   (box.right - box.left) / width, box);
}

sheet_view sheet_view::through(const AcGePoint3d& target, const AcGeVector3d& direction, double twist,
                               const AcGePoint2d& middle, double scale, const sheet_box& box) {
    sheet_view view;
    view.scale_ = scale;
    view.box_ = box;
    view.to_plane_ = AcGeMatrix3d::scaling(scale) * AcGeMatrix3d::translation({-middle.x, -middle.y, 0.0}) *
                     AcGeMatrix3d::rotation(twist, AcGeVector3d::kZAxis) *
                     AcGeMatrix3d::worldToPlane(direction) *
                     AcGeMatrix3d::translation(AcGePoint3d::kOrigin - target);
    return view;
}

sys::sheet_point sheet_view::at(const AcGePoint3d& point) const {
    const AcGePoint3d seen = to_plane_ * point;
    return {(box_.left + box_.right) / 2.0 + seen.x, (box_.top + box_.bottom) / 2.0 - seen.y};
}

sys::sheet_point sheet_view::along(const AcGeVector3d& vector) const {
    const AcGeVector3d seen = to_plane_ * vector;
    return {seen.x, -seen.y};
}

void sheet_view::world_box(AcGePoint2d& least, AcGePoint2d& most) const {
    const AcGeMatrix3d back = to_plane_.inverse();
    const double x = (box_.right - box_.left) / 2.0;
    const double y = (box_.bottom - box_.top) / 2.0;
    // Looked at from the side, any height can be seen: then all of the world counts.
    constexpr double upright = 0.999;
    const AcGeVector3d up = (back * AcGeVector3d::kZAxis).normal();
    constexpr double everywhere = 1e300;
    least = {everywhere, everywhere};
    most = {-everywhere, -everywhere};
    if (std::fabs(up.z) < upright) {
        std::swap(least, most);
        return;
    }
    for (const AcGePoint3d& corner : {AcGePoint3d(-x, -y, 0.0), AcGePoint3d(x, -y, 0.0),
                                      AcGePoint3d(x, y, 0.0), AcGePoint3d(-x, y, 0.0)}) {
        const AcGePoint3d world = back * corner;
        least = {std::min(least.x, world.x), std::min(least.y, world.y)};
        most = {std::max(most.x, world.x), std::max(most.y, world.y)};
    }
}

std::vector<std::vector<sys::sheet_point>>
sheet_view::near_lines(std::vector<sys::sheet_point> points) const {
    const sheet_box near = around(box_);
    std::vector<std::vector<sys::sheet_point>> parts;
    if (std::all_of(points.begin(), points.end(), [&](const auto& point) { return holds(near, point); })) {
        parts.push_back(std::move(points));
        return parts;
    }
    bool goes_on = false;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const sys::sheet_point& a = points[i];
        const sys::sheet_point d{points[i + 1].x - a.x, points[i + 1].y - a.y};
        double first = 0.0;
        double last = 1.0;
        if (!std::isfinite(d.x) || !std::isfinite(d.y) || !cut_line(a, d, near, first, last)) {
            goes_on = false;
            continue;
        }
        if (!goes_on || first > 0.0)
            parts.push_back({{a.x + d.x * first, a.y + d.y * first}});
        parts.back().push_back({a.x + d.x * last, a.y + d.y * last});
        goes_on = last >= 1.0;
    }
    return parts;
}

std::vector<sys::sheet_point> sheet_view::near_area(std::vector<sys::sheet_point> rim) const {
    const sheet_box near = around(box_);
    if (std::all_of(rim.begin(), rim.end(), [&](const auto& point) { return holds(near, point); }))
        return rim;
    std::erase_if(rim, [](const auto& point) { return !std::isfinite(point.x) || !std::isfinite(point.y); });
    cut_side(rim, [&](const auto& p) { return p.x - near.left; });
    cut_side(rim, [&](const auto& p) { return near.right - p.x; });
    cut_side(rim, [&](const auto& p) { return p.y - near.top; });
    cut_side(rim, [&](const auto& p) { return near.bottom - p.y; });
    return rim;
}

std::vector<sys::sheet_point> sheet_view::part_of_line(const sys::sheet_point& from,
                                                       const sys::sheet_point& direction, bool both) const {
    constexpr double everywhere = 1e300;
    double first = both ? -everywhere : 0.0;
    double last = everywhere;
    if ((direction.x == 0.0 && direction.y == 0.0) || !cut_line(from, direction, around(box_), first, last))
        return {};
    return {{from.x + direction.x * first, from.y + direction.y * first},
            {from.x + direction.x * last, from.y + direction.y * last}};
}

} // namespace picture
