#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/polyline_parts.h"

#include <array>
#include <cstdlib>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbVertex, AcDbEntity)
ACRX_DXF_DEFINE_MEMBERS(AcDb2dVertex, AcDbVertex, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, VERTEX,
                        "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDb3dPolylineVertex, AcDbVertex, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        VERTEX, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbPolygonMeshVertex, AcDbVertex, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        VERTEX, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbPolyFaceMeshVertex, AcDbVertex, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        VERTEX, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbFaceRecord, AcDbVertex, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, VERTEX,
                        "ObjectDBX Classes")

namespace {

constexpr int vertex_order[] = {10, 20, 30, 40, 41, 42, 70, 50, 91};
constexpr dxf::group_place flat_place{"AcDb2dVertex", vertex_order};
constexpr dxf::group_place space_place{"AcDb3dPolylineVertex", vertex_order};
constexpr dxf::group_place mesh_place{"AcDbPolygonMeshVertex", vertex_order};
constexpr dxf::group_place polyface_place{"AcDbPolyFaceMeshVertex", vertex_order};
constexpr int face_order[] = {10, 20, 30, 70, 71, 72, 73, 74};
constexpr dxf::group_place face_place{"AcDbFaceRecord", face_order};

AcDb::Vertex3dType space_type(const AcDbImpObject& object, const dxf::group_place& place) {
    const int flags = db::read_integer(object, place, 70);
    if ((flags & db::vertex_flag::frame) != 0)
        return AcDb::k3dControlVertex;
    return (flags & db::vertex_flag::spline) != 0 ? AcDb::k3dFitVertex : AcDb::k3dSimpleVertex;
}

} // namespace

AcDbVertex::AcDbVertex() = default;
AcDbVertex::~AcDbVertex() = default;

Acad::ErrorStatus AcDbVertex::subTransformBy(const AcGeMatrix3d& /*matrix*/) {
    return Acad::eNotApplicable;
}

// ---- of flat polylines

AcDb2dVertex::AcDb2dVertex() {
    imp().begin_as("0\nVERTEX\n100\nAcDbEntity\n8\n0\n100\nAcDbVertex\n100\nAcDb2dVertex\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n40\n0.0\n41\n0.0\n42\n0.0\n70\n0\n");
}

AcDb2dVertex::AcDb2dVertex(const AcGePoint3d& position, double bulge, double startWidth, double endWidth,
                           double tangent, Adesk::Int32 vertexIdentifier)
    : AcDb2dVertex() {
    setPosition(position);
    setBulge(bulge);
    setStartWidth(startWidth);
    setEndWidth(endWidth);
    if (tangent != 0.0)
        setTangent(tangent);
    if (vertexIdentifier != 0)
        db::write_integer(imp(), flat_place, 91, vertexIdentifier);
}

AcDb2dVertex::~AcDb2dVertex() = default;

AcDb::Vertex2dType AcDb2dVertex::vertexType() const {
    assertReadEnabled();
    const int flags = db::read_integer(imp(), flat_place, 70);
    if ((flags & db::vertex_flag::frame) != 0)
        return AcDb::k2dSplineCtlVertex;
    if ((flags & db::vertex_flag::spline) != 0)
        return AcDb::k2dSplineFitVertex;
    return (flags & db::vertex_flag::fitted) != 0 ? AcDb::k2dCurveFitVertex : AcDb::k2dVertex;
}

AcGePoint3d AcDb2dVertex::position() const {
    assertReadEnabled();
    return db::read_point(imp(), flat_place, 10);
}

Acad::ErrorStatus AcDb2dVertex::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), flat_place, 10, position);
    return Acad::eOk;
}

double AcDb2dVertex::startWidth() const {
    assertReadEnabled();
    return db::read_real(imp(), flat_place, 40);
}

Acad::ErrorStatus AcDb2dVertex::setStartWidth(double width) {
    assertWriteEnabled();
    if (!(width >= 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), flat_place, 40, width);
    return Acad::eOk;
}

double AcDb2dVertex::endWidth() const {
    assertReadEnabled();
    return db::read_real(imp(), flat_place, 41);
}

Acad::ErrorStatus AcDb2dVertex::setEndWidth(double width) {
    assertWriteEnabled();
    if (!(width >= 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), flat_place, 41, width);
    return Acad::eOk;
}

double AcDb2dVertex::bulge() const {
    assertReadEnabled();
    return db::read_real(imp(), flat_place, 42);
}

Acad::ErrorStatus AcDb2dVertex::setBulge(double bulge) {
    assertWriteEnabled();
    db::write_real(imp(), flat_place, 42, bulge);
    return Acad::eOk;
}

Adesk::Boolean AcDb2dVertex::isTangentUsed() const {
    assertReadEnabled();
    return (db::read_integer(imp(), flat_place, 70) & db::vertex_flag::tangent) != 0;
}

double AcDb2dVertex::tangent() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), flat_place, 50));
}

Acad::ErrorStatus AcDb2dVertex::setTangent(double angle) {
    assertWriteEnabled();
    if (tangent() != angle)
        db::write_real(imp(), flat_place, 50, db::degrees(angle));
    db::write_integer(imp(), flat_place, 70,
                      db::read_integer(imp(), flat_place, 70) | db::vertex_flag::tangent);
    return Acad::eOk;
}

