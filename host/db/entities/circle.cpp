#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/plain_figures.h"
#include "host/db/entities/imp_curve.h"

#include <numbers>

ENTITY_CLASS(AcDbCircle, AcDbCurve, CIRCLE, db::circle_place)

AcDbCircle::AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius) : AcDbCircle() {
    setNormal(normal);
    setCenter(center);
    setRadius(radius);
}

// In the file the center is in the coordinates of the plane.
FIELD_MEMBERS(AcDbCircle, center, setCenter, db::circle_place, 10)
FIELD_MEMBERS(AcDbCircle, radius, setRadius, db::circle_place, 40)
FIELD_MEMBERS(AcDbCircle, thickness, setThickness, db::circle_place, 39)
FIELD_GETTER(AcDbCircle, normal, db::circle_place, 210)

Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    const AcGePoint3d kept = center();
    db::write_normal(imp(), db::circle_place, normal.normal());
    return setCenter(kept);
}

bool AcDbCircle::subMakePieces(AcDbImpCurve& pieces) const {
    constexpr double full = 2.0 * std::numbers::pi;
    const AcGeVector3d up = normal();
    const AcGeVector3d x = up.perpVector() * radius();
    pieces.add_arc({center(), x, up.crossProduct(x), 0.0, full}, 0.0, full);
    return true;
}

PLANE_FIGURE(AcDbCircle)

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
    db::write_normal(imp(), db::circle_place, change.normal);
    return setCenter(moved);
}
