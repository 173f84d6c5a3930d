#include "host/db/entities/hatch_boundary.h"

#include "base/number_text.h"
#include "gemat3d.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/record_text.h"
#include "host/db/entities/flat_path.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace db {

namespace {

enum edge_type { line = 1, circular_arc = 2, elliptic_arc = 3, spline = 4 };

double number(const dxf::group& group) {
    return dxf::leading_real(group.value).value_or(0.0);
}

int integer(const dxf::group& group) {
    constexpr double most = 1e9;
    return static_cast<int>(std::clamp(number(group), -most, most));
}

// A group of an edge; what it means depends on the edge's type.
void take_edge_group(hatch_edge& edge, const dxf::group& group) {
    const bool is_spline = edge.type == spline;
    switch (group.code) {
    case 10:
        if (is_spline)
            edge.points.push_back({number(group), 0.0});
        else
            edge.first.x = number(group);
        break;
    case 20:
        if (!is_spline)
            edge.first.y = number(group);
        else if (!edge.points.empty())
            edge.points.back().y = number(group);
        break;
    case 11:
        if (is_spline)
            edge.fit_points.push_back({number(group), 0.0});
        else
            edge.second.x = number(group);
        break;
    case 21:
        if (!is_spline)
            edge.second.y = number(group);
        else if (!edge.fit_points.empty())
            edge.fit_points.back().y = number(group);
        break;
    case 12:
    case 13:
        edge.tangents.push_back({number(group), 0.0});
        break;
    case 22:
    case 23:
        if (!edge.tangents.empty())
            edge.tangents.back().y = number(group);
        break;
    case 40:
        if (is_spline)
            edge.knots.push_back(number(group));
        else
            edge.size = number(group);
        break;
    case 42:
        edge.weights.push_back(number(group));
        break;
    case 50:
        edge.start_angle = number(group);
        break;
    case 51:
        edge.end_angle = number(group);
        break;
    case 73:
        (is_spline ? edge.rational : edge.anticlockwise) = integer(group) != 0;
        break;
    case 74:
        edge.periodic = integer(group) != 0;
        break;
    case 94:
        edge.degree = integer(group);
        break;
    case 97:
        ++edge.counts;
        break;
    default:
        break;
    }
}

// A group of a polyline loop.
void take_vertex_group(hatch_loop& loop, const dxf::group& group) {
    switch (group.code) {
    case 10:
        loop.vertices.push_back({number(group), 0.0});
        break;
    case 20:
        if (!loop.vertices.empty())
            loop.vertices.back().y = number(group);
        break;
    case 42:
        if (!loop.vertices.empty()) {
            loop.bulges.resize(loop.vertices.size());
            loop.bulges.back() = number(group);
        }
        break;
    case 73:
        loop.closed = integer(group) != 0;
        break;
    default:
        break;
    }
}

// From the parameter at which an arc starts through how much of it, anticlockwise about the plane's normal
// when above nought.
std::pair<double, double> sweep_of(const hatch_edge& edge) {
    constexpr double full = 360.0;
    double sweep = edge.end_angle - edge.start_angle;
    if (std::fabs(sweep) > full)
        sweep = full;
    else if (sweep <= 0.0)
        sweep += full;
    const double sign = edge.anticlockwise ? 1.0 : -1.0;
    return {radians(edge.start_angle) * sign, radians(sweep) * sign};
}

gi::arc arc_of_edge(const hatch_edge& edge, double elevation) {
    const auto [start, sweep] = sweep_of(edge);
    gi::arc arc{
        {edge.first.x, edge.first.y, elevation}, {edge.size, 0.0, 0.0}, {0.0, edge.size, 0.0}, start, sweep};
    if (edge.type == elliptic_arc) {
        arc.u = {edge.second.x, edge.second.y, 0.0};
        arc.v = AcGeVector3d(-edge.second.y, edge.second.x, 0.0) * edge.size;
    }
    return arc;
}

using point_row = std::vector<AcGePoint3d>;

void add_polyline_pieces(const hatch_loop& loop, double elevation, std::vector<hatch_piece>& pieces) {
    const auto in_space = [&](const AcGePoint2d& p) { return AcGePoint3d(p.x, p.y, elevation); };
    const std::size_t count = loop.vertices.size();
    for (std::size_t i = 0; i < count; ++i) {
        const AcGePoint2d& to = loop.vertices[(i + 1) % count];
        const bool is_behind_end = i + 1 == count && !loop.closed;
        path_vertex from{loop.vertices[i]};
        if (i < loop.bulges.size() && !is_behind_end)
            from.bulge = loop.bulges[i];
        if (gi::arc arc; arc_of_segment(from, to, elevation, arc)) {
            pieces.emplace_back(arc);
            continue;
        }
        if (pieces.empty() || !std::holds_alternative<point_row>(pieces.back()))
            pieces.emplace_back(point_row{in_space(from.point)});
        std::get<point_row>(pieces.back()).push_back(in_space(to));
    }
}

hatch_piece piece_of_spline(const hatch_edge& edge, double elevation) {
    ge::bspline spline{edge.degree, edge.knots, {}, edge.weights};
    for (const AcGePoint2d& point : edge.points.empty() ? edge.fit_points : edge.points)
        spline.points.push_back({point.x, point.y, elevation});
    if (ge::mend(spline))
        return spline;
    if (spline.points.empty())
        spline.points.push_back({0.0, 0.0, elevation});
    return spline.points;
}

hatch_piece piece_of_edge(const hatch_edge& edge, double elevation) {
    if (edge.type == circular_arc || edge.type == elliptic_arc)
        return arc_of_edge(edge, elevation);
    if (edge.type == spline)
        return piece_of_spline(edge, elevation);
    return point_row{{edge.first.x, edge.first.y, elevation}, {edge.second.x, edge.second.y, elevation}};
}

AcGePoint3d start_of(const hatch_piece& piece) {
    if (const auto* const arc = std::get_if<gi::arc>(&piece))
        return arc->at(arc->start);
    if (const auto* const spline = std::get_if<ge::bspline>(&piece))
        return spline->at(spline->first()).point;
    return std::get<point_row>(piece).front();
}

AcGePoint3d end_of(const hatch_piece& piece) {
    if (const auto* const arc = std::get_if<gi::arc>(&piece))
        return arc->at(arc->start + arc->sweep);
    if (const auto* const spline = std::get_if<ge::bspline>(&piece))
        return spline->at(spline->last()).point;
    return std::get<point_row>(piece).back();
}

void turn_round(hatch_piece& piece) {
    if (auto* const arc = std::get_if<gi::arc>(&piece)) {
        arc->start += arc->sweep;
        arc->sweep = -arc->sweep;
    } else if (auto* const spline = std::get_if<ge::bspline>(&piece)) {
        *spline = spline->reversed();
    } else {
        std::ranges::reverse(std::get<point_row>(piece));
    }
}

// Edges are meant to follow each other, but some programs write single ones the wrong way round.
void add_edge_pieces(const hatch_loop& loop, double elevation, std::vector<hatch_piece>& pieces) {
    for (const hatch_edge& edge : loop.edges) {
        hatch_piece piece = piece_of_edge(edge, elevation);
        const auto gap = [&](const AcGePoint3d& from) {
            return std::min(from.distanceTo(start_of(piece)), from.distanceTo(end_of(piece)));
        };
        if (pieces.size() == 1 && gap(start_of(pieces.front())) < gap(end_of(pieces.front())))
            turn_round(pieces.front());
        if (!pieces.empty() && end_of(pieces.back()).distanceTo(end_of(piece)) <
                                   end_of(pieces.back()).distanceTo(start_of(piece)))
            turn_round(piece);
        pieces.push_back(std::move(piece));
    }
}

AcGePoint2d moved(const AcGeMatrix3d& matrix, const AcGePoint2d& point) {
    const AcGePoint3d there = matrix * AcGePoint3d(point.x, point.y, 0.0);
    return {there.x, there.y};
}

AcGePoint2d moved_vector(const AcGeMatrix3d& matrix, const AcGePoint2d& vector) {
    const AcGeVector3d there = matrix * AcGeVector3d(vector.x, vector.y, 0.0);
    return {there.x, there.y};
}

void transform_edge(hatch_edge& edge, const AcGeMatrix3d& matrix, double scale, bool mirrored) {
    edge.first = moved(matrix, edge.first);
    edge.second = edge.type == elliptic_arc ? moved_vector(matrix, edge.second) : moved(matrix, edge.second);
    for (auto* const points : {&edge.points, &edge.fit_points})
        for (AcGePoint2d& point : *points)
            point = moved(matrix, point);
    for (AcGePoint2d& tangent : edge.tangents)
        tangent = moved_vector(matrix, tangent);
    if (edge.type == circular_arc || edge.type == elliptic_arc)
        edge.anticlockwise = edge.anticlockwise != mirrored;
    if (edge.type != circular_arc)
        return; // an ellipse's angles begin at its axis, which was moved
    edge.size *= scale;
    const AcGePoint2d x_axis = moved_vector(matrix, {1.0, 0.0});
    double turn = degrees(std::atan2(x_axis.y, x_axis.x)) * (edge.anticlockwise ? 1.0 : -1.0);
    constexpr double full = 360.0;
    turn -= full * std::floor((edge.start_angle + turn) / full);
    edge.start_angle += turn;
    edge.end_angle += turn;
}

class group_writer {
public:
    explicit group_writer(std::vector<dxf::group_list::fresh_group>& groups) : groups_(groups) {}

