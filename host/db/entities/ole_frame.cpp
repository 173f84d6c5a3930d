#include "acgi.h"
#include "dbole.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"

#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(AcDbOle2Frame, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, OLE2FRAME,
                        "ObjectDBX Classes")

namespace {

constexpr dxf::group_place ole_frame_place{"AcDbOle2Frame"};

} // namespace

AcDbOle2Frame::AcDbOle2Frame() {
    imp().begin_as(
        "0\nOLE2FRAME\n100\nAcDbEntity\n8\n0\n100\nAcDbOle2Frame\n70\n2\n10\n0.0\n20\n0.0\n30\n0.0\n"
        "11\n0.0\n21\n0.0\n31\n0.0\n");
}

AcDbOle2Frame::~AcDbOle2Frame() = default;

void AcDbOle2Frame::getLocation(AcGePoint3d& location) const {
    location = this->location();
}

AcGePoint3d AcDbOle2Frame::location() const {
    assertReadEnabled();
    return db::read_point(imp(), ole_frame_place, 10);
}

double AcDbOle2Frame::wcsWidth() const {
    assertReadEnabled();
    return std::fabs(db::read_point(imp(), ole_frame_place, 11).x - location().x);
}

double AcDbOle2Frame::wcsHeight() const {
    assertReadEnabled();
    return std::fabs(db::read_point(imp(), ole_frame_place, 11).y - location().y);
}

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
