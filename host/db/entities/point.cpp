#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbPoint, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, POINT,
                        "ObjectDBX Classes")

namespace {

constexpr int point_order[] = {10, 20, 30, 39, 210, 220, 230, 50};
constexpr dxf::group_place point_place{"AcDbPoint", point_order};

} // namespace

AcDbPoint::AcDbPoint() {
    imp().begin_as("0\nPOINT\n100\nAcDbEntity\n8\n0\n100\nAcDbPoint\n10\n0.0\n20\n0.0\n30\n0.0\n");
}

AcDbPoint::AcDbPoint(const AcGePoint3d& position) : AcDbPoint() {
    setPosition(position);
}

AcDbPoint::~AcDbPoint() = default;

AcGePoint3d AcDbPoint::position() const {
    assertReadEnabled();
    return db::read_point(imp(), point_place, 10);
}

Acad::ErrorStatus AcDbPoint::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), point_place, 10, position);
    return Acad::eOk;
}

double AcDbPoint::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), point_place, 39);
}

Acad::ErrorStatus AcDbPoint::setThickness(double thickness) {
    assertWriteEnabled();
    db::write_real(imp(), point_place, 39, thickness);
    return Acad::eOk;
}

AcGeVector3d AcDbPoint::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), point_place);
}

Acad::ErrorStatus AcDbPoint::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    db::write_normal(imp(), point_place, normal);
    return Acad::eOk;
}

Adesk::Boolean AcDbPoint::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGePoint3d dot[] = {position()};
    const AcGeVector3d up = normal();
    draw->subEntityTraits().setThickness(thickness());
    draw->geometry().polyline(1, dot, &up);
    return true;
}

Acad::ErrorStatus AcDbPoint::subTransformBy(const AcGeMatrix3d& matrix) {
    setPosition(matrix * position());
    const AcGeVector3d up = matrix * normal();
    setThickness(thickness() * up.length());
    setNormal(up.normal());
    return Acad::eOk;
}