// ---- of polylines in space, and of meshes

AcDb3dPolylineVertex::AcDb3dPolylineVertex() {
    imp().begin_as("0\nVERTEX\n100\nAcDbEntity\n8\n0\n100\nAcDbVertex\n100\nAcDb3dPolylineVertex\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n70\n32\n");
}

AcDb3dPolylineVertex::AcDb3dPolylineVertex(const AcGePoint3d& position) : AcDb3dPolylineVertex() {
    setPosition(position);
}

AcDb3dPolylineVertex::~AcDb3dPolylineVertex() = default;

AcDb::Vertex3dType AcDb3dPolylineVertex::vertexType() const {
    assertReadEnabled();
    return space_type(imp(), space_place);
}

AcGePoint3d AcDb3dPolylineVertex::position() const {
    assertReadEnabled();
    return db::read_point(imp(), space_place, 10);
}

Acad::ErrorStatus AcDb3dPolylineVertex::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), space_place, 10, position);
    return Acad::eOk;
}

AcDbPolygonMeshVertex::AcDbPolygonMeshVertex() {
    imp().begin_as("0\nVERTEX\n100\nAcDbEntity\n8\n0\n100\nAcDbVertex\n100\nAcDbPolygonMeshVertex\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n70\n64\n");
}

AcDbPolygonMeshVertex::AcDbPolygonMeshVertex(const AcGePoint3d& position) : AcDbPolygonMeshVertex() {
    setPosition(position);
}

AcDbPolygonMeshVertex::~AcDbPolygonMeshVertex() = default;

AcDb::Vertex3dType AcDbPolygonMeshVertex::vertexType() const {
    assertReadEnabled();
    return space_type(imp(), mesh_place);
}

AcGePoint3d AcDbPolygonMeshVertex::position() const {
    assertReadEnabled();
    return db::read_point(imp(), mesh_place, 10);
}

Acad::ErrorStatus AcDbPolygonMeshVertex::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), mesh_place, 10, position);
    return Acad::eOk;
}

AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex() {
    imp().begin_as("0\nVERTEX\n100\nAcDbEntity\n8\n0\n100\nAcDbVertex\n100\nAcDbPolyFaceMeshVertex\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n70\n192\n");
}

AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex(const AcGePoint3d& position) : AcDbPolyFaceMeshVertex() {
    setPosition(position);
}

AcDbPolyFaceMeshVertex::~AcDbPolyFaceMeshVertex() = default;

AcGePoint3d AcDbPolyFaceMeshVertex::position() const {
    assertReadEnabled();
    return db::read_point(imp(), polyface_place, 10);
}

Acad::ErrorStatus AcDbPolyFaceMeshVertex::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), polyface_place, 10, position);
    return Acad::eOk;
}

// ---- faces

AcDbFaceRecord::AcDbFaceRecord() {
    imp().begin_as("0\nVERTEX\n100\nAcDbEntity\n8\n0\n100\nAcDbFaceRecord\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n70\n128\n");
}

AcDbFaceRecord::AcDbFaceRecord(Adesk::Int16 vtx0, Adesk::Int16 vtx1, Adesk::Int16 vtx2, Adesk::Int16 vtx3)
    : AcDbFaceRecord() {
    setVertexAt(0, vtx0);
    setVertexAt(1, vtx1);
    setVertexAt(2, vtx2);
    setVertexAt(3, vtx3);
}

AcDbFaceRecord::~AcDbFaceRecord() = default;

Acad::ErrorStatus AcDbFaceRecord::getVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16& vtxIdx) const {
    assertReadEnabled();
    if (faceIdx > 3)
        return Acad::eInvalidIndex;
    vtxIdx = static_cast<Adesk::Int16>(db::read_integer(imp(), face_place, 71 + faceIdx));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFaceRecord::setVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16 vtxIdx) {
    assertWriteEnabled();
    if (faceIdx > 3)
        return Acad::eInvalidIndex;
    db::write_integer(imp(), face_place, 71 + faceIdx, vtxIdx);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFaceRecord::isEdgeVisibleAt(Adesk::UInt16 faceIndex, Adesk::Boolean& visible) const {
    Adesk::Int16 vertex = 0;
    const Acad::ErrorStatus status = getVertexAt(faceIndex, vertex);
    if (status == Acad::eOk)
        visible = vertex > 0;
    return status;
}

Acad::ErrorStatus AcDbFaceRecord::makeEdgeVisibleAt(Adesk::UInt16 faceIndex) {
    Adesk::Int16 vertex = 0;
    const Acad::ErrorStatus status = getVertexAt(faceIndex, vertex);
    return status == Acad::eOk ? setVertexAt(faceIndex, static_cast<Adesk::Int16>(std::abs(vertex))) : status;
}

Acad::ErrorStatus AcDbFaceRecord::makeEdgeInvisibleAt(Adesk::UInt16 faceIndex) {
    Adesk::Int16 vertex = 0;
    const Acad::ErrorStatus status = getVertexAt(faceIndex, vertex);
    return status == Acad::eOk ? setVertexAt(faceIndex, static_cast<Adesk::Int16>(-std::abs(vertex)))
                               : status;
}
