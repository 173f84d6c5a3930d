#include "dbray.h"

#include "acgi.h"
#include "dbxline.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbRay, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, RAY,
                        "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbXline, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, XLINE,
                        "ObjectDBX Classes")

namespace {

constexpr int ray_order[] = {10, 20, 30, 11, 21, 31};
constexpr dxf::group_place ray_place{"AcDbRay", ray_order};
constexpr dxf::group_place xline_place{"AcDbXline", ray_order};

AcGeVector3d read_direction(const AcDbImpObject& object, const dxf::group_place& place) {
    return db::read_point(object, place, 11).asVector().normal();
}

Acad::ErrorStatus write_direction(AcDbImpObject& object, const dxf::group_place& place,
                                  const AcGeVector3d& direction) {
    if (direction.isZeroLength())
        return Acad::eInvalidInput;
    if (!(read_direction(object, place) == direction.normal()))
        db::write_point(object, place, 11, AcGePoint3d::kOrigin + direction.normal());
    return Acad::eOk;
}

Acad::ErrorStatus transform(AcDbImpObject& object, const dxf::group_place& place,
                            const AcGeMatrix3d& matrix) {
    const AcGePoint3d base = matrix * db::read_point(object, place, 10);
    const AcGeVector3d direction = matrix * read_direction(object, place);
    if (direction.isZeroLength())
        return Acad::eDegenerateGeometry;
    db::write_point(object, place, 10, base);
    return write_direction(object, place, direction);
}

} // namespace

AcDbRay::AcDbRay() {
    imp().begin_as("0\nRAY\n100\nAcDbEntity\n8\n0\n100\nAcDbRay\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n11\n1.0\n21\n0.0\n31\n0.0\n");
}

AcDbRay::~AcDbRay() = default;

AcGePoint3d AcDbRay::basePoint() const {
    assertReadEnabled();
    return db::read_point(imp(), ray_place, 10);
}

Acad::ErrorStatus AcDbRay::setBasePoint(const AcGePoint3d& point) {
    assertWriteEnabled();
    db::write_point(imp(), ray_place, 10, point);
    return Acad::eOk;
}

AcGeVector3d AcDbRay::unitDir() const {
    assertReadEnabled();
    return read_direction(imp(), ray_place);
}

Acad::ErrorStatus AcDbRay::setUnitDir(const AcGeVector3d& direction) {
    assertWriteEnabled();
    return write_direction(imp(), ray_place, direction);
}

AcGePoint3d AcDbRay::secondPoint() const {
    return basePoint() + unitDir();
}

Acad::ErrorStatus AcDbRay::setSecondPoint(const AcGePoint3d& point) {
    return setUnitDir(point - basePoint());
}

bool AcDbRay::subMakePieces(AcDbImpCurve& pieces) const {
    pieces.add_endless(basePoint(), unitDir(), false);
    return true;
}

Adesk::Boolean AcDbRay::subWorldDraw(AcGiWorldDraw* draw) {
    draw->geometry().ray(basePoint(), secondPoint());
    return true;
}

Acad::ErrorStatus AcDbRay::subTransformBy(const AcGeMatrix3d& matrix) {
    return transform(imp(), ray_place, matrix);
}

AcDbXline::AcDbXline() {
    imp().begin_as("0\nXLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbXline\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n11\n1.0\n21\n0.0\n31\n0.0\n");
}

AcDbXline::~AcDbXline() = default;

AcGePoint3d AcDbXline::basePoint() const {
    assertReadEnabled();
    return db::read_point(imp(), xline_place, 10);
}

Acad::ErrorStatus AcDbXline::setBasePoint(const AcGePoint3d& point) {
    assertWriteEnabled();
    db::write_point(imp(), xline_place, 10, point);
    return Acad::eOk;
}

AcGeVector3d AcDbXline::unitDir() const {
    assertReadEnabled();
    return read_direction(imp(), xline_place);
}

Acad::ErrorStatus AcDbXline::setUnitDir(const AcGeVector3d& direction) {
    assertWriteEnabled();
    return write_direction(imp(), xline_place, direction);
}

AcGePoint3d AcDbXline::secondPoint() const {
    return basePoint() + unitDir();
}

Acad::ErrorStatus AcDbXline::setSecondPoint(const AcGePoint3d& point) {
    return setUnitDir(point - basePoint());
}

bool AcDbXline::subMakePieces(AcDbImpCurve& pieces) const {
    pieces.add_endless(basePoint(), unitDir(), true);
    return true;
}

Adesk::Boolean AcDbXline::subWorldDraw(AcGiWorldDraw* draw) {
    draw->geometry().xline(basePoint(), secondPoint());
    return true;
}

Acad::ErrorStatus AcDbXline::subTransformBy(const AcGeMatrix3d& matrix) {
    return transform(imp(), xline_place, matrix);
}
