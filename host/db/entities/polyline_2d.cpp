#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/part_iterator.h"
#include "host/db/entities/flat_path.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/entities/polyline_parts.h"

#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(AcDb2dPolyline, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, POLYLINE,
                        "ObjectDBX Classes")

namespace flag = db::polyline_flag;

namespace {

constexpr int polyline_2d_order[] = {66, 10, 20, 30, 39, 70, 40, 41, 71, 72, 73, 74, 75, 210, 220, 230};
constexpr dxf::group_place polyline_2d_place{"AcDb2dPolyline", polyline_2d_order};
constexpr int vertex_order[] = {10, 20, 30, 40, 41, 42, 70, 50, 91};
constexpr dxf::group_place vertex_place{"AcDb2dVertex", vertex_order};

// Group 75 of a spline.
constexpr int quadratic = 5;
constexpr int cubic = 6;

int read_flags(const AcDbImpObject& object) {
    return db::read_integer(object, polyline_2d_place, 70);
}

void set_flag(AcDbImpObject& object, int bit, bool set) {
    const int flags = read_flags(object);
    db::write_integer(object, polyline_2d_place, 70, set ? flags | bit : flags & ~bit);
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

AcDb2dPolyline::AcDb2dPolyline() {
    imp().begin_as("0\nPOLYLINE\n100\nAcDbEntity\n8\n0\n100\nAcDb2dPolyline\n"
                   "66\n1\n10\n0.0\n20\n0.0\n30\n0.0\n70\n0\n");
}

AcDb2dPolyline::AcDb2dPolyline(AcDb::Poly2dType type, const AcGePoint3dArray& vertices, double elevation,
                               Adesk::Boolean closed, double dfltStartWidth, double dfltEndWidth,
                               const AcGeDoubleArray* bulges)
    : AcDb2dPolyline() {
    setElevation(elevation);
    setDefaultStartWidth(dfltStartWidth);
    setDefaultEndWidth(dfltEndWidth);
    set_flag(imp(), flag::closed, closed);
    set_flag(imp(), flag::curve_fit, type == AcDb::k2dFitCurvePoly);
    set_flag(imp(), flag::spline_fit, type == AcDb::k2dQuadSplinePoly || type == AcDb::k2dCubicSplinePoly);
    if (type == AcDb::k2dQuadSplinePoly || type == AcDb::k2dCubicSplinePoly)
        db::write_integer(imp(), polyline_2d_place, 75, type == AcDb::k2dQuadSplinePoly ? quadratic : cubic);
    for (int i = 0; i < vertices.length(); ++i) {
        const double bulge = bulges != nullptr && i < bulges->length() ? (*bulges)[i] : 0.0;
        appendVertex(
            new AcDb2dVertex({vertices[i].x, vertices[i].y, elevation}, bulge, dfltStartWidth, dfltEndWidth));
    }
}

AcDb2dPolyline::~AcDb2dPolyline() = default;

AcDb::Poly2dType AcDb2dPolyline::polyType() const {
    assertReadEnabled();
    const int flags = read_flags(imp());
    if ((flags & flag::spline_fit) != 0)
        return db::read_integer(imp(), polyline_2d_place, 75) == quadratic ? AcDb::k2dQuadSplinePoly
                                                                           : AcDb::k2dCubicSplinePoly;
    return (flags & flag::curve_fit) != 0 ? AcDb::k2dFitCurvePoly : AcDb::k2dSimplePoly;
}

bool AcDb2dPolyline::isClosed() const {
    assertReadEnabled();
    return (read_flags(imp()) & flag::closed) != 0;
}

Acad::ErrorStatus AcDb2dPolyline::makeClosed() {
    assertWriteEnabled();
    set_flag(imp(), flag::closed, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::makeOpen() {
    assertWriteEnabled();
    set_flag(imp(), flag::closed, false);
    return Acad::eOk;
}

double AcDb2dPolyline::defaultStartWidth() const {
    assertReadEnabled();
    return db::read_real(imp(), polyline_2d_place, 40);
}

Acad::ErrorStatus AcDb2dPolyline::setDefaultStartWidth(double width) {
    assertWriteEnabled();
    if (!(width >= 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), polyline_2d_place, 40, width);
    return Acad::eOk;
}

double AcDb2dPolyline::defaultEndWidth() const {
    assertReadEnabled();
    return db::read_real(imp(), polyline_2d_place, 41);
}

Acad::ErrorStatus AcDb2dPolyline::setDefaultEndWidth(double width) {
    assertWriteEnabled();
    if (!(width >= 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), polyline_2d_place, 41, width);
    return Acad::eOk;
}

double AcDb2dPolyline::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), polyline_2d_place, 39);
}

Acad::ErrorStatus AcDb2dPolyline::setThickness(double thickness) {
    assertWriteEnabled();
    db::write_real(imp(), polyline_2d_place, 39, thickness);
    return Acad::eOk;
}

AcGeVector3d AcDb2dPolyline::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), polyline_2d_place);
}

