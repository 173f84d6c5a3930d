#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/polyline_parts.h"
#include "host/db/entities/vertex_fields.h"

#include <array>
#include <cstdlib>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbVertex, AcDbEntity)

namespace {

constexpr auto vertex_marker = db::marker("AcDbVertex");
constexpr db::field face_fields[] = {db::point(10, "0.0"), db::number(70, "128"), db::number(71),
                                     db::number(72),       db::number(73),        db::number(74)};
constexpr auto face_place = db::section_of<face_fields>("AcDbFaceRecord");

AcDb::Vertex3dType space_type(const AcDbImpObject& object, const dxf::group_place& place) {
    const int flags = db::read_integer(object, place, 70);
    if ((flags & db::vertex_flag::frame) != 0)
        return AcDb::k3dControlVertex;
    return (flags & db::vertex_flag::spline) != 0 ? AcDb::k3dFitVertex : AcDb::k3dSimpleVertex;
}

} // namespace

AcDbVertex::AcDbVertex() = default;

Acad::ErrorStatus AcDbVertex::subTransformBy(const AcGeMatrix3d& /*matrix*/) {
    return Acad::eNotApplicable;
}

// ---- of flat polylines

ENTITY_CLASS(AcDb2dVertex, AcDbVertex, VERTEX, vertex_marker, db::flat_vertex)

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
        db::write_integer(imp(), db::flat_vertex, 91, vertexIdentifier);
}

AcDb::Vertex2dType AcDb2dVertex::vertexType() const {
    assertReadEnabled();
    const int flags = db::read_integer(imp(), db::flat_vertex, 70);
    if ((flags & db::vertex_flag::frame) != 0)
        return AcDb::k2dSplineCtlVertex;
    if ((flags & db::vertex_flag::spline) != 0)
        return AcDb::k2dSplineFitVertex;
    return (flags & db::vertex_flag::fitted) != 0 ? AcDb::k2dCurveFitVertex : AcDb::k2dVertex;
}

FIELD_MEMBERS(AcDb2dVertex, position, setPosition, db::flat_vertex, 10)
FIELD_MEMBERS(AcDb2dVertex, startWidth, setStartWidth, db::flat_vertex, 40)
FIELD_MEMBERS(AcDb2dVertex, endWidth, setEndWidth, db::flat_vertex, 41)
FIELD_MEMBERS(AcDb2dVertex, bulge, setBulge, db::flat_vertex, 42)
BIT_GETTER(AcDb2dVertex, isTangentUsed, db::flat_vertex, 70, db::vertex_flag::tangent)
FIELD_GETTER(AcDb2dVertex, tangent, db::flat_vertex, 50)

Acad::ErrorStatus AcDb2dVertex::setTangent(double angle) {
    assertWriteEnabled();
    if (tangent() != angle)
        db::write_real(imp(), db::flat_vertex, 50, db::degrees(angle));
    db::write_integer(imp(), db::flat_vertex, 70,
                      db::read_integer(imp(), db::flat_vertex, 70) | db::vertex_flag::tangent);
    return Acad::eOk;
}

// ---- of polylines in space, and of meshes

ENTITY_CLASS(AcDb3dPolylineVertex, AcDbVertex, VERTEX, vertex_marker, db::space_vertex)

AcDb3dPolylineVertex::AcDb3dPolylineVertex(const AcGePoint3d& position) : AcDb3dPolylineVertex() {
    setPosition(position);
}

VALUE_GETTER(AcDb3dPolylineVertex, vertexType, space_type(imp(), db::space_vertex))
FIELD_MEMBERS(AcDb3dPolylineVertex, position, setPosition, db::space_vertex, 10)

ENTITY_CLASS(AcDbPolygonMeshVertex, AcDbVertex, VERTEX, vertex_marker, db::mesh_vertex)

AcDbPolygonMeshVertex::AcDbPolygonMeshVertex(const AcGePoint3d& position) : AcDbPolygonMeshVertex() {
    setPosition(position);
}

VALUE_GETTER(AcDbPolygonMeshVertex, vertexType, space_type(imp(), db::mesh_vertex))
FIELD_MEMBERS(AcDbPolygonMeshVertex, position, setPosition, db::mesh_vertex, 10)

ENTITY_CLASS(AcDbPolyFaceMeshVertex, AcDbVertex, VERTEX, vertex_marker, db::polyface_vertex)

AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex(const AcGePoint3d& position) : AcDbPolyFaceMeshVertex() {
    setPosition(position);
}

FIELD_MEMBERS(AcDbPolyFaceMeshVertex, position, setPosition, db::polyface_vertex, 10)

// ---- faces

ENTITY_CLASS(AcDbFaceRecord, AcDbVertex, VERTEX, face_place)

AcDbFaceRecord::AcDbFaceRecord(Adesk::Int16 vtx0, Adesk::Int16 vtx1, Adesk::Int16 vtx2, Adesk::Int16 vtx3)
    : AcDbFaceRecord() {
    setVertexAt(0, vtx0);
    setVertexAt(1, vtx1);
    setVertexAt(2, vtx2);
    setVertexAt(3, vtx3);
}

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
