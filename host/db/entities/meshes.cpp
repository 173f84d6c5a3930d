#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/polyline_parts.h"
#include "host/db/entities/vertex_fields.h"

#include <algorithm>
#include <cstdlib>

namespace flag = db::polyline_flag;

namespace {

constexpr db::field mesh_fields[] = {
    db::number(66, "1"),
    db::point(10, "0.0"),
    db::number(70, "16"),
    db::number(71, "0").not_negative(), // rows and columns
    db::number(72, "0").not_negative(),
    db::number(73), // the same of a smooth one
    db::number(74),
    db::number(75),
};
constexpr auto mesh_place = db::section_of<mesh_fields>("AcDbPolygonMesh");
constexpr db::field polyface_fields[] = {db::number(66, "1"), db::point(10, "0.0"), db::number(70, "64"),
                                         db::number(71, "0"), db::number(72, "0")};
constexpr auto polyface_place = db::section_of<polyface_fields>("AcDbPolyFaceMesh");

// What a mesh draws: as many whole rows as there are vertices for.
struct net {
    std::size_t rows = 0;
    std::size_t columns = 0;
    bool rows_closed = false;
    bool columns_closed = false;
    std::vector<AcGePoint3d> points;

    const AcGePoint3d& at(std::size_t row, std::size_t column) const {
        return points[row % rows * columns + column % columns];
    }
};

net read_net(const AcDbImpObject& object) {
    const int flags = db::read_integer(object, mesh_place, 70);
    net made;
    int wanted = db::vertex_flag::spline;
    const auto size = [&](int code) {
        return static_cast<std::size_t>(std::clamp(db::read_integer(object, mesh_place, code), 0, 32767));
    };
    if ((flags & flag::spline_fit) == 0)
        wanted = 0;
    made.rows = size(wanted != 0 ? 73 : 71);
    made.columns = size(wanted != 0 ? 74 : 72);
    for (const db::vertex_data& vertex : db::read_vertices(object))
        if (wanted == 0 || (vertex.flags & wanted) != 0)
            made.points.push_back(vertex.position);
    if (made.columns == 0)
        return {};
    made.rows = std::min(made.rows, made.points.size() / made.columns);
    made.rows_closed = (flags & flag::closed) != 0 && made.rows > 1;
    made.columns_closed = (flags & flag::columns_closed) != 0 && made.columns > 1;
    return made;
}

// The corners of a face that there are, with the visibility of the edges behind them.
struct face {
    std::vector<AcGePoint3d> corners;
    std::vector<bool> visible;
};

std::vector<face> read_faces(const AcDbImpObject& object) {
    std::vector<AcGePoint3d> points;
    std::vector<db::vertex_data> records;
    for (const db::vertex_data& vertex : db::read_vertices(object)) {
        if (vertex.is_face())
            records.push_back(vertex);
        else
            points.push_back(vertex.position);
    }
    std::vector<face> faces;
    for (const db::vertex_data& record : records) {
        face made;
        for (const int corner : record.corners) {
            const auto index = static_cast<std::size_t>(std::abs(static_cast<long>(corner)));
            if (index == 0 || index > points.size())
                continue;
            made.corners.push_back(points[index - 1]);
            made.visible.push_back(corner > 0);
        }
        if (!made.corners.empty())
            faces.push_back(std::move(made));
    }
    return faces;
}

} // namespace

// ---- rows and columns

ENTITY_CLASS(AcDbPolygonMesh, AcDbEntity, POLYLINE, mesh_place)

AcDbPolygonMesh::AcDbPolygonMesh(AcDb::PolyMeshType type, Adesk::Int16 mSize, Adesk::Int16 nSize,
                                 const AcGePoint3dArray& vertices, Adesk::Boolean mClosed,
                                 Adesk::Boolean nClosed)
    : AcDbPolygonMesh() {
    setMSize(mSize);
    setNSize(nSize);
    db::write_bit(imp(), mesh_place, 70, flag::closed, mClosed);
    db::write_bit(imp(), mesh_place, 70, flag::columns_closed, nClosed);
    if (type != AcDb::kSimpleMesh) {
        db::write_bit(imp(), mesh_place, 70, flag::spline_fit, true);
        db::write_integer(imp(), mesh_place, 75, type);
    }
    for (const AcGePoint3d& point : vertices)
        appendVertex(new AcDbPolygonMeshVertex(point));
}

AcDb::PolyMeshType AcDbPolygonMesh::polyMeshType() const {
    assertReadEnabled();
    if ((db::read_integer(imp(), mesh_place, 70) & flag::spline_fit) == 0)
        return AcDb::kSimpleMesh;
    switch (db::read_integer(imp(), mesh_place, 75)) {
    case AcDb::kQuadSurfaceMesh:
        return AcDb::kQuadSurfaceMesh;
    case AcDb::kBezierSurfaceMesh:
        return AcDb::kBezierSurfaceMesh;
    default:
        return AcDb::kCubicSurfaceMesh;
    }
}

FIELD_MEMBERS(AcDbPolygonMesh, mSize, setMSize, mesh_place, 71)
FIELD_MEMBERS(AcDbPolygonMesh, nSize, setNSize, mesh_place, 72)
FIELD_GETTER(AcDbPolygonMesh, mSurfaceDensity, mesh_place, 73)
FIELD_GETTER(AcDbPolygonMesh, nSurfaceDensity, mesh_place, 74)
BIT_GETTER(AcDbPolygonMesh, isMClosed, mesh_place, 70, flag::closed)
BIT_SWITCHES(AcDbPolygonMesh, makeMClosed, makeMOpen, mesh_place, 70, flag::closed)
BIT_GETTER(AcDbPolygonMesh, isNClosed, mesh_place, 70, flag::columns_closed)
BIT_SWITCHES(AcDbPolygonMesh, makeNClosed, makeNOpen, mesh_place, 70, flag::columns_closed)

