#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/flat_path.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/entities/polyline_parts.h"
#include "host/db/entities/vertex_fields.h"

#include <cmath>

namespace flag = db::polyline_flag;

namespace {

constexpr db::field polyline_2d_fields[] = {
    db::number(66, "1"),
    db::point(10, "0.0"),
    db::number(39),
    db::number(70, "0"),
    db::number(40).not_negative(),
    db::number(41).not_negative(),
    db::number(71),
    db::number(72),
    db::number(73),
    db::number(74),
    db::number(75),
    db::normal().direction(),
};
constexpr auto polyline_2d_place = db::section_of<polyline_2d_fields>("AcDb2dPolyline");

// Group 75 of a spline.
constexpr int quadratic = 5;
constexpr int cubic = 6;

int read_flags(const AcDbImpObject& object) {
    return db::read_integer(object, polyline_2d_place, 70);
}

// The old height above the plane, which files before R11 write, stands for one that is missing.
double read_elevation(const AcDbImpObject& object) {
    return db::read_real(object, polyline_2d_place, 30, db::read_real(object, polyline_2d_place, 38));
}

db::path_vertex path_vertex(const db::vertex_data& vertex, double start_width, double end_width) {
    return {{vertex.position.x, vertex.position.y},
            vertex.bulge,
            vertex.start_width < 0.0 ? start_width : vertex.start_width,
            vertex.end_width < 0.0 ? end_width : vertex.end_width};
}

db::flat_path read_path(const AcDbImpObject& object) {
    db::flat_path path;
    const double start_width = db::read_real(object, polyline_2d_place, 40);
    const double end_width = db::read_real(object, polyline_2d_place, 41);
    for (const db::vertex_data& vertex : db::drawn_vertices(object))
        path.vertices.push_back(path_vertex(vertex, start_width, end_width));
    path.closed = (read_flags(object) & flag::closed) != 0;
    path.elevation = read_elevation(object);
    path.normal = db::read_normal(object, polyline_2d_place);
    path.thickness = db::read_real(object, polyline_2d_place, 39);
    return path;
}

} // namespace

ENTITY_CLASS(AcDb2dPolyline, AcDbCurve, POLYLINE, polyline_2d_place)

AcDb2dPolyline::AcDb2dPolyline(AcDb::Poly2dType type, const AcGePoint3dArray& vertices, double elevation,
                               Adesk::Boolean closed, double dfltStartWidth, double dfltEndWidth,
                               const AcGeDoubleArray* bulges)
    : AcDb2dPolyline() {
    setElevation(elevation);
    setDefaultStartWidth(dfltStartWidth);
    setDefaultEndWidth(dfltEndWidth);
    db::write_bit(imp(), polyline_2d_place, 70, flag::closed, closed);
    db::write_bit(imp(), polyline_2d_place, 70, flag::curve_fit, type == AcDb::k2dFitCurvePoly);
    db::write_bit(imp(), polyline_2d_place, 70, flag::spline_fit,
                  type == AcDb::k2dQuadSplinePoly || type == AcDb::k2dCubicSplinePoly);
    if (type == AcDb::k2dQuadSplinePoly || type == AcDb::k2dCubicSplinePoly)
        db::write_integer(imp(), polyline_2d_place, 75, type == AcDb::k2dQuadSplinePoly ? quadratic : cubic);
    for (int i = 0; i < vertices.length(); ++i) {
        const double bulge = bulges != nullptr && i < bulges->length() ? (*bulges)[i] : 0.0;
        appendVertex(
            new AcDb2dVertex({vertices[i].x, vertices[i].y, elevation}, bulge, dfltStartWidth, dfltEndWidth));
    }
}

AcDb::Poly2dType AcDb2dPolyline::polyType() const {
    assertReadEnabled();
    const int flags = read_flags(imp());
    if ((flags & flag::spline_fit) != 0)
        return db::read_integer(imp(), polyline_2d_place, 75) == quadratic ? AcDb::k2dQuadSplinePoly
                                                                           : AcDb::k2dCubicSplinePoly;
    return (flags & flag::curve_fit) != 0 ? AcDb::k2dFitCurvePoly : AcDb::k2dSimplePoly;
}

