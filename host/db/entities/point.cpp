#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/plain_figures.h"

using db::point_place;

ENTITY_CLASS(AcDbPoint, AcDbEntity, POINT, point_place)

AcDbPoint::AcDbPoint(const AcGePoint3d& position) : AcDbPoint() {
    setPosition(position);
}

FIELD_MEMBERS(AcDbPoint, position, setPosition, point_place, 10)
FIELD_MEMBERS(AcDbPoint, thickness, setThickness, point_place, 39)
FIELD_MEMBERS(AcDbPoint, normal, setNormal, point_place, 210)

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
