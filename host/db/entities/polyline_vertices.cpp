#include "host/db/entities/polyline_vertices.h"

#include "base/number_text.h"

#include <algorithm>
#include <optional>
#include <utility>

using db::polyline_place;

namespace {

constexpr std::size_t none = dxf::group_list::npos;

bool is_of_vertex(int code) {
    return code == 20 || code == 40 || code == 41 || code == 42 || code == 91;
}

} // namespace

void AcDbImpPolyline::read(const AcDbImpObject& object) {
    const dxf::group_list& groups = object.groups();
    revision_ = object.revision();
    width_ = groups.real(polyline_place, 43).value_or(0.0);
    elevation_ = groups.real(polyline_place, 38).value_or(0.0);
    to_world_ = AcGeMatrix3d::planeToWorld(db::read_normal(object, polyline_place));
    count_at_ = groups.find(polyline_place, 90);
    vertices_.clear();
    const auto [first, last] = groups.extent(polyline_place);
    end_ = last;
    bool in_vertex = false;
    for (std::size_t i = first; i < last; ++i) {
        const dxf::group& group = groups.groups()[i];
        const auto number = [&] { return dxf::leading_real(group.value).value_or(0.0); };
        if (group.code == 10) {
            vertices_.push_back({{{number(), 0.0}, 0.0, width_, width_}, i, i + 1});
            in_vertex = true;
            continue;
        }
        in_vertex = in_vertex && is_of_vertex(group.code);
        if (!in_vertex)
            continue;
        vertex_groups& current = vertices_.back();
        current.end = i + 1;
        switch (group.code) {
        case 20:
            current.vertex.point.y = number();
            break;
        case 40:
            current.vertex.start_width = number();
            break;
        case 41:
            current.vertex.end_width = number();
            break;
        case 42:
            current.vertex.bulge = number();
            break;
        default:
            break;
        }
    }
    if (!vertices_.empty())
        end_ = vertices_.back().end;
}

dxf::group_list& AcDbImpPolyline::edit(AcDbImpObject& object) {
    dxf::group_list& groups = object.edit();
    revision_ = object.revision();
    return groups;
}

// Sets a number of a vertex: in its group, or in a new one where that is written when `add` is true.
void AcDbImpPolyline::set_real(AcDbImpObject& object, std::size_t index, int code, double value, bool add) {
    dxf::group_list& groups = edit(object);
    const vertex_groups& vertex = vertices_[index];
    std::size_t at = vertex.begin + 1;
    for (std::size_t i = vertex.begin; i < vertex.end; ++i) {
        if (groups.groups()[i].code == code) {
            groups.set_real_at(i, value);
            return;
        }
        if (groups.groups()[i].code < code || groups.groups()[i].code == 91)
            at = i + 1;
    }
    if (!add)
        return;
    const dxf::group_list::fresh_group added[] = {{code, base::real_text(value)}};
    groups.splice(at, at, added);
    read(object);
}

void AcDbImpPolyline::set_count(dxf::group_list& groups) {
    if (count_at_ != none)
        groups.set_integer_at(count_at_, static_cast<std::int64_t>(vertices_.size()));
}

void AcDbImpPolyline::set_point(AcDbImpObject& object, std::size_t index, const AcGePoint2d& point) {
    set_real(object, index, 10, point.x);
    set_real(object, index, 20, point.y);
    vertices_[index].vertex.point = point;
}

void AcDbImpPolyline::set_bulge(AcDbImpObject& object, std::size_t index, double bulge) {
    if (vertices_[index].vertex.bulge == bulge)
        return;
    set_real(object, index, 42, bulge);
    vertices_[index].vertex.bulge = bulge;
}

template<class Write>
void AcDbImpPolyline::rewrite(AcDbImpObject& object, Write write) {
    dxf::group_list& groups = edit(object);
    fresh all;
    for (const vertex_groups& vertex : vertices_)
        write(vertex, std::span(groups.groups()).subspan(vertex.begin, vertex.end - vertex.begin), all);
    if (!vertices_.empty())
        groups.splice(vertices_.front().begin, vertices_.back().end, all);
    read(object);
}

// Takes the width that all segments share to each vertex.
void AcDbImpPolyline::give_each_its_width(AcDbImpObject& object) {
    if (object.groups().find(polyline_place, 43) == none)
        return;
    rewrite(object, [](const vertex_groups& vertex, std::span<const dxf::group> groups, fresh& out) {
        const auto give = [&] {
            out.push_back({40, base::real_text(vertex.vertex.start_width)});
            out.push_back({41, base::real_text(vertex.vertex.end_width)});
        };
        bool given = false;
        for (const dxf::group& group : groups) {
            if (group.code == 40 || group.code == 41)
                continue;
            if (group.code == 42 && !std::exchange(given, true))
                give();
            out.push_back({group.code, std::string(group.value)});
        }
        if (!given)
            give();
    });
    edit(object).remove(polyline_place, 43);
    read(object);
}

