#include "host/view/clip.h"

#include "dbmain.h"
#include "host/view/extents_canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gi {

namespace {

double cross(const AcGeVector2d& a, const AcGeVector2d& b) {
    return a.x * b.y - a.y * b.x;
}

AcGePoint2d flat(const AcGePoint3d& point) {
    return {point.x, point.y};
}

double area_of(std::span<const AcGePoint2d> corners) {
    double twice = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i)
        twice += cross(corners[i] - corners[0], corners[(i + 1) % corners.size()] - corners[0]);
    return twice / 2.0;
}

// Of a polygon whose corners run counter-clockwise.
bool turns_left_only(std::span<const AcGePoint2d> corners) {
    const std::size_t count = corners.size();
    double turned = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        const AcGeVector2d in = corners[(i + 1) % count] - corners[i];
        const AcGeVector2d out = corners[(i + 2) % count] - corners[(i + 1) % count];
        if (cross(in, out) < 0.0)
            return false;
        turned += std::atan2(cross(in, out), in.x * out.x + in.y * out.y);
    }
    return turned < 3.0 * std::numbers::pi; // a star turns left only, too, but more than once
}

bool in_triangle(const AcGePoint2d& p, const AcGePoint2d& a, const AcGePoint2d& b, const AcGePoint2d& c) {
    return cross(b - a, p - a) >= 0.0 && cross(c - b, p - b) >= 0.0 && cross(a - c, p - c) >= 0.0;
}

// Cuts ears off until nothing is left. Of a polygon that crosses itself, something near to it.
std::vector<std::vector<AcGePoint2d>> triangles(std::vector<AcGePoint2d> corners) {
    std::vector<std::vector<AcGePoint2d>> made;
    std::size_t at = 0;
    std::size_t passed = 0; // corners since the last ear
    while (corners.size() > 3) {
        const std::size_t count = corners.size();
        at %= count;
        const AcGePoint2d& a = corners[(at + count - 1) % count];
        const AcGePoint2d& b = corners[at];
        const AcGePoint2d& c = corners[(at + 1) % count];
        const double corner = cross(b - a, c - b);
        const bool ear = corner > 0.0 && std::none_of(corners.begin(), corners.end(), [&](const auto& p) {
                             return !(p == a) && !(p == b) && !(p == c) && in_triangle(p, a, b, c);
                         });
        if (ear || passed >= count) {
            if (corner > 0.0)
                made.push_back({a, b, c});
            corners.erase(corners.begin() + static_cast<std::ptrdiff_t>(at));
            passed = 0;
        } else {
            ++at;
            ++passed;
        }
    }
    made.push_back(std::move(corners));
    return made;
}

} // namespace

clipped_canvas::clipped_canvas(canvas& target, clip_boundary boundary)
    : target_(target), boundary_(std::move(boundary)), least_(boundary_.polygon.front()),
      most_(boundary_.polygon.front()) {
    std::vector<AcGePoint2d>& corners = boundary_.polygon;
    if (area_of(corners) < 0.0)
        std::reverse(corners.begin(), corners.end());
    for (const AcGePoint2d& corner : corners) {
        least_ = {std::min(least_.x, corner.x), std::min(least_.y, corner.y)};
        most_ = {std::max(most_.x, corner.x), std::max(most_.y, corner.y)};
    }
    slack_ = 1e-9 * (most_ - least_).length();
    convex_ = turns_left_only(corners);
}

bool clipped_canvas::holds(const AcGePoint3d& point) const {
    if (!(point.z >= boundary_.least_z - slack_ && point.z <= boundary_.most_z + slack_))
        return false;
    const AcGePoint2d p = flat(point);
    if (!(p.x >= least_.x - slack_ && p.x <= most_.x + slack_ && p.y >= least_.y - slack_ &&
          p.y <= most_.y + slack_))
        return false;
    bool inside = false;
    const std::vector<AcGePoint2d>& corners = boundary_.polygon;
    for (std::size_t i = 0, before = corners.size() - 1; i < corners.size(); before = i++) {
        const AcGePoint2d& a = corners[before];
        const AcGePoint2d& b = corners[i];
        const AcGeVector2d along = b - a;
        const double length = along.length();
        const double ahead = along.x * (p.x - a.x) + along.y * (p.y - a.y);
        if (std::fabs(cross(along, p - a)) <= slack_ * length && ahead >= -slack_ * length &&
            ahead <= length * (length + slack_))
            return true; // on the rim
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + along.x * (p.y - a.y) / along.y)
            inside = !inside;
    }
    return inside;
}