    void real(int code, double value) { groups_.push_back({code, base::real_text(value)}); }
    void integer(int code, std::size_t value) { groups_.push_back({code, std::to_string(value)}); }
    void flag(int code, bool value) { groups_.push_back({code, value ? "1" : "0"}); }
    void point(int code, const AcGePoint2d& point) {
        real(code, point.x);
        real(code + 10, point.y);
    }

private:
    std::vector<dxf::group_list::fresh_group>& groups_;
};

void write_edge(group_writer& write, const hatch_edge& edge) {
    write.integer(72, static_cast<std::size_t>(edge.type));
    switch (edge.type) {
    case circular_arc:
    case elliptic_arc:
        write.point(10, edge.first);
        if (edge.type == elliptic_arc)
            write.point(11, edge.second);
        write.real(40, edge.size);
        write.real(50, edge.start_angle);
        write.real(51, edge.end_angle);
        write.flag(73, edge.anticlockwise);
        break;
    case spline:
        write.integer(94, static_cast<std::size_t>(std::max(edge.degree, 0)));
        write.flag(73, edge.rational);
        write.flag(74, edge.periodic);
        write.integer(95, edge.knots.size());
        write.integer(96, edge.points.size());
        for (const double knot : edge.knots)
            write.real(40, knot);
        for (std::size_t i = 0; i < edge.points.size(); ++i) {
            write.point(10, edge.points[i]);
            if (i < edge.weights.size())
                write.real(42, edge.weights[i]);
        }
        if (edge.counts != 0)
            write.integer(97, edge.fit_points.size());
        for (const AcGePoint2d& point : edge.fit_points)
            write.point(11, point);
        for (std::size_t i = 0; i < edge.tangents.size() && i < 2; ++i)
            write.point(i == 0 ? 12 : 13, edge.tangents[i]);
        break;
    default:
        write.point(10, edge.first);
        write.point(11, edge.second);
        break;
    }
}

} // namespace

