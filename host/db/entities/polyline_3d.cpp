#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/part_iterator.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/entities/polyline_parts.h"

ACRX_DXF_DEFINE_MEMBERS(AcDb3dPolyline, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, POLYLINE,
                        "ObjectDBX Classes")

namespace flag = db::polyline_flag;

namespace {

constexpr int polyline_3d_order[] = {66, 10, 20, 30, 70, 75};
constexpr dxf::group_place polyline_3d_place{"AcDb3dPolyline", polyline_3d_order};
constexpr int vertex_order[] = {10, 20, 30, 70};
constexpr dxf::group_place vertex_place{"AcDb3dPolylineVertex", vertex_order};

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

void set_flag(AcDbImpObject& object, int bit, bool set) {
    const int flags = db::read_integer(object, polyline_3d_place, 70);
    db::write_integer(object, polyline_3d_place, 70, set ? flags | bit : flags & ~bit);
}

} // namespace

AcDb3dPolyline::AcDb3dPolyline() {
    imp().begin_as("0\nPOLYLINE\n100\nAcDbEntity\n8\n0\n100\nAcDb3dPolyline\n"
                   "66\n1\n10\n0.0\n20\n0.0\n30\n0.0\n70\n8\n");
}

AcDb3dPolyline::AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices, Adesk::Boolean closed)
    : AcDb3dPolyline() {
    set_flag(imp(), flag::closed, closed);
    if (type != AcDb::k3dSimplePoly) {
        set_flag(imp(), flag::spline_fit, true);
        db::write_integer(imp(), polyline_3d_place, 75, type == AcDb::k3dQuadSplinePoly ? quadratic : cubic);
    }
    for (const AcGePoint3d& point : vertices)
        appendVertex(new AcDb3dPolylineVertex(point));
}

AcDb3dPolyline::~AcDb3dPolyline() = default;

AcDb::Poly3dType AcDb3dPolyline::polyType() const {
    assertReadEnabled();
    if ((db::read_integer(imp(), polyline_3d_place, 70) & flag::spline_fit) == 0)
        return AcDb::k3dSimplePoly;
    return db::read_integer(imp(), polyline_3d_place, 75) == quadratic ? AcDb::k3dQuadSplinePoly
                                                                       : AcDb::k3dCubicSplinePoly;
}

bool AcDb3dPolyline::isClosed() const {
    assertReadEnabled();
    return (db::read_integer(imp(), polyline_3d_place, 70) & flag::closed) != 0;
}

Acad::ErrorStatus AcDb3dPolyline::makeClosed() {
    assertWriteEnabled();
    set_flag(imp(), flag::closed, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::makeOpen() {
    assertWriteEnabled();
    set_flag(imp(), flag::closed, false);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::length(double& length) const {
    double end = 0.0;
    const Acad::ErrorStatus status = getEndParam(end);
    return status == Acad::eOk ? getDistAtParam(end, length) : status;
}

Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDb3dPolylineVertex* vertex) {
    AcDbObjectId id;
    return db::append_vertex(*this, vertex, id);
}

Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex) {
    return db::append_vertex(*this, vertex, id);
}

Acad::ErrorStatus AcDb3dPolyline::openVertex(AcDb3dPolylineVertex*& vertex, AcDbObjectId id,
                                             AcDb::OpenMode mode, bool openErasedOne) const {
    vertex = nullptr;
    const Acad::ErrorStatus status = db::check_vertex(imp(), id);
    return status == Acad::eOk ? acdbOpenObject(vertex, id, mode, openErasedOne) : status;
}

AcDbObjectIterator* AcDb3dPolyline::vertexIterator() const {
    assertReadEnabled();
    return db::iterate_parts(imp(), "VERTEX").release(); // the caller's
}

AcRxObject* AcDb3dPolyline::clone() const {
    AcRxObject* const copy = AcDbCurve::clone();
    db::copy_vertices(imp(), static_cast<AcDbObject*>(copy));
    return copy;
}

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
        db::write_point(vertex, vertex_place, 10, matrix * db::read_point(vertex, vertex_place, 10));
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