bool clipped_canvas::enter_block(const AcDbExtents& extents, const AcGeMatrix3d& to_world) {
    if (is_empty(extents))
        return true;
    AcDbExtents moved = extents;
    moved.transformBy(boundary_.from_world * to_world);
    const AcGePoint3d least = moved.minPoint();
    const AcGePoint3d most = moved.maxPoint();
    if (most.x < least_.x || least.x > most_.x || most.y < least_.y || least.y > most_.y ||
        most.z < boundary_.least_z || least.z > boundary_.most_z)
        return false;
    const bool whole = convex_ && holds(least) && holds(most) && holds({least.x, most.y, least.z}) &&
                       holds({most.x, least.y, least.z});
    return !whole || target_.enter_block(extents, to_world);
}

std::vector<double> clipped_canvas::meetings(const AcGePoint3d& a, const AcGeVector3d& d) const {
    std::vector<double> met;
    const AcGeVector2d along(d.x, d.y);
    const std::vector<AcGePoint2d>& corners = boundary_.polygon;
    for (std::size_t i = 0, before = corners.size() - 1; i < corners.size(); before = i++) {
        const AcGeVector2d edge = corners[i] - corners[before];
        const AcGeVector2d to_edge = corners[before] - flat(a);
        const double turn = cross(along, edge);
        if (turn == 0.0)
            continue;
        const double on_edge = cross(to_edge, along) / turn;
        constexpr double little = 1e-9;
        if (on_edge >= -little && on_edge <= 1.0 + little)
            met.push_back(cross(to_edge, edge) / turn);
    }
    for (const double z : {boundary_.least_z, boundary_.most_z})
        if (d.z != 0.0)
            met.push_back((z - a.z) / d.z);
    std::erase_if(met, [](double t) { return !std::isfinite(t); });
    std::sort(met.begin(), met.end());
    return met;
}

void clipped_canvas::lines(std::span<const AcGePoint3d> points) {
    if (points.size() == 1) {
        if (holds(boundary_.from_world * points[0]))
            target_.lines(points);
        return;
    }
    std::vector<AcGePoint3d> run; // that is inside and not ended yet
    const auto end_run = [&] {
        if (!run.empty())
            target_.lines(run);
        run.clear();
    };
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const AcGePoint3d a = boundary_.from_world * points[i];
        const AcGeVector3d d = boundary_.from_world * points[i + 1] - a;
        std::vector<double> stops;
        if (!convex_ || !holds(a) || !holds(a + d))
            stops = meetings(a, d);
        std::erase_if(stops, [](double t) { return !(t > 0.0 && t < 1.0); });
        stops.insert(stops.begin(), 0.0);
        stops.push_back(1.0);
        for (std::size_t stop = 0; stop + 1 < stops.size(); ++stop) {
            const double from = stops[stop];
            const double to = stops[stop + 1];
            if (!holds(a + d * ((from + to) / 2.0))) {
                end_run();
                continue;
            }
            const AcGeVector3d whole = points[i + 1] - points[i];
            if (run.empty())
                run.push_back(points[i] + whole * from);
            run.push_back(to == 1.0 ? points[i + 1] : points[i] + whole * to);
        }
    }
    end_run();
}

void clipped_canvas::curve(const arc& arc) {
    const AcGePoint3d center = boundary_.from_world * arc.center;
    const AcGeVector3d u = boundary_.from_world * arc.u;
    const AcGeVector3d v = boundary_.from_world * arc.v;
    const double full = 2.0 * std::numbers::pi;
    const double sweep = std::clamp(arc.sweep, -full, full);
    const double low = std::min(arc.start, arc.start + sweep);
    const double high = std::max(arc.start, arc.start + sweep);
    if (!std::isfinite(low) || !std::isfinite(high))
        return;
    std::vector<double> stops{low, high};
    // Where p cos t + q sin t = r.
    const auto meet = [&](double p, double q, double r) {
        const double size = std::hypot(p, q);
        if (size == 0.0 || !(std::fabs(r) <= size))
            return;
        const double middle = std::atan2(q, p);
        const double apart = std::acos(r / size);
        for (const double t : {middle - apart, middle + apart})
            for (double at = t + full * std::ceil((low - t) / full); at < high; at += full)
                if (at > low)
                    stops.push_back(at);
    };
    const std::vector<AcGePoint2d>& corners = boundary_.polygon;
    for (std::size_t i = 0, before = corners.size() - 1; i < corners.size(); before = i++) {
        const AcGeVector2d edge = corners[i] - corners[before];
        meet(cross(edge, {u.x, u.y}), cross(edge, {v.x, v.y}), -cross(edge, flat(center) - corners[before]));
    }
    for (const double z : {boundary_.least_z, boundary_.most_z})
        if (std::isfinite(z))
            meet(u.z, v.z, z - center.z);
    std::sort(stops.begin(), stops.end());

    gi::arc piece = arc;
    bool open = false;
    for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
        const double middle = (stops[i] + stops[i + 1]) / 2.0;
        const bool inside = holds(center + u * std::cos(middle) + v * std::sin(middle));
        if (inside && !open)
            piece.start = stops[i];
        if (inside)
            piece.sweep = stops[i + 1] - piece.start;
        if (open && !inside)
            target_.curve(piece);
        open = inside;
    }
    if (open)
        target_.curve(piece);
}

