#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"

#include <numbers>

ACRX_DXF_DEFINE_MEMBERS(AcDbCircle, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, CIRCLE,
                        "ObjectDBX Classes")

namespace {

constexpr int circle_order[] = {39, 10, 20, 30, 40, 210, 220, 230};
constexpr dxf::group_place circle_place{"AcDbCircle", circle_order};

} // namespace

AcDbCircle::AcDbCircle() {
    imp().begin_as("0\nCIRCLE\n100\nAcDbEntity\n8\n0\n100\nAcDbCircle\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n40\n0.0\n");
}

AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius) : AcDbCircle() {
    setNormal(normal);
    setCenter(center);
    setRadius(radius);
}

AcDbCircle::~AcDbCircle() = default;

// In the file the center is in the coordinates of the plane.
AcGePoint3d AcDbCircle::center() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), circle_place, 10);
}

Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
    assertWriteEnabled();
    db::write_point(imp(), circle_place, 10, AcGeMatrix3d::worldToPlane(normal()) * center);
    return Acad::eOk;
}

double AcDbCircle::radius() const {
    assertReadEnabled();
    return db::read_real(imp(), circle_place, 40);
}

Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
    assertWriteEnabled();
    if (!(radius >= 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), circle_place, 40, radius);
    return Acad::eOk;
}

double AcDbCircle::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), circle_place, 39);
}

Acad::ErrorStatus AcDbCircle::setThickness(double thickness) {
    assertWriteEnabled();
    db::write_real(imp(), circle_place, 39, thickness);
    return Acad::eOk;
}

AcGeVector3d AcDbCircle::normal() const {
    assertReadEnabled();
    return db::read_normal(imp(), circle_place);
}

Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    const AcGePoint3d kept = center();
    db::write_normal(imp(), circle_place, normal.normal());
    return setCenter(kept);
}

bool AcDbCircle::subMakePieces(AcDbImpCurve& pieces) const {
    constexpr double full = 2.0 * std::numbers::pi;
    const AcGeVector3d up = normal();
    const AcGeVector3d x = up.perpVector() * radius();
    pieces.add_arc({center(), x, up.crossProduct(x), 0.0, full}, 0.0, full);
    return true;
}

void AcDbCircle::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToPlaneToWorld(normal());
}

Adesk::Boolean AcDbCircle::subWorldDraw(AcGiWorldDraw* draw) {
    draw->subEntityTraits().setThickness(thickness());
    draw->geometry().circle(center(), radius(), normal());
    return true;
}

Acad::ErrorStatus AcDbCircle::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * center();
    setThickness(thickness() * (matrix * normal()).length());
    setRadius(radius() * change.scale);
    db::write_normal(imp(), circle_place, change.normal);
    return setCenter(moved);
}
