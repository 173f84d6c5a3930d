// The vertices of a polyline in its groups.
#pragma once

#include "dbpl.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/flat_path.h"

#include <vector>

namespace db {

inline constexpr field polyline_fields[] = {
    number(90, "0"), number(70, "0"), number(43, "0.0"), number(38), number(39), normal().direction(),
    pair(10),        number(91),      number(40),        number(41), number(42),
};
inline constexpr auto polyline_place = section_of<polyline_fields>("AcDbPolyline");

} // namespace db

// The vertices as the groups have them: read once, and kept in step by what changes them here.
class AcDbImpPolyline {
public:
    void read(const AcDbImpObject& object);
    bool stands_for(const AcDbImpObject& object) const { return revision_ == object.revision(); }

    std::size_t size() const { return vertices_.size(); }
    const db::path_vertex& operator[](std::size_t index) const { return vertices_[index].vertex; }
    AcGePoint3d in_world(std::size_t index) const {
        const AcGePoint2d& point = vertices_[index].vertex.point;
        return to_world_ * AcGePoint3d(point.x, point.y, elevation_);
    }

    void set_point(AcDbImpObject& object, std::size_t index, const AcGePoint2d& point);
    void set_bulge(AcDbImpObject& object, std::size_t index, double bulge);
    void set_widths(AcDbImpObject& object, std::size_t index, double start, double end);
    void set_constant_width(AcDbImpObject& object, double width);
    void scale_shared_width(AcDbImpObject& object, double factor) {
        db::write_real(object, db::polyline_place, 43, width_ * factor);
    }
    db::flat_path path(const AcDbPolyline& polyline) const;
    // Puts the vertices of a path with as many in the place of these.
    void take(AcDbImpObject& object, const db::flat_path& path);
    void reverse(AcDbImpObject& object, bool closed);
    // Widths below nought are those that all segments share.
    void insert(AcDbImpObject& object, std::size_t index, const db::path_vertex& vertex, int identifier);
    void remove(AcDbImpObject& object, std::size_t index);

private:
    // A vertex, and where in the record its groups stand.
    struct vertex_groups {
        db::path_vertex vertex;
        std::size_t begin = 0; // its group 10, and behind its last group
        std::size_t end = 0;
    };
    using fresh = std::vector<dxf::group_list::fresh_group>;

    // Writes all vertices anew, each by what `write` appends for it.
    template<class Write>
    void rewrite(AcDbImpObject& object, Write write);

    dxf::group_list& edit(AcDbImpObject& object);
    void set_real(AcDbImpObject& object, std::size_t index, int code, double value, bool add = true);
    void set_count(dxf::group_list& groups);
    void give_each_its_width(AcDbImpObject& object);

    std::vector<vertex_groups> vertices_;
    std::size_t count_at_ = dxf::group_list::npos; // group 90
    std::size_t end_ = 0;                          // where a vertex behind the last one goes
    double width_ = 0.0;                           // of segments that have none of their own
    double elevation_ = 0.0;
    AcGeMatrix3d to_world_;
    std::size_t revision_ = dxf::group_list::npos;
};