VERTEX_MEMBERS(AcDbPolygonMesh, AcDbEntity, AcDbPolygonMeshVertex)
APPEND_VERTEX(AcDbPolygonMesh, AcDbPolygonMeshVertex)

Adesk::Boolean AcDbPolygonMesh::subWorldDraw(AcGiWorldDraw* draw) {
    const net mesh = read_net(imp());
    const std::size_t rows = mesh.rows + (mesh.rows_closed ? 1 : 0);
    const std::size_t columns = mesh.columns + (mesh.columns_closed ? 1 : 0);
    if (mesh.rows == 0)
        return true;
    std::vector<AcGePoint3d> points;
    points.reserve(rows * columns);
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            points.push_back(mesh.at(row, column));
    draw->geometry().mesh(static_cast<Adesk::UInt32>(rows), static_cast<Adesk::UInt32>(columns),
                          points.data());
    return true;
}

Acad::ErrorStatus AcDbPolygonMesh::subTransformBy(const AcGeMatrix3d& matrix) {
    return db::for_vertices(imp(), [&](AcDbImpObject& vertex) {
        db::write_point(vertex, db::mesh_vertex, 10, matrix * db::read_point(vertex, db::mesh_vertex, 10));
    });
}

Acad::ErrorStatus AcDbPolygonMesh::subExplode(AcDbVoidPtrArray& parts) const {
    const net mesh = read_net(imp());
    const std::size_t rows = mesh.rows_closed ? mesh.rows : std::max<std::size_t>(mesh.rows, 1) - 1;
    const std::size_t columns =
        mesh.columns_closed ? mesh.columns : std::max<std::size_t>(mesh.columns, 1) - 1;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            auto* const part = new AcDbFace(mesh.at(row, column), mesh.at(row, column + 1),
                                            mesh.at(row + 1, column + 1), mesh.at(row + 1, column));
            part->setPropertiesFrom(this);
            parts.append(part);
        }
    }
    return Acad::eOk;
}

// ---- faces

ENTITY_CLASS(AcDbPolyFaceMesh, AcDbEntity, POLYLINE, polyface_place)

FIELD_GETTER(AcDbPolyFaceMesh, numVertices, polyface_place, 71)
FIELD_GETTER(AcDbPolyFaceMesh, numFaces, polyface_place, 72)

Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbPolyFaceMeshVertex* vertex) {
    AcDbObjectId id;
    return appendVertex(id, vertex);
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbObjectId& id, AcDbPolyFaceMeshVertex* vertex) {
    const Acad::ErrorStatus status = db::append_vertex(*this, vertex, id);
    if (status == Acad::eOk)
        db::write_integer(imp(), polyface_place, 71, numVertices() + 1);
    return status;
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbFaceRecord* face) {
    AcDbObjectId id;
    return appendFaceRecord(id, face);
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbObjectId& id, AcDbFaceRecord* face) {
    const Acad::ErrorStatus status = db::append_vertex(*this, face, id);
    if (status == Acad::eOk)
        db::write_integer(imp(), polyface_place, 72, numFaces() + 1);
    return status;
}

VERTEX_MEMBERS(AcDbPolyFaceMesh, AcDbEntity, AcDbVertex)

Adesk::Boolean AcDbPolyFaceMesh::subWorldDraw(AcGiWorldDraw* draw) {
    const bool all = draw->regenType() == kAcGiForExtents;
    for (const face& face : read_faces(imp())) {
        const std::size_t count = face.corners.size();
        if (count == 1)
            draw->geometry().polyline(1, face.corners.data());
        // Two corners are one edge.
        for (std::size_t i = 0; i < (count == 2 ? 1 : count); ++i) {
            const AcGePoint3d edge[] = {face.corners[i], face.corners[(i + 1) % count]};
            if (all || face.visible[i])
                draw->geometry().polyline(2, edge);
        }
    }
    return true;
}

Acad::ErrorStatus AcDbPolyFaceMesh::subTransformBy(const AcGeMatrix3d& matrix) {
    return db::for_vertices(imp(), [&](AcDbImpObject& vertex) {
        const int flags = db::read_integer(vertex, db::polyface_vertex, 70);
        if ((flags & db::vertex_flag::mesh) != 0) // faces have no place of their own
            db::write_point(vertex, db::polyface_vertex, 10,
                            matrix * db::read_point(vertex, db::polyface_vertex, 10));
    });
}

Acad::ErrorStatus AcDbPolyFaceMesh::subExplode(AcDbVoidPtrArray& parts) const {
    for (const face& face : read_faces(imp())) {
        const std::vector<AcGePoint3d>& at = face.corners;
        AcDbEntity* part = nullptr;
        if (at.size() == 1)
            part = new AcDbPoint(at[0]);
        else if (at.size() == 2)
            part = new AcDbLine(at[0], at[1]);
        else if (at.size() == 3)
            part = new AcDbFace(at[0], at[1], at[2], face.visible[0], face.visible[1], face.visible[2]);
        else
            part = new AcDbFace(at[0], at[1], at[2], at[3], face.visible[0], face.visible[1], face.visible[2],
                                face.visible[3]);
        part->setPropertiesFrom(this);
        parts.append(part);
    }
    return Acad::eOk;
}