std::pair<std::size_t, std::size_t> range_of_loops(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    const dxf::group_place place{"AcDbHatch"};
    std::size_t first = groups.find(place, 91);
    if (first == dxf::group_list::npos)
        return {all.size(), all.size()};
    ++first;
    constexpr int type_of_loop = 92;
    while (first < all.size() && all[first].code != type_of_loop && dxf::common_bit(all[first].code) != 0)
        ++first; // the entity's, not the hatch's
    std::size_t last = first;
    if (last < all.size() && all[last].code != type_of_loop)
        return {first, first};
    const auto ends = [](int code) {
        return code == 75 || code == 76 || code == 98 || code == 100 || code == 101 || code >= 450;
    };
    while (last < all.size() && !ends(all[last].code))
        ++last;
    return {first, last};
}

std::vector<hatch_loop> read_loops(std::span<const dxf::group> groups) {
    std::vector<hatch_loop> loops;
    for (const dxf::group& group : groups) {
        if (group.code == 92) {
            loops.push_back({});
            loops.back().type = integer(group);
        } else if (loops.empty()) {
            continue;
        } else if (group.code == 330) {
            loops.back().sources.push_back(dxf::parse_handle(group.value));
        } else if (loops.back().is_polyline()) {
            take_vertex_group(loops.back(), group);
        } else if (group.code == 72) {
            loops.back().edges.push_back({});
            loops.back().edges.back().type = integer(group);
        } else if (!loops.back().edges.empty()) {
            take_edge_group(loops.back().edges.back(), group);
        }
    }
    // The last count of a loop is that of its sources, not of the last spline's fit points.
    for (hatch_loop& loop : loops)
        if (!loop.edges.empty() && loop.edges.back().counts != 0)
            --loop.edges.back().counts;
    return loops;
}

void append_loop(std::vector<dxf::group_list::fresh_group>& groups, const hatch_loop& loop) {
    group_writer write(groups);
    write.integer(92, static_cast<std::size_t>(std::max(loop.type, 0)));
    if (loop.is_polyline()) {
        write.flag(72, !loop.bulges.empty());
        write.flag(73, loop.closed);
        write.integer(93, loop.vertices.size());
        for (std::size_t i = 0; i < loop.vertices.size(); ++i) {
            write.point(10, loop.vertices[i]);
            if (!loop.bulges.empty())
                write.real(42, i < loop.bulges.size() ? loop.bulges[i] : 0.0);
        }
    } else {
        write.integer(93, loop.edges.size());
        for (const hatch_edge& edge : loop.edges)
            write_edge(write, edge);
    }
    write.integer(97, loop.sources.size());
    for (const std::uint64_t source : loop.sources)
        groups.push_back({330, handle_text(source)});
}

void transform_loop(hatch_loop& loop, const AcGeMatrix3d& plane_to_plane, double scale, bool mirrored) {
    for (AcGePoint2d& vertex : loop.vertices)
        vertex = moved(plane_to_plane, vertex);
    if (mirrored)
        for (double& bulge : loop.bulges)
            bulge = -bulge;
    for (hatch_edge& edge : loop.edges)
        transform_edge(edge, plane_to_plane, scale, mirrored);
}

std::vector<hatch_piece> pieces_of(const hatch_loop& loop, double elevation) {
    std::vector<hatch_piece> pieces;
    if (loop.is_polyline())
        add_polyline_pieces(loop, elevation, pieces);
    else
        add_edge_pieces(loop, elevation, pieces);
    return pieces;
}

} // namespace db
