#include "host/db/entities/flat_path.h"

#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/lines_alike.h"
#include "host/db/entities/imp_curve.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace db {

namespace {

constexpr double full_turn = 2.0 * std::numbers::pi;

AcGePoint3d at_elevation(const AcGePoint2d& point, double elevation) {
    return {point.x, point.y, elevation};
}

bool is_wide(const path_vertex& vertex) {
    return vertex.start_width > 0.0 || vertex.end_width > 0.0;
}

// Draws a path in the coordinates of its plane.
class path_drawing {
public:
    path_drawing(const flat_path& path, AcGiWorldDraw& draw) : path_(path), draw_(draw.geometry()) {}

    void run() {
        if (path_.segments() == 0 && !path_.vertices.empty())
            line_.push_back(at_elevation(path_.vertices.front().point, path_.elevation));
        for (std::size_t i = 0; i < path_.segments(); ++i)
            draw_segment(i);
        end_line();
    }

private:
    // Lines that follow each other are drawn as one.
    void end_line() {
        if (!line_.empty())
            draw_.polyline(static_cast<Adesk::UInt32>(line_.size()), line_.data());
        line_.clear();
    }

    void draw_segment(std::size_t index) {
        const path_vertex& from = path_.vertices[index];
        const AcGePoint2d& to = path_.next(index).point;
        gi::arc arc;
        const bool round = arc_of_segment(from, to, path_.elevation, arc);
        if (is_wide(from)) {
            end_line();
            if (round)
                draw_wide_arc(from, arc);
            else
                draw_wide_line(index);
        } else if (round) {
            end_line();
            draw_arc(arc, 0.0);
        } else {
            if (line_.empty())
                line_.push_back(at_elevation(from.point, path_.elevation));
            line_.push_back(at_elevation(to, path_.elevation));
        }
    }

    // An arc, or the one that runs beside it, further from the center.
    void draw_arc(const gi::arc& arc, double further) {
        const double sweep = std::fabs(arc.sweep);
        draw_.circularArc(arc.center, arc.u.length() + further, AcGeVector3d::kZAxis,
                          arc.sweep < 0.0 ? arc.at(arc.sweep) - arc.center : arc.u, sweep);
    }

    void draw_area(const std::vector<AcGePoint3d>& rim) {
        draw_.polygon(static_cast<Adesk::UInt32>(rim.size()), rim.data());
        if (path_.thickness == 0.0)
            return;
        std::vector<AcGePoint3d> top = rim;
        for (AcGePoint3d& point : top)
            point.z += path_.thickness;
        draw_.polygon(static_cast<Adesk::UInt32>(top.size()), top.data());
    }

    // To the left of a straight segment, of length one; null without a direction.
    AcGeVector2d left_of(std::size_t index) const {
        const AcGeVector2d along = path_.next(index).point - path_.vertices[index].point;
        const double length = along.length();
        return length > 0.0 ? AcGeVector2d(-along.y / length, along.x / length) : AcGeVector2d();
    }

    // From the vertex between two segments to the left corner of their outline there. Two wide lines meet
    // with a mitre, unless they have different widths or turn back sharply.
    AcGeVector2d corner(std::size_t before, std::size_t behind, const AcGeVector2d& own, double width) const {
        const path_vertex& first = path_.vertices[before];
        const path_vertex& second = path_.vertices[behind];
        gi::arc arc;
        if (first.end_width != width || second.start_width != width ||
            arc_of_segment(first, second.point, 0.0, arc) ||
            arc_of_segment(second, path_.next(behind).point, 0.0, arc))
            return own * (width / 2.0);
        const AcGeVector2d a = left_of(before);
        const AcGeVector2d b = left_of(behind);
        const double turn = a.dotProduct(b);
        // The editor's manual says that very acute angles get no mitre, and no number. Here: one that would
        // be more than four times as long as half the width.
        constexpr double sharpest = -0.875;
        if (a.length() == 0.0 || b.length() == 0.0 || turn <= sharpest)
            return own * (width / 2.0);
        return (a + b) * (width / 2.0 / (1.0 + turn));
    }

    void draw_wide_line(std::size_t index) {
        const path_vertex& from = path_.vertices[index];
        const path_vertex& to = path_.next(index);
        const AcGeVector2d left = left_of(index);
        const std::size_t count = path_.vertices.size();
        AcGeVector2d start = left * (from.start_width / 2.0);
        AcGeVector2d end = left * (from.end_width / 2.0);
        if (index > 0 || path_.closed)
            start = corner((index + count - 1) % count, index, left, from.start_width);
        if (index + 1 < path_.segments() || path_.closed)
            end = corner(index, (index + 1) % count, left, from.end_width);
        const double z = path_.elevation;
        draw_area({at_elevation(from.point + start, z), at_elevation(to.point + end, z),
                   at_elevation(to.point - end, z), at_elevation(from.point - start, z)});
    }

    void draw_wide_arc(const path_vertex& from, const gi::arc& arc) {
        const double radius = arc.u.length();
        const auto steps =
            static_cast<int>(std::clamp(std::ceil(std::fabs(arc.sweep) / full_turn * 72.0), 1.0, 72.0));
        std::vector<AcGePoint3d> rim;
        for (const double side : {0.5, -0.5}) {
            for (int i = 0; i <= steps; ++i) {
                const double part = static_cast<double>(side > 0.0 ? i : steps - i) / steps;
                const double width = from.start_width + (from.end_width - from.start_width) * part;
                const AcGeVector3d away = arc.at(arc.sweep * part) - arc.center;
                rim.push_back(arc.center + away * (1.0 + side * width / radius));
            }
        }
        draw_area(rim);
        // The rims of an even width are arcs, and the area's corners lie on them.
        if (from.start_width == from.end_width)
            for (const double side : {0.5, -0.5})
                draw_arc(arc, side * from.start_width);
    }

