// The vertices behind an old polyline or a mesh, all at once, and what its classes do to them alike.
#pragma once

#include "gemat3d.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/part_iterator.h"
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

// What the classes with vertices do to them alike: open one of a kind, go over all, and copy them with the
// whole.
#define VERTEX_MEMBERS(CLASS, PARENT, VERTEX)                                                                \
    Acad::ErrorStatus CLASS::openVertex(VERTEX*& vertex, AcDbObjectId id, AcDb::OpenMode mode,               \
                                        bool openErasedOne) const {                                          \
        vertex = nullptr;                                                                                    \
        const Acad::ErrorStatus status = db::check_vertex(imp(), id);                                        \
        return status == Acad::eOk ? acdbOpenObject(vertex, id, mode, openErasedOne) : status;               \
    }                                                                                                        \
    AcDbObjectIterator* CLASS::vertexIterator() const {                                                      \
        assertReadEnabled();                                                                                 \
        return db::iterate_parts(imp(), "VERTEX").release(); /* the caller's */                              \
    }                                                                                                        \
    AcRxObject* CLASS::clone() const {                                                                       \
        AcRxObject* const copy = PARENT::clone();                                                            \
        db::copy_vertices(imp(), static_cast<AcDbObject*>(copy));                                            \
        return copy;                                                                                         \
    }
// And take one at the end.
#define APPEND_VERTEX(CLASS, VERTEX)                                                                         \
    Acad::ErrorStatus CLASS::appendVertex(VERTEX* vertex) {                                                  \
        AcDbObjectId id;                                                                                     \
        return db::append_vertex(*this, vertex, id);                                                         \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::appendVertex(AcDbObjectId& id, VERTEX* vertex) {                                \
        return db::append_vertex(*this, vertex, id);                                                         \
    }