void clipped_canvas::unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) {
    const AcGePoint3d a = boundary_.from_world * from;
    const AcGeVector3d d = boundary_.from_world * direction;
    std::vector<double> stops = meetings(a, d);
    if (!both) {
        std::erase_if(stops, [](double t) { return t < 0.0; });
        stops.insert(stops.begin(), 0.0);
    }
    for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
        const AcGePoint3d ends[] = {from + direction * stops[i], from + direction * stops[i + 1]};
        if (holds(a + d * ((stops[i] + stops[i + 1]) / 2.0)))
            target_.lines(ends);
    }
}

const std::vector<std::vector<AcGePoint2d>>& clipped_canvas::convex_parts() {
    constexpr std::size_t most_corners = 1000; // cutting ears off takes the square of their number, or more
    if (parts_.empty()) {
        if (convex_)
            parts_.push_back(boundary_.polygon);
        else if (boundary_.polygon.size() <= most_corners)
            parts_ = triangles(boundary_.polygon);
    }
    return parts_;
}

void clipped_canvas::outline(std::span<const AcGePoint3d> figure) {
    std::vector<AcGePoint3d> rim(figure.begin(), figure.end());
    rim.push_back(rim.front());
    lines(rim);
}

void clipped_canvas::area(std::span<const AcGePoint3d> figure) {
    if (figure.empty())
        return;
    if (convex_parts().empty())
        outline(figure);
    for (const std::vector<AcGePoint2d>& part : convex_parts())
        if (const std::vector<AcGePoint3d> left = cut(figure, part); !left.empty())
            target_.area(left);
}

bool clipped_canvas::text(const text_line& line) {
    const AcGeVector3d along = line.x * line.length;
    const AcGePoint3d corners[] = {line.position, line.position + along, line.position + along + line.y,
                                   line.position + line.y};
    for (const std::vector<AcGePoint2d>& part : convex_parts())
        if (!cut(corners, part).empty())
            return target_.text(line);
    return convex_parts().empty() ? target_.text(line) : true;
}

void clipped_canvas::area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) {
    if (convex_parts().empty())
        for (const std::vector<AcGePoint3d>& rim : rims)
            if (!rim.empty())
                outline(rim);
    for (const std::vector<AcGePoint2d>& part : convex_parts()) {
        std::vector<std::vector<AcGePoint3d>> left;
        for (const std::vector<AcGePoint3d>& rim : rims)
            if (std::vector<AcGePoint3d> piece = cut(rim, part); !piece.empty())
                left.push_back(std::move(piece));
        if (!left.empty())
            target_.area_of_rims(left);
    }
}

// By one wall after the other (the way of Sutherland and Hodgman).
std::vector<AcGePoint3d> clipped_canvas::cut(std::span<const AcGePoint3d> figure,
                                             std::span<const AcGePoint2d> corners) {
    struct place {
        AcGePoint3d world;
        AcGePoint3d clip;
    };
    std::vector<place> left;
    left.reserve(figure.size());
    for (const AcGePoint3d& point : figure)
        left.push_back({point, boundary_.from_world * point});
    const auto keep = [&](auto height) { // what is not below nought
        std::vector<place> kept;
        for (std::size_t i = 0; i < left.size(); ++i) {
            const place& a = left[i];
            const place& b = left[(i + 1) % left.size()];
            const double before = height(a.clip);
            const double after = height(b.clip);
            if (before >= 0.0)
                kept.push_back(a);
            if ((before < 0.0 && after > 0.0) || (before > 0.0 && after < 0.0)) {
                const double t = before / (before - after);
                kept.push_back({a.world + (b.world - a.world) * t, a.clip + (b.clip - a.clip) * t});
            }
        }
        left = std::move(kept);
    };
    for (std::size_t i = 0; i < corners.size() && !left.empty(); ++i) {
        const AcGePoint2d& from = corners[i];
        const AcGeVector2d edge = corners[(i + 1) % corners.size()] - from;
        keep([&](const AcGePoint3d& p) { return cross(edge, flat(p) - from) + slack_ * edge.length(); });
    }
    if (std::isfinite(boundary_.least_z))
        keep([&](const AcGePoint3d& p) { return p.z - boundary_.least_z; });
    if (std::isfinite(boundary_.most_z))
        keep([&](const AcGePoint3d& p) { return boundary_.most_z - p.z; });
    std::vector<AcGePoint3d> rest;
    rest.reserve(left.size());
    for (const place& corner : left)
        rest.push_back(corner.world);
    if (rest.size() == 1 && figure.size() > 1) // touched from outside
        rest.clear();
    return rest;
}

} // namespace gi