    const flat_path& path_;
    AcGiWorldGeometry& draw_;
    std::vector<AcGePoint3d> line_;
};

} // namespace

std::size_t flat_path::segments() const {
    if (vertices.size() < 2)
        return 0;
    return closed ? vertices.size() : vertices.size() - 1;
}

bool arc_of_segment(const path_vertex& from, const AcGePoint2d& to, double elevation, gi::arc& arc) {
    constexpr double least = 1e-8; // below, the arc leaves its chord by less than reals can tell
    const AcGeVector2d chord = to - from.point;
    const double length = chord.length();
    if (!(std::fabs(from.bulge) > least) || !std::isfinite(from.bulge) || !(length > 0.0))
        return false;
    // The center lies on the line through the middle of the chord, at right angles to it.
    const double up = (1.0 - from.bulge * from.bulge) / (4.0 * from.bulge);
    const AcGePoint2d center(from.point.x + chord.x / 2.0 - chord.y * up,
                             from.point.y + chord.y / 2.0 + chord.x * up);
    arc.center = at_elevation(center, elevation);
    arc.u = {from.point.x - center.x, from.point.y - center.y, 0.0};
    arc.v = {-arc.u.y, arc.u.x, 0.0};
    arc.start = 0.0;
    arc.sweep = 4.0 * std::atan(from.bulge);
    return true;
}

void draw_path(const flat_path& path, AcGiWorldDraw& draw) {
    draw.subEntityTraits().setThickness(path.thickness);
    const bool upright = path.normal == AcGeVector3d::kZAxis;
    if (!upright)
        draw.geometry().pushModelTransform(path.normal);
    path_drawing(path, draw).run();
    if (!upright)
        draw.geometry().popModelTransform();
}

void add_pieces(const flat_path& path, AcDbImpCurve& pieces) {
    const AcGeMatrix3d to_world = AcGeMatrix3d::planeToWorld(path.normal);
    for (std::size_t i = 0; i < path.segments(); ++i) {
        const AcGePoint2d& to = path.next(i).point;
        const auto param = static_cast<double>(i);
        gi::arc arc;
        if (arc_of_segment(path.vertices[i], to, path.elevation, arc))
            pieces.add_arc({to_world * arc.center, to_world * arc.u, to_world * arc.v, arc.start, arc.sweep},
                           param, param + 1.0);
        else
            pieces.add_line(to_world * at_elevation(path.vertices[i].point, path.elevation),
                            to_world * at_elevation(to, path.elevation), param, param + 1.0);
    }
}

void explode_path(const flat_path& path, const AcDbEntity& whole, AcDbVoidPtrArray& parts) {
    const AcGeMatrix3d to_world = AcGeMatrix3d::planeToWorld(path.normal);
    const AcDbEntity* like = &whole;    // then the part before: it has fewer groups to be searched
    std::shared_ptr<lines_alike> lines; // there may be a million of them
    for (std::size_t i = 0; i < path.segments(); ++i) {
        const path_vertex& from = path.vertices[i];
        const AcGePoint2d& to = path.next(i).point;
        gi::arc arc;
        if (arc_of_segment(from, to, path.elevation, arc)) {
            const double first = std::atan2(arc.u.y, arc.u.x);
            const double last = first + arc.sweep;
            auto* const part = new AcDbArc(to_world * arc.center, path.normal, arc.u.length(),
                                           std::min(first, last), std::max(first, last));
            part->setThickness(path.thickness);
            part->setPropertiesFrom(like);
            parts.append(part);
            like = part;
        } else {
            const AcGePoint3d start = to_world * at_elevation(from.point, path.elevation);
            const AcGePoint3d end = to_world * at_elevation(to, path.elevation);
            if (lines != nullptr) {
                parts.append(lines->make(start, end).release());
                continue;
            }
            auto* const part = new AcDbLine(start, end);
            part->setThickness(path.thickness);
            part->setNormal(path.normal);
            part->setPropertiesFrom(like);
            parts.append(part);
            like = part;
            lines = std::make_shared<lines_alike>(*part);
        }
    }
}

bool transform_path(flat_path& path, const AcGeMatrix3d& matrix, double& growth) {
    plane_change change;
    // Where circles do not stay round, lines without widths stay what they are.
    const bool lines_alone =
        std::none_of(path.vertices.begin(), path.vertices.end(),
                     [](const path_vertex& vertex) { return vertex.bulge != 0.0 || is_wide(vertex); });
    if (!change_plane(path.normal, matrix, change) &&
        !(lines_alone && change_any_plane(path.normal, matrix, change)))
        return false;
    const double rise = change.normal.dotProduct(matrix * path.normal);
    for (path_vertex& vertex : path.vertices) {
        const AcGePoint3d moved = change.plane_to_plane * at_elevation(vertex.point, path.elevation);
        vertex.point = {moved.x, moved.y};
        vertex.bulge = change.mirrored ? -vertex.bulge : vertex.bulge;
        vertex.start_width *= change.scale;
        vertex.end_width *= change.scale;
    }
    path.elevation = (change.plane_to_plane * AcGePoint3d(0.0, 0.0, path.elevation)).z;
    path.normal = change.normal;
    path.thickness *= rise;
    growth = change.scale;
    return true;
}

} // namespace db