Acad::ErrorStatus AcDb2dPolyline::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    db::write_normal(imp(), polyline_2d_place, normal.normal());
    return Acad::eOk;
}

double AcDb2dPolyline::elevation() const {
    assertReadEnabled();
    return read_elevation(imp());
}

Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
    assertWriteEnabled();
    if (read_elevation(imp()) != elevation)
        imp().edit().set_real(polyline_2d_place, 30, elevation);
    return Acad::eOk;
}

bool AcDb2dPolyline::isLinetypeGenerationOn() const {
    assertReadEnabled();
    return (read_flags(imp()) & flag::plinegen) != 0;
}

Acad::ErrorStatus AcDb2dPolyline::setLinetypeGenerationOn() {
    assertWriteEnabled();
    set_flag(imp(), flag::plinegen, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::setLinetypeGenerationOff() {
    assertWriteEnabled();
    set_flag(imp(), flag::plinegen, false);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::length(double& length) const {
    double end = 0.0;
    const Acad::ErrorStatus status = getEndParam(end);
    return status == Acad::eOk ? getDistAtParam(end, length) : status;
}

// ---- vertices

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDb2dVertex* vertex) {
    AcDbObjectId id;
    return db::append_vertex(*this, vertex, id);
}

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex) {
    return db::append_vertex(*this, vertex, id);
}

Acad::ErrorStatus AcDb2dPolyline::openVertex(AcDb2dVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                             bool openErasedOne) const {
    vertex = nullptr;
    const Acad::ErrorStatus status = db::check_vertex(imp(), id);
    return status == Acad::eOk ? acdbOpenObject(vertex, id, mode, openErasedOne) : status;
}

AcDbObjectIterator* AcDb2dPolyline::vertexIterator() const {
    assertReadEnabled();
    return db::iterate_parts(imp(), "VERTEX").release(); // the caller's
}

AcGePoint3d AcDb2dPolyline::vertexPosition(const AcDb2dVertex& vertex) const {
    const AcGePoint3d flat = vertex.position();
    return AcGeMatrix3d::planeToWorld(normal()) * AcGePoint3d(flat.x, flat.y, elevation());
}

// ---- as a curve, and as a whole

void AcDb2dPolyline::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToPlaneToWorld(normal());
}

AcRxObject* AcDb2dPolyline::clone() const {
    AcRxObject* const copy = AcDbCurve::clone();
    db::copy_vertices(imp(), static_cast<AcDbObject*>(copy));
    return copy;
}

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
        const bool has_z = vertex.groups().find(vertex_place, 30) != dxf::group_list::npos;
        db::write_point(vertex, vertex_place, 10,
                        {moved.point.x, moved.point.y, has_z ? path.elevation : 0.0});
        db::write_real(vertex, vertex_place, 42, moved.bulge);
        for (const auto& [code, width] : {std::pair(40, moved.start_width), std::pair(41, moved.end_width)})
            if (vertex.groups().find(vertex_place, code) != dxf::group_list::npos)
                db::write_real(vertex, vertex_place, code, width);
        if (vertex.groups().find(vertex_place, 50) != dxf::group_list::npos) {
            const double angle = db::radians(db::read_real(vertex, vertex_place, 50));
            if (const double turned = change.turned(angle); std::fabs(turned - angle) > 1e-12)
                db::write_real(vertex, vertex_place, 50, db::degrees(turned));
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
