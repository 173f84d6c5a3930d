#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/lines_alike.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/tables/properties.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbLine, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, LINE,
                        "ObjectDBX Classes")

namespace {

constexpr int line_order[] = {39, 10, 20, 30, 11, 21, 31, 210, 220, 230};
constexpr dxf::group_place line_place{"AcDbLine", line_order};

} // namespace

AcDbLine::AcDbLine() {
    imp().begin_as("0\nLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n11\n0.0\n21\n0.0\n31\n0.0\n");
}

// What is taken apart becomes many lines, so each is written at once.
AcDbLine::AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) {
    std::string text = "0\nLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n";
    db::append_ends(text, db::plain_style, start, end);
    imp().begin_new(std::move(text));
}

AcDbLine::~AcDbLine() = default;

AcGePoint3d AcDbLine::startPoint() const {
    assertReadEnabled();
    return db::read_point(imp(), line_place, 10);
}

Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& point) {
    assertWriteEnabled();
    db::write_point(imp(), line_place, 10, point);
    return Acad::eOk;
}

AcGePoint3d AcDbLine::endPoint() const {
    assertReadEnabled();
    return db::read_point(imp(), line_place, 11);
}

Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& point) {
    assertWriteEnabled();
    db::write_point(imp(), line_place, 11, point);
    return Acad::eOk;
}

double AcDbLine::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), line_place, 39);
}

Acad::ErrorStatus AcDbLine::setThickness(double thickness) {
    assertWriteEnabled();
    db::write_real(imp(), line_place, 39, thickness);
    return Acad::eOk;
}

AcGeVector3d AcDbLine::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), line_place);
}

Acad::ErrorStatus AcDbLine::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    db::write_normal(imp(), line_place, normal);
    return Acad::eOk;
}

bool AcDbLine::subMakePieces(AcDbImpCurve& pieces) const {
    const AcGePoint3d start = startPoint();
    const AcGePoint3d end = endPoint();
    pieces.add_line(start, end, 0.0, start.distanceTo(end));
    return true;
}

Acad::ErrorStatus AcDbLine::reverseCurve() {
    assertWriteEnabled();
    const AcGePoint3d start = startPoint();
    setStartPoint(endPoint());
    return setEndPoint(start);
}

Adesk::Boolean AcDbLine::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGePoint3d ends[] = {startPoint(), endPoint()};
    const AcGeVector3d up = normal();
    draw->subEntityTraits().setThickness(thickness());
    draw->geometry().polyline(2, ends, &up);
    return true;
}

Acad::ErrorStatus AcDbLine::subTransformBy(const AcGeMatrix3d& matrix) {
    setStartPoint(matrix * startPoint());
    setEndPoint(matrix * endPoint());
    const AcGeVector3d up = matrix * normal();
    setThickness(thickness() * up.length());
    setNormal(up.normal());
    return Acad::eOk;
}
