// The vertices behind an old polyline or a mesh, all at once, and what its classes do to them alike.
#pragma once

#include "gemat3d.h"
#include "host/db/imp_object.h"

#include <array>
#include <functional>
#include <vector>

namespace db {

// The bits of group 70 of a POLYLINE and of a VERTEX. Source: the DXF reference.
namespace polyline_flag {
inline constexpr int closed = 1; // of a mesh: its rows
inline constexpr int curve_fit = 2;
inline constexpr int spline_fit = 4;
inline constexpr int in_space = 8;
inline constexpr int mesh = 16;
inline constexpr int columns_closed = 32;
inline constexpr int polyface = 64;
inline constexpr int plinegen = 128;
} // namespace polyline_flag

namespace vertex_flag {
inline constexpr int fitted = 1; // made for a fitted curve
inline constexpr int tangent = 2;
inline constexpr int spline = 8; // made for a spline
inline constexpr int frame = 16; // a control point of the spline
inline constexpr int in_space = 32;
inline constexpr int mesh = 64;
inline constexpr int polyface = 128; // without `mesh`: a face
} // namespace vertex_flag

// What a VERTEX says; widths below nought where it says none.
struct vertex_data {
    AcGePoint3d position;
    int flags = 0;
    double bulge = 0.0;
    double start_width = -1.0;
    double end_width = -1.0;
    std::array<int, 4> corners{}; // of a face

    bool is_face() const {
        return (flags & (vertex_flag::polyface | vertex_flag::mesh)) == vertex_flag::polyface;
    }
};

// In their order; erased ones are left out.
std::vector<vertex_data> read_vertices(const AcDbImpObject& polyline);
// Those of them that a fitted one is drawn by: not the frame, unless there is nothing else.
std::vector<vertex_data> drawn_vertices(const AcDbImpObject& polyline);

// Takes a new vertex, which belongs to the polyline from now on, or when that is resident to its drawing.
Acad::ErrorStatus append_vertex(AcDbEntity& polyline, AcDbEntity* vertex, AcDbObjectId& id);
// eInvalidInput for a vertex of another one.
Acad::ErrorStatus check_vertex(const AcDbImpObject& polyline, AcDbObjectId id);
// Does something to the object of each vertex: to all, or when one can not be opened to none.
Acad::ErrorStatus for_vertices(const AcDbImpObject& polyline,
                               const std::function<void(AcDbImpObject& vertex)>& change);
// Gives a copy of a polyline copies of its vertices.
void copy_vertices(const AcDbImpObject& from, AcDbObject* copy);

// The class of a record of a type that several classes share.
AcRxClass* class_of_polyline(std::string_view record);
AcRxClass* class_of_vertex(std::string_view record);

} // namespace db
