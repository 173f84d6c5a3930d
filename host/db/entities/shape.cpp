#include "acgi.h"
#include "acutmem.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/dxf/record_header.h"

#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(AcDbShape, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, SHAPE,
                        "ObjectDBX Classes")

namespace {

constexpr int shape_order[] = {39, 10, 20, 30, 40, 2, 50, 41, 51, 210, 220, 230};
constexpr dxf::group_place shape_place{"AcDbShape", shape_order};

} // namespace

AcDbShape::AcDbShape() {
    imp().begin_as(
        "0\nSHAPE\n100\nAcDbEntity\n8\n0\n100\nAcDbShape\n10\n0.0\n20\n0.0\n30\n0.0\n40\n1.0\n2\n\n");
}

AcDbShape::~AcDbShape() = default;

AcGePoint3d AcDbShape::position() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), shape_place, 10);
}

Acad::ErrorStatus AcDbShape::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    db::write_point(imp(), shape_place, 10, AcGeMatrix3d::worldToPlane(normal()) * position);
    return Acad::eOk;
}

double AcDbShape::size() const {
    assertReadEnabled();
    return db::read_real(imp(), shape_place, 40);
}

Acad::ErrorStatus AcDbShape::setSize(double size) {
    assertWriteEnabled();
    if (!(size > 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), shape_place, 40, size);
    return Acad::eOk;
}

ACHAR* AcDbShape::name() const {
    assertReadEnabled();
    ACHAR* copy = nullptr;
    acutNewString(imp().decode(dxf::trimmed(imp().groups().text(shape_place, 2).value_or(""))).c_str(), copy);
    return copy;
}

double AcDbShape::rotation() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), shape_place, 50));
}

Acad::ErrorStatus AcDbShape::setRotation(double rotation) {
    assertWriteEnabled();
    db::write_real(imp(), shape_place, 50, db::degrees(rotation));
    return Acad::eOk;
}

double AcDbShape::widthFactor() const {
    assertReadEnabled();
    return db::read_real(imp(), shape_place, 41, 1.0);
}

double AcDbShape::oblique() const {
    assertReadEnabled();
    return db::radians(db::read_real(imp(), shape_place, 51));
}

double AcDbShape::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), shape_place, 39);
}

AcGeVector3d AcDbShape::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), shape_place);
}

Adesk::Boolean AcDbShape::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGeVector3d up = normal();
    const AcGeVector3d along =
        AcGeMatrix3d::planeToWorld(up) * AcGeVector3d(std::cos(rotation()), std::sin(rotation()), 0.0);
    const AcGeVector3d x = along * (size() * widthFactor());
    const AcGeVector3d y = (up.crossProduct(along) + along * std::tan(oblique())) * size();
    const AcGePoint3d at = position();
    const AcGePoint3d rim[] = {at, at + x, at + x + y, at + y, at};
    draw->subEntityTraits().setThickness(thickness());
    draw->geometry().polyline(5, rim, &up);
    return true;
}

Acad::ErrorStatus AcDbShape::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * position();
    const double turned = change.turned(rotation());
    db::write_real(imp(), shape_place, 39, thickness() * (matrix * normal()).length());
    db::write_real(imp(), shape_place, 40, size() * change.scale);
    if (change.mirrored) { // read from behind
        db::write_real(imp(), shape_place, 41, -widthFactor(), 1.0);
        db::write_real(imp(), shape_place, 51, -db::degrees(oblique()));
    }
    db::write_real(imp(), shape_place, 50,
                   db::degrees(change.mirrored ? turned + 3.14159265358979323846 : turned));
    db::write_normal(imp(), shape_place, change.normal);
    return setPosition(moved);
}