void AcDbImpPolyline::set_widths(AcDbImpObject& object, std::size_t index, double start, double end) {
    const db::path_vertex& vertex = vertices_[index].vertex;
    if (vertex.start_width == start && vertex.end_width == end)
        return;
    give_each_its_width(object);
    set_real(object, index, 40, start);
    set_real(object, index, 41, end);
    vertices_[index].vertex.start_width = start;
    vertices_[index].vertex.end_width = end;
}

void AcDbImpPolyline::set_constant_width(AcDbImpObject& object, double width) {
    const bool own = std::any_of(vertices_.begin(), vertices_.end(), [&](const vertex_groups& vertex) {
        return vertex.vertex.start_width != width_ || vertex.vertex.end_width != width_;
    });
    if (own)
        rewrite(object, [](const vertex_groups& /*vertex*/, std::span<const dxf::group> groups, fresh& out) {
            for (const dxf::group& group : groups)
                if (group.code != 40 && group.code != 41)
                    out.push_back({group.code, std::string(group.value)});
        });
    db::write_real(object, polyline_place, 43, width);
    read(object);
}

void AcDbImpPolyline::insert(AcDbImpObject& object, std::size_t index, const db::path_vertex& vertex,
                             int identifier) {
    db::path_vertex added = vertex;
    if (added.start_width < 0.0)
        added.start_width = width_;
    if (added.end_width < 0.0)
        added.end_width = width_;
    const bool own_width = added.start_width != width_ || added.end_width != width_;
    if (own_width)
        give_each_its_width(object);
    fresh groups_of_it{{10, base::real_text(added.point.x)}, {20, base::real_text(added.point.y)}};
    if (identifier != 0)
        groups_of_it.push_back({91, std::to_string(identifier)});
    if (added.start_width != width_ || added.end_width != width_) {
        groups_of_it.push_back({40, base::real_text(added.start_width)});
        groups_of_it.push_back({41, base::real_text(added.end_width)});
    }
    if (added.bulge != 0.0)
        groups_of_it.push_back({42, base::real_text(added.bulge)});
    dxf::group_list& groups = edit(object);
    const std::size_t at = index < vertices_.size() ? vertices_[index].begin : end_;
    groups.splice(at, at, groups_of_it);
    if (index == vertices_.size() && (count_at_ == none || count_at_ < at)) {
        end_ = at + groups_of_it.size();
        vertices_.push_back({added, at, end_});
    } else {
        read(object);
    }
    set_count(groups);
}

void AcDbImpPolyline::remove(AcDbImpObject& object, std::size_t index) {
    dxf::group_list& groups = edit(object);
    const vertex_groups removed = vertices_[index];
    groups.splice(removed.begin, removed.end, {});
    if (index + 1 == vertices_.size() && index > 0 && (count_at_ == none || count_at_ < removed.begin)) {
        vertices_.pop_back();
        end_ = vertices_.back().end;
    } else {
        read(object);
    }
    set_count(groups);
}

void AcDbImpPolyline::take(AcDbImpObject& object, const db::flat_path& path) {
    for (std::size_t i = 0; i < vertices_.size(); ++i) {
        const db::path_vertex& vertex = path.vertices[i];
        set_point(object, i, vertex.point);
        set_bulge(object, i, vertex.bulge);
        set_real(object, i, 40, vertex.start_width, false);
        set_real(object, i, 41, vertex.end_width, false);
        vertices_[i].vertex = vertex;
    }
}

// Each segment belongs to its first vertex, so bulges and widths go to the vertex at its other end. A closed
// one still begins where it did.
void AcDbImpPolyline::reverse(AcDbImpObject& object, bool closed) {
    const std::size_t count = vertices_.size();
    const std::vector<dxf::group> old = object.groups().groups();
    const auto text = [&](std::size_t index, int code) -> std::optional<std::string> {
        for (std::size_t i = vertices_[index].begin; i < vertices_[index].end; ++i)
            if (old[i].code == code)
                return std::string(old[i].value);
        return std::nullopt;
    };
    std::size_t left = closed ? count + 1 : count;
    rewrite(object, [&](const vertex_groups&, std::span<const dxf::group>, fresh& out) {
        --left;
        const std::size_t segment = (left + count - 1) % count;
        for (const int code : {10, 20, 91})
            if (const auto value = text(left % count, code))
                out.push_back({code, *value});
        for (const auto& [code, from] : {std::pair(40, 41), std::pair(41, 40)})
            if (const auto value = text(segment, from))
                out.push_back({code, *value});
        if (const double bulge = vertices_[segment].vertex.bulge; bulge != 0.0)
            out.push_back({42, base::real_text(-bulge)});
    });
}

db::flat_path AcDbImpPolyline::path(const AcDbPolyline& polyline) const {
    db::flat_path made;
    made.vertices.reserve(vertices_.size());
    for (const vertex_groups& vertex : vertices_)
        made.vertices.push_back(vertex.vertex);
    made.closed = polyline.isClosed();
    made.elevation = elevation_;
    made.normal = polyline.normal();
    made.thickness = polyline.thickness();
    return made;
}
