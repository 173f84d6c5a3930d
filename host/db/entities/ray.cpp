#include "dbray.h"

#include "acgi.h"
#include "dbxline.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"

namespace {

constexpr db::field ray_fields[] = {db::point(10, "0.0"), db::point(11, "1.0 0.0 0.0")};
constexpr auto ray_place = db::section_of<ray_fields>("AcDbRay");
constexpr auto xline_place = db::section_of<ray_fields>("AcDbXline");

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

ENTITY_CLASS(AcDbRay, AcDbCurve, RAY, ray_place)

FIELD_MEMBERS(AcDbRay, basePoint, setBasePoint, ray_place, 10)
VALUE_GETTER(AcDbRay, unitDir, read_direction(imp(), ray_place))

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

ENTITY_CLASS(AcDbXline, AcDbCurve, XLINE, xline_place)

FIELD_MEMBERS(AcDbXline, basePoint, setBasePoint, xline_place, 10)
VALUE_GETTER(AcDbXline, unitDir, read_direction(imp(), xline_place))

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
