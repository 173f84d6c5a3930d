// The vertices behind an old polyline or a mesh, all at once, and what its classes do to them alike.
#pragma once

#include "gemat3d.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/polyline_flags.h"

#include <array>
#include <functional>
#include <vector>

namespace db {

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

} // namespace db
