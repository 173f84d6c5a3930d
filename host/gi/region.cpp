#include "host/gi/region.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gi {

namespace {

AcGePoint2d flat(const AcGePoint3d& point) {
    return {point.x, point.y};
}

// On which side of the line a-b a point lies: above nought on the left, nought on the line.
double side(const AcGePoint2d& a, const AcGePoint2d& b, const AcGePoint2d& p) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

bool within(const AcGePoint2d& a, const AcGePoint2d& b, const AcGePoint2d& p) {
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

bool meet(const AcGePoint2d& a, const AcGePoint2d& b, const AcGePoint2d& c, const AcGePoint2d& d) {
    const double a_side = side(c, d, a);
    const double b_side = side(c, d, b);
    const double c_side = side(a, b, c);
    const double d_side = side(a, b, d);
    if (((a_side > 0.0 && b_side < 0.0) || (a_side < 0.0 && b_side > 0.0)) &&
        ((c_side > 0.0 && d_side < 0.0) || (c_side < 0.0 && d_side > 0.0)))
        return true;
    return (a_side == 0.0 && within(c, d, a)) || (b_side == 0.0 && within(c, d, b)) ||
           (c_side == 0.0 && within(a, b, c)) || (d_side == 0.0 && within(a, b, d));
}

} // namespace

bool holds(std::span<const AcGePoint2d> figure, const AcGePoint2d& point) {
    bool inside = false;
    for (std::size_t i = 0, j = figure.size() - 1; i < figure.size(); j = i++) {
        const AcGePoint2d& a = figure[i];
        const AcGePoint2d& b = figure[j];
        if ((a.y > point.y) != (b.y > point.y) && point.x < (b.x - a.x) * (point.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

region::region(std::vector<AcGePoint2d> points, bool closed) : points_(std::move(points)), closed_(closed) {
    least_ = most_ = points_.empty() ? AcGePoint2d() : points_.front();
    for (const AcGePoint2d& point : points_) {
        least_ = {std::min(least_.x, point.x), std::min(least_.y, point.y)};
        most_ = {std::max(most_.x, point.x), std::max(most_.y, point.y)};
    }
}

region region::box(const AcGePoint2d& first, const AcGePoint2d& second) {
    region made = polygon({first, {second.x, first.y}, second, {first.x, second.y}});
    made.is_box_ = true;
    return made;
}

bool region::holds_box(const AcGePoint2d& least, const AcGePoint2d& most) const {
    return is_box_ && least_.x < least.x && most.x < most_.x && least_.y < least.y && most.y < most_.y;
}

bool region::holds(const AcGePoint2d& point) const {
    return closed_ && within(least_, most_, point) && gi::holds(points_, point);
}

bool region::crosses_rim(const AcGePoint2d& a, const AcGePoint2d& b) const {
    if (std::max(a.x, b.x) < least_.x || std::min(a.x, b.x) > most_.x || std::max(a.y, b.y) < least_.y ||
        std::min(a.y, b.y) > most_.y)
        return false;
    for (std::size_t i = 1; i < points_.size(); ++i)
        if (meet(a, b, points_[i - 1], points_[i]))
            return true;
    return closed_ && points_.size() > 2 && meet(a, b, points_.back(), points_.front());
}

bool region::touches(const AcGePoint2d& a, const AcGePoint2d& b) const {
    return holds(a) || crosses_rim(a, b);
}

void region_test::lines(std::span<const AcGePoint3d> points) {
    if (points.empty())
        return;
    any_ = true;
    AcGePoint2d last = flat(points.front());
    const auto see = [&](const AcGePoint2d& a, const AcGePoint2d& b) {
        const bool crossed = region_.crosses_rim(a, b);
        const bool inside = region_.holds(b);
        touched_ = touched_ || crossed || inside;
        outside_ = outside_ || crossed || !inside;
    };
    see(last, last);
    for (const AcGePoint3d& point : points.subspan(1)) {
        const AcGePoint2d next = flat(point);
        see(last, next);
        last = next;
    }
}

void region_test::area(std::span<const AcGePoint3d> points) {
    const std::vector<AcGePoint3d> rim(points.begin(), points.end());
    area_of_rims({&rim, 1});
}

void region_test::area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) {
    bool inside = false; // the region, of the figure
    for (const std::vector<AcGePoint3d>& points : rims) {
        if (points.empty())
            continue;
        std::vector<AcGePoint3d> rim = points;
        rim.push_back(points.front());
        lines(rim);
        if (touched_ || region_.points().empty())
            continue;
        // The region may lie in the figure without meeting its rim.
        std::vector<AcGePoint2d> figure;
        figure.reserve(points.size());
        for (const AcGePoint3d& point : points)
            figure.push_back(flat(point));
        inside = inside != gi::holds(figure, region_.points().front());
    }
    touched_ = touched_ || inside;
}

void region_test::curve(const arc& arc) {
    const double size = std::max(arc.u.length(), arc.v.length());
    const double width = std::min(region_.most().x - region_.least().x, region_.most().y - region_.least().y);
    // A chord may miss by a tenth of a pick box, which is finer than anyone points.
    fine_ = width > 0.0 ? std::min(width / 10.0, size / 1000.0) : size / 1000.0;
    constexpr double absurd = 1e15; // beyond it no two points of a drawing can be told apart
    if (!(size < absurd) || !std::isfinite(arc.center.x + arc.center.y + arc.start + arc.sweep)) {
        any_ = outside_ = true;
        return;
    }
    // Most curves lie wholly in a window, or wholly out of reach.
    const double reach = arc.u.length() + arc.v.length();
    const AcGePoint2d least(arc.center.x - reach, arc.center.y - reach);
    const AcGePoint2d most(arc.center.x + reach, arc.center.y + reach);
    if (region_.holds_box(least, most)) {
        any_ = touched_ = true;
        return;
    }
    if (most.x < region_.least().x || least.x > region_.most().x || most.y < region_.least().y ||
        least.y > region_.most().y) {
        any_ = outside_ = true;
        return;
    }
    constexpr int pieces = 8;
    constexpr double full = 2.0 * std::numbers::pi;
    const double sweep = std::clamp(arc.sweep, -full, full);
    for (int i = 0; i < pieces; ++i)
        piece(arc, size, arc.start + sweep * i / pieces, sweep / pieces);
}

// Halves a piece of an arc until it is straight enough; what is away from the region is not looked at closer.
void region_test::piece(const arc& arc, double size, double start, double sweep) {
    const AcGePoint3d ends[] = {arc.at(start), arc.at(start + sweep)};
    const double sagitta = size * (1.0 - std::cos(sweep / 2.0));
    if (std::max(ends[0].x, ends[1].x) + sagitta < region_.least().x ||
        std::min(ends[0].x, ends[1].x) - sagitta > region_.most().x ||
        std::max(ends[0].y, ends[1].y) + sagitta < region_.least().y ||
        std::min(ends[0].y, ends[1].y) - sagitta > region_.most().y) {
        any_ = outside_ = true;
        return;
    }
    if (!(sagitta > fine_)) {
        lines(ends);
        return;
    }
    piece(arc, size, start, sweep / 2.0);
    piece(arc, size, start + sweep / 2.0, sweep / 2.0);
}

void region_test::unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) {
    any_ = outside_ = true; // no region holds what has no end
    const AcGeVector2d along(direction.x, direction.y);
    if (along.isZeroLength())
        return;
    // Long enough to leave the region, wherever it is.
    const AcGePoint2d start = flat(from);
    const double reach = start.distanceTo(region_.least()) + start.distanceTo(region_.most()) + 1.0;
    const AcGeVector2d far = along.normal() * reach;
    touched_ = touched_ || region_.touches(both ? start - far : start, start + far) || region_.holds(start);
}

} // namespace gi
