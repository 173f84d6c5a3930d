#include "acgi.h"
#include "dbole.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"

#include <cmath>

namespace {

constexpr db::field ole_frame_fields[] = {db::number(70, "2"), db::point(10, "0.0"), db::point(11, "0.0")};
constexpr db::section ole_frame_place{{"AcDbOle2Frame"}, ole_frame_fields};

} // namespace

ENTITY_CLASS(AcDbOle2Frame, AcDbEntity, OLE2FRAME, ole_frame_place)

void AcDbOle2Frame::getLocation(AcGePoint3d& location) const {
    location = this->location();
}

FIELD_GETTER(AcDbOle2Frame, location, ole_frame_place, 10)
VALUE_GETTER(AcDbOle2Frame, wcsWidth, std::fabs(db::read_point(imp(), ole_frame_place, 11).x - location().x))
VALUE_GETTER(AcDbOle2Frame, wcsHeight, std::fabs(db::read_point(imp(), ole_frame_place, 11).y - location().y))

Adesk::Boolean AcDbOle2Frame::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGePoint3d a = location();
    const AcGePoint3d b = db::read_point(imp(), ole_frame_place, 11);
    const AcGePoint3d rim[] = {a, {b.x, a.y, a.z}, b, {a.x, b.y, b.z}, a};
    draw->geometry().polyline(5, rim);
    return true;
}

Acad::ErrorStatus AcDbOle2Frame::subTransformBy(const AcGeMatrix3d& matrix) {
    for (unsigned row = 0; row < 3; ++row)
        for (unsigned column = 0; column < 3; ++column)
            if (row != column && matrix(row, column) != 0.0)
                return Acad::eCannotScaleNonUniformly;
    for (const int code : {10, 11})
        db::write_point(imp(), ole_frame_place, code, matrix * db::read_point(imp(), ole_frame_place, code));
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}
