#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/entities/polyline_parts.h"
#include "host/db/entities/vertex_fields.h"

namespace flag = db::polyline_flag;

namespace {

constexpr db::field polyline_3d_fields[] = {db::number(66, "1"), db::point(10, "0.0"), db::number(70, "8"),
                                            db::number(75)};
constexpr auto polyline_3d_place = db::section_of<polyline_3d_fields>("AcDb3dPolyline");

constexpr int quadratic = 5;
constexpr int cubic = 6;

// With the first one again at the end of a closed one.
std::vector<AcGePoint3d> read_points(const AcDbImpObject& object) {
    std::vector<AcGePoint3d> points;
    for (const db::vertex_data& vertex : db::drawn_vertices(object))
        points.push_back(vertex.position);
    if (points.size() > 1 && (db::read_integer(object, polyline_3d_place, 70) & flag::closed) != 0)
        points.push_back(points.front());
    return points;
}

} // namespace

ENTITY_CLASS(AcDb3dPolyline, AcDbCurve, POLYLINE, polyline_3d_place)

AcDb3dPolyline::AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices, Adesk::Boolean closed)
    : AcDb3dPolyline() {
    db::write_bit(imp(), polyline_3d_place, 70, flag::closed, closed);
    if (type != AcDb::k3dSimplePoly) {
        db::write_bit(imp(), polyline_3d_place, 70, flag::spline_fit, true);
        db::write_integer(imp(), polyline_3d_place, 75, type == AcDb::k3dQuadSplinePoly ? quadratic : cubic);
    }
    for (const AcGePoint3d& point : vertices)
        appendVertex(new AcDb3dPolylineVertex(point));
}

AcDb::Poly3dType AcDb3dPolyline::polyType() const {
    assertReadEnabled();
    if ((db::read_integer(imp(), polyline_3d_place, 70) & flag::spline_fit) == 0)
        return AcDb::k3dSimplePoly;
    return db::read_integer(imp(), polyline_3d_place, 75) == quadratic ? AcDb::k3dQuadSplinePoly
                                                                       : AcDb::k3dCubicSplinePoly;
}

BIT_GETTER(AcDb3dPolyline, isClosed, polyline_3d_place, 70, flag::closed)
BIT_SWITCHES(AcDb3dPolyline, makeClosed, makeOpen, polyline_3d_place, 70, flag::closed)

Acad::ErrorStatus AcDb3dPolyline::length(double& length) const {
    double end = 0.0;
    const Acad::ErrorStatus status = getEndParam(end);
    return status == Acad::eOk ? getDistAtParam(end, length) : status;
}

VERTEX_MEMBERS(AcDb3dPolyline, AcDbCurve, AcDb3dPolylineVertex)
APPEND_VERTEX(AcDb3dPolyline, AcDb3dPolylineVertex)

bool AcDb3dPolyline::subMakePieces(AcDbImpCurve& pieces) const {
    pieces.reads_parts = true;
    const std::vector<AcGePoint3d> points = read_points(imp());
    for (std::size_t i = 0; i + 1 < points.size(); ++i)
        pieces.add_line(points[i], points[i + 1], static_cast<double>(i), static_cast<double>(i + 1));
    return true;
}

Adesk::Boolean AcDb3dPolyline::subWorldDraw(AcGiWorldDraw* draw) {
    const std::vector<AcGePoint3d> points = read_points(imp());
    draw->geometry().polyline(static_cast<Adesk::UInt32>(points.size()), points.data());
    return true;
}

Acad::ErrorStatus AcDb3dPolyline::subTransformBy(const AcGeMatrix3d& matrix) {
    return db::for_vertices(imp(), [&](AcDbImpObject& vertex) {
        db::write_point(vertex, db::space_vertex, 10, matrix * db::read_point(vertex, db::space_vertex, 10));
    });
}

Acad::ErrorStatus AcDb3dPolyline::subExplode(AcDbVoidPtrArray& parts) const {
    const std::vector<AcGePoint3d> points = read_points(imp());
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        auto* const line = new AcDbLine(points[i], points[i + 1]);
        line->setPropertiesFrom(this);
        parts.append(line);
    }
    return Acad::eOk;
}
