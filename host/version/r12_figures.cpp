#include "host/version/r12_figures.h"

#include "base/number_text.h"
#include "host/version/triangles.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace version {

namespace {

double degrees(double radians) {
    const double whole = 360.0;
    const double turned = std::fmod(radians * 180.0 / std::numbers::pi, whole);
    return turned < 0.0 ? turned + whole : turned;
}

// The angle of a vector in the plane whose matrix from the world is given.
double angle_in(const AcGeMatrix3d& from_world, const AcGeVector3d& direction) {
    const AcGeVector3d flat = from_world * direction;
    return degrees(std::atan2(flat.y, flat.x));
}

} // namespace

void r12_figures::real(int code, double value) {
    group(code, base::real_text(value));
}

void r12_figures::point(int code, const AcGePoint3d& value) {
    real(code, value.x);
    real(code + 10, value.y);
    real(code + 20, value.z);
}

void r12_figures::normal(const AcGeVector3d& value) {
    if (value.isEqualTo(AcGeVector3d::kZAxis))
        return;
    real(210, value.x);
    real(220, value.y);
    real(230, value.z);
}

void r12_figures::begin(std::string_view type) {
    group(0, type);
    text_ += std::exchange(first_, {});
    if (manner_.on_paper)
        group(67, "1");
    text_ += manner_.common;
    if (traits_ != nullptr && traits_->trueColor() != own_)
        group(62, std::to_string(traits_->trueColor().colorIndex()));
}

// ---- lines

void r12_figures::path(std::span<const AcGePoint3d> points, bool closed) {
    const bool flat = std::all_of(points.begin(), points.end(),
                                  [&](const AcGePoint3d& one) { return one.z == points.front().z; });
    constexpr int in_space = 8;
    begin("POLYLINE");
    group(66, "1");
    point(10, {0.0, 0.0, flat ? points.front().z : 0.0});
    group(70, std::to_string((closed ? 1 : 0) | (flat ? 0 : in_space)));
    for (const AcGePoint3d& one : points) {
        group(0, "VERTEX");
        if (manner_.on_paper)
            group(67, "1");
        group(8, manner_.layer);
        point(10, one);
        if (!flat)
            group(70, "32");
    }
    group(0, "SEQEND");
    if (manner_.on_paper)
        group(67, "1");
    group(8, manner_.layer);
}

void r12_figures::lines(std::span<const AcGePoint3d> points) {
    if (points.size() == 1) {
        begin("POINT");
        point(10, points.front());
    } else if (points.size() == 2) {
        begin("LINE");
        point(10, points.front());
        point(11, points.back());
    } else if (!points.empty()) {
        const bool closed = points.size() > 3 && points.front() == points.back();
        path(closed ? points.first(points.size() - 1) : points, closed);
    }
}

void r12_figures::unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) {
    const AcGeVector3d far = direction.normal() * manner_.reach;
    const AcGePoint3d ends[] = {both ? from - far : from, from + far};
    lines(ends);
}

void r12_figures::curve(const gi::arc& arc) {
    const double radius = arc.u.length();
    constexpr double slack = 1e-9;
    if (radius <= 0.0 || std::fabs(arc.v.length() - radius) > slack * radius ||
        std::fabs(arc.u.dotProduct(arc.v)) > slack * radius * radius) {
        constexpr double fine = 2e-4; // of the radius
        lines(gi::flattened(arc, std::max(radius, arc.v.length()) * fine));
        return;
    }
    AcGeVector3d up = arc.u.crossProduct(arc.v).normal();
    if (arc.sweep < 0.0 && !arc.is_whole())
        up = -up;
    const AcGeMatrix3d from_world = AcGeMatrix3d::planeToWorld(up).inverse();
    begin(arc.is_whole() ? "CIRCLE" : "ARC");
    point(10, from_world * arc.center);
    real(40, radius);
    if (!arc.is_whole()) {
        real(50, angle_in(from_world, arc.at(arc.start) - arc.center));
        real(51, angle_in(from_world, arc.at(arc.start + arc.sweep) - arc.center));
    }
    normal(up);
}

// ---- texts

bool r12_figures::text(const gi::text_line& line) {
    const double height = line.y.length();
    if (height <= 0.0)
        return true;
    const AcGeVector3d up = line.x.crossProduct(line.y).normal();
    const AcGeMatrix3d from_world = AcGeMatrix3d::planeToWorld(up).inverse();
    begin("TEXT");
    point(10, from_world * line.position);
    real(40, height);
    group(1, job_.codec.encode(line.text));
    real(50, angle_in(from_world, line.x));
    real(41, line.x.length() / height);
    if (line.oblique != 0.0)
        real(51, degrees(line.oblique));
    group(7, manner_.text_style);
    normal(up);
    return true;
}

// ---- areas

bool r12_figures::corners(std::span<const AcGePoint3d> points) {
    if (std::any_of(points.begin(), points.end(),
                    [&](const AcGePoint3d& one) { return one.z != points.front().z; })) {
        if (points.size() > 4 || points.size() < 3)
            return false;
        begin("3DFACE");
        for (int i = 0; i < 4; ++i)
            point(10 + i, points[std::min(static_cast<std::size_t>(i), points.size() - 1)]);
        return true;
    }
    const auto triangles = triangles_of(points);
    for (const auto& one : triangles) {
        begin("SOLID");
        constexpr int order[] = {0, 1, 2, 2};
        for (int i = 0; i < 4; ++i)
            point(10 + i, points[one[static_cast<std::size_t>(order[i])]]);
    }
    return !triangles.empty();
}

void r12_figures::area(std::span<const AcGePoint3d> points) {
    if (points.size() > 1 && points.front() == points.back())
        points = points.first(points.size() - 1);
    if (points.size() < 3) {
        lines(points);
    } else if (!corners(points)) {
        ++unfilled_;
        path(points, true);
    }
}

void r12_figures::area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) {
    if (rims.size() == 1) {
        area(rims.front());
        return;
    }
    ++unfilled_;
    for (const std::vector<AcGePoint3d>& rim : rims)
        if (rim.size() > 2)
            path(rim, true);
}

} // namespace version
