#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/part_iterator.h"
#include "host/db/entities/polyline_parts.h"

#include <algorithm>
#include <cstdlib>

ACRX_DXF_DEFINE_MEMBERS(AcDbPolygonMesh, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, POLYLINE,
                        "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbPolyFaceMesh, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, POLYLINE,
                        "ObjectDBX Classes")

namespace flag = db::polyline_flag;

namespace {

constexpr int meshes_order[] = {66, 10, 20, 30, 70, 71, 72, 73, 74, 75};
constexpr dxf::group_place mesh_place{"AcDbPolygonMesh", meshes_order};
constexpr dxf::group_place polyface_place{"AcDbPolyFaceMesh", meshes_order};
constexpr int vertex_order[] = {10, 20, 30, 70};
constexpr dxf::group_place mesh_vertex_place{"AcDbPolygonMeshVertex", vertex_order};
constexpr dxf::group_place polyface_vertex_place{"AcDbPolyFaceMeshVertex", vertex_order};

Adesk::Int16 read_short(const AcDbImpObject& object, const dxf::group_place& place, int code) {
    return static_cast<Adesk::Int16>(std::clamp(db::read_integer(object, place, code), -32768, 32767));
}

void set_flag(AcDbImpObject& object, int bit, bool set) {
    const int flags = db::read_integer(object, mesh_place, 70);
    db::write_integer(object, mesh_place, 70, set ? flags | bit : flags & ~bit);
}

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
        return static_cast<std::size_t>(std::max<Adesk::Int16>(0, read_short(object, mesh_place, code)));
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

AcDbPolygonMesh::AcDbPolygonMesh() {
    imp().begin_as("0\nPOLYLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbPolygonMesh\n"
                   "66\n1\n10\n0.0\n20\n0.0\n30\n0.0\n70\n16\n71\n0\n72\n0\n");
}

AcDbPolygonMesh::AcDbPolygonMesh(AcDb::PolyMeshType type, Adesk::Int16 mSize, Adesk::Int16 nSize,
                                 const AcGePoint3dArray& vertices, Adesk::Boolean mClosed,
                                 Adesk::Boolean nClosed)
    : AcDbPolygonMesh() {
    setMSize(mSize);
    setNSize(nSize);
    set_flag(imp(), flag::closed, mClosed);
    set_flag(imp(), flag::columns_closed, nClosed);
    if (type != AcDb::kSimpleMesh) {
        set_flag(imp(), flag::spline_fit, true);
        db::write_integer(imp(), mesh_place, 75, type);
    }
    for (const AcGePoint3d& point : vertices)
        appendVertex(new AcDbPolygonMeshVertex(point));
}

AcDbPolygonMesh::~AcDbPolygonMesh() = default;

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

Adesk::Int16 AcDbPolygonMesh::mSize() const {
    assertReadEnabled();
    return read_short(imp(), mesh_place, 71);
}

Acad::ErrorStatus AcDbPolygonMesh::setMSize(Adesk::Int16 size) {
    assertWriteEnabled();
    if (size < 0)
        return Acad::eInvalidInput;
    db::write_integer(imp(), mesh_place, 71, size);
    return Acad::eOk;
}

Adesk::Int16 AcDbPolygonMesh::nSize() const {
    assertReadEnabled();
    return read_short(imp(), mesh_place, 72);
}

Acad::ErrorStatus AcDbPolygonMesh::setNSize(Adesk::Int16 size) {
    assertWriteEnabled();
    if (size < 0)
        return Acad::eInvalidInput;
    db::write_integer(imp(), mesh_place, 72, size);
    return Acad::eOk;
}

Adesk::Int16 AcDbPolygonMesh::mSurfaceDensity() const {
    assertReadEnabled();
    return read_short(imp(), mesh_place, 73);
}

Adesk::Int16 AcDbPolygonMesh::nSurfaceDensity() const {
    assertReadEnabled();
    return read_short(imp(), mesh_place, 74);
}

bool AcDbPolygonMesh::isMClosed() const {
    assertReadEnabled();
    return (db::read_integer(imp(), mesh_place, 70) & flag::closed) != 0;
}

Acad::ErrorStatus AcDbPolygonMesh::makeMClosed() {
    assertWriteEnabled();
    set_flag(imp(), flag::closed, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::makeMOpen() {
    assertWriteEnabled();
    set_flag(imp(), flag::closed, false);
    return Acad::eOk;
}

bool AcDbPolygonMesh::isNClosed() const {
    assertReadEnabled();
    return (db::read_integer(imp(), mesh_place, 70) & flag::columns_closed) != 0;
}

Acad::ErrorStatus AcDbPolygonMesh::makeNClosed() {
    assertWriteEnabled();
    set_flag(imp(), flag::columns_closed, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::makeNOpen() {
    assertWriteEnabled();
    set_flag(imp(), flag::columns_closed, false);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolygonMesh::appendVertex(AcDbPolygonMeshVertex* vertex) {
    AcDbObjectId id;
    return db::append_vertex(*this, vertex, id);
}

Acad::ErrorStatus AcDbPolygonMesh::appendVertex(AcDbObjectId& id, AcDbPolygonMeshVertex* vertex) {
    return db::append_vertex(*this, vertex, id);
}

Acad::ErrorStatus AcDbPolygonMesh::openVertex(AcDbPolygonMeshVertex*& vertex, AcDbObjectId id,
                                              AcDb::OpenMode mode, bool openErasedOne) const {
    vertex = nullptr;
    const Acad::ErrorStatus status = db::check_vertex(imp(), id);
    return status == Acad::eOk ? acdbOpenObject(vertex, id, mode, openErasedOne) : status;
}

AcDbObjectIterator* AcDbPolygonMesh::vertexIterator() const {
    assertReadEnabled();
    return db::iterate_parts(imp(), "VERTEX").release(); // the caller's
}

AcRxObject* AcDbPolygonMesh::clone() const {
    AcRxObject* const copy = AcDbEntity::clone();
    db::copy_vertices(imp(), static_cast<AcDbObject*>(copy));
    return copy;
}

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
        db::write_point(vertex, mesh_vertex_place, 10,
                        matrix * db::read_point(vertex, mesh_vertex_place, 10));
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

AcDbPolyFaceMesh::AcDbPolyFaceMesh() {
    imp().begin_as("0\nPOLYLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbPolyFaceMesh\n"
                   "66\n1\n10\n0.0\n20\n0.0\n30\n0.0\n70\n64\n71\n0\n72\n0\n");
}

AcDbPolyFaceMesh::~AcDbPolyFaceMesh() = default;

Adesk::Int16 AcDbPolyFaceMesh::numVertices() const {
    assertReadEnabled();
    return read_short(imp(), polyface_place, 71);
}

Adesk::Int16 AcDbPolyFaceMesh::numFaces() const {
    assertReadEnabled();
    return read_short(imp(), polyface_place, 72);
}

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

Acad::ErrorStatus AcDbPolyFaceMesh::openVertex(AcDbVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                               bool openErasedOne) const {
    vertex = nullptr;
    const Acad::ErrorStatus status = db::check_vertex(imp(), id);
    return status == Acad::eOk ? acdbOpenObject(vertex, id, mode, openErasedOne) : status;
}

AcDbObjectIterator* AcDbPolyFaceMesh::vertexIterator() const {
    assertReadEnabled();
    return db::iterate_parts(imp(), "VERTEX").release(); // the caller's
}

AcRxObject* AcDbPolyFaceMesh::clone() const {
    AcRxObject* const copy = AcDbEntity::clone();
    db::copy_vertices(imp(), static_cast<AcDbObject*>(copy));
    return copy;
}

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
        const int flags = db::read_integer(vertex, polyface_vertex_place, 70);
        if ((flags & db::vertex_flag::mesh) != 0) // faces have no place of their own
            db::write_point(vertex, polyface_vertex_place, 10,
                            matrix * db::read_point(vertex, polyface_vertex_place, 10));
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