BIT_GETTER(AcDb2dPolyline, isClosed, polyline_2d_place, 70, flag::closed)
BIT_SWITCHES(AcDb2dPolyline, makeClosed, makeOpen, polyline_2d_place, 70, flag::closed)
FIELD_MEMBERS(AcDb2dPolyline, defaultStartWidth, setDefaultStartWidth, polyline_2d_place, 40)
FIELD_MEMBERS(AcDb2dPolyline, defaultEndWidth, setDefaultEndWidth, polyline_2d_place, 41)
FIELD_MEMBERS(AcDb2dPolyline, thickness, setThickness, polyline_2d_place, 39)
FIELD_MEMBERS(AcDb2dPolyline, normal, setNormal, polyline_2d_place, 210)
VALUE_GETTER(AcDb2dPolyline, elevation, read_elevation(imp()))

Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
    assertWriteEnabled();
    if (read_elevation(imp()) != elevation)
        imp().edit().set_real(polyline_2d_place, 30, elevation);
    return Acad::eOk;
}

BIT_GETTER(AcDb2dPolyline, isLinetypeGenerationOn, polyline_2d_place, 70, flag::plinegen)
BIT_SWITCHES(AcDb2dPolyline, setLinetypeGenerationOn, setLinetypeGenerationOff, polyline_2d_place, 70,
             flag::plinegen)

Acad::ErrorStatus AcDb2dPolyline::length(double& length) const {
    double end = 0.0;
    const Acad::ErrorStatus status = getEndParam(end);
    return status == Acad::eOk ? getDistAtParam(end, length) : status;
}

VERTEX_MEMBERS(AcDb2dPolyline, AcDbCurve, AcDb2dVertex)
APPEND_VERTEX(AcDb2dPolyline, AcDb2dVertex)

AcGePoint3d AcDb2dPolyline::vertexPosition(const AcDb2dVertex& vertex) const {
    const AcGePoint3d flat = vertex.position();
    return AcGeMatrix3d::planeToWorld(normal()) * AcGePoint3d(flat.x, flat.y, elevation());
}

// ---- as a curve, and as a whole

PLANE_FIGURE(AcDb2dPolyline)

bool AcDb2dPolyline::subMakePieces(AcDbImpCurve& pieces) const {
    pieces.reads_parts = true;
    db::add_pieces(read_path(imp()), pieces);
    return true;
}

Adesk::Boolean AcDb2dPolyline::subWorldDraw(AcGiWorldDraw* draw) {
    db::draw_path(read_path(imp()), *draw);
    return true;
}

// All vertices go with it, the frame of a spline too.
Acad::ErrorStatus AcDb2dPolyline::subTransformBy(const AcGeMatrix3d& matrix) {
    db::flat_path path = read_path(imp());
    path.vertices.clear();
    for (const db::vertex_data& vertex : db::read_vertices(imp()))
        path.vertices.push_back(path_vertex(vertex, defaultStartWidth(), defaultEndWidth()));
    const AcGeVector3d before = path.normal;
    double growth = 1.0;
    if (!db::transform_path(path, matrix, growth))
        return Acad::eCannotScaleNonUniformly;
    db::plane_change change;
    db::change_any_plane(before, matrix, change);
    std::size_t index = 0;
    const Acad::ErrorStatus status = db::for_vertices(imp(), [&](AcDbImpObject& vertex) {
        const db::path_vertex& moved = path.vertices[index++];
        const bool has_z = vertex.groups().find(db::flat_vertex, 30) != dxf::group_list::npos;
        db::write_point(vertex, db::flat_vertex, 10,
                        {moved.point.x, moved.point.y, has_z ? path.elevation : 0.0});
        db::write_real(vertex, db::flat_vertex, 42, moved.bulge);
        for (const auto& [code, width] : {std::pair(40, moved.start_width), std::pair(41, moved.end_width)})
            if (vertex.groups().find(db::flat_vertex, code) != dxf::group_list::npos)
                db::write_real(vertex, db::flat_vertex, code, width);
        if (vertex.groups().find(db::flat_vertex, 50) != dxf::group_list::npos) {
            const double angle = db::radians(db::read_real(vertex, db::flat_vertex, 50));
            if (const double turned = change.turned(angle); std::fabs(turned - angle) > 1e-12)
                db::write_real(vertex, db::flat_vertex, 50, db::degrees(turned));
        }
    });
    if (status != Acad::eOk)
        return status;
    setElevation(path.elevation);
    setThickness(path.thickness);
    setNormal(path.normal);
    setDefaultStartWidth(defaultStartWidth() * growth);
    return setDefaultEndWidth(defaultEndWidth() * growth);
}

Acad::ErrorStatus AcDb2dPolyline::subExplode(AcDbVoidPtrArray& parts) const {
    db::explode_path(read_path(imp()), *this, parts);
    return Acad::eOk;
}
