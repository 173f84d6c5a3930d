#include "acgi.h"
#include "dbunderlayref.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/custom/proxy_graphics.h"

#include <cmath>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbUnderlayReference, AcDbEntity)

namespace {

constexpr db::field underlay_fields[] = {
    db::number(340),
    db::flat_point(10, "0.0"),
    db::number(41).or_else(1.0),
    db::number(42).or_else(1.0),
    db::number(43).or_else(1.0),
    db::angle(50),
    db::normal(),
    db::number(280, "2"),
    db::number(281, "100"),
    db::number(282, "0"),
    db::pair(11),
};
constexpr auto underlay_place = db::section_of<underlay_fields>("AcDbUnderlayReference");

// Bits of group 280.
constexpr int clip_flag = 1;
constexpr int on_flag = 2;

} // namespace

AcDbUnderlayReference::AcDbUnderlayReference() = default;

ENTITY_CLASS(AcDbPdfReference, AcDbUnderlayReference, PDFUNDERLAY, underlay_place)
ENTITY_CLASS(AcDbDwfReference, AcDbUnderlayReference, DWFUNDERLAY, underlay_place)
ENTITY_CLASS(AcDbDgnReference, AcDbUnderlayReference, DGNUNDERLAY, underlay_place)

FIELD_MEMBERS(AcDbUnderlayReference, position, setPosition, underlay_place, 10)
VALUE_GETTER(AcDbUnderlayReference, scaleFactors,
             {db::read_real(imp(), underlay_place, 41, 1.0), db::read_real(imp(), underlay_place, 42, 1.0),
              db::read_real(imp(), underlay_place, 43, 1.0)})
FIELD_GETTER(AcDbUnderlayReference, rotation, underlay_place, 50)
FIELD_GETTER(AcDbUnderlayReference, normal, underlay_place, 210)

AcGeMatrix3d AcDbUnderlayReference::transform() const {
    const AcGeVector3d x(std::cos(rotation()), std::sin(rotation()), 0.0);
    const AcGeScale3d scale = scaleFactors();
    AcGeMatrix3d in_plane;
    in_plane.setCoordSystem(db::read_point(imp(), underlay_place, 10), x * scale.sx,
                            AcGeVector3d(-x.y, x.x, 0.0) * scale.sy, AcGeVector3d::kZAxis * scale.sz);
    return AcGeMatrix3d::planeToWorld(normal()) * in_plane;
}

FIELD_GETTER(AcDbUnderlayReference, definitionId, underlay_place, 340)
VALUE_GETTER(AcDbUnderlayReference, isClipped,
             (db::read_integer(imp(), underlay_place, 280) & clip_flag) != 0 && clipBoundary().length() > 1)
BIT_GETTER(AcDbUnderlayReference, isOn, underlay_place, 280, on_flag)

const AcGePoint2dArray& AcDbUnderlayReference::clipBoundary() const {
    assertReadEnabled();
    m_boundary.removeAll();
    for (const AcGePoint3d& corner : db::read_points(imp(), underlay_place, 11))
        m_boundary.append(AcGePoint2d(corner.x, corner.y));
    return m_boundary;
}

Adesk::Boolean AcDbUnderlayReference::subWorldDraw(AcGiWorldDraw* draw) {
    std::vector<AcGePoint3d> rim;
    for (const AcGePoint2d& corner : clipBoundary())
        rim.push_back({corner.x, corner.y, 0.0});
    if (rim.size() < 2)
        rim = {AcGePoint3d::kOrigin};
    else if (rim.size() == 2)
        rim = {rim[0], {rim[1].x, rim[0].y, 0.0}, rim[1], {rim[0].x, rim[1].y, 0.0}, rim[0]};
    else
        rim.push_back(AcGePoint3d(rim.front()));
    draw->geometry().pushModelTransform(transform());
    draw->geometry().polyline(static_cast<Adesk::UInt32>(rim.size()), rim.data());
    draw->geometry().popModelTransform();
    return true;
}

Acad::ErrorStatus AcDbUnderlayReference::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * position();
    const AcGeScale3d scale = scaleFactors();
    const double turned = change.turned(rotation());
    db::write_real(imp(), underlay_place, 41, scale.sx * change.scale, 1.0);
    // A mirror in the plane turns the page over.
    db::write_real(imp(), underlay_place, 42, scale.sy * change.scale * (change.mirrored ? -1.0 : 1.0), 1.0);
    db::write_real(imp(), underlay_place, 43, scale.sz * change.scale, 1.0);
    db::write_real(imp(), underlay_place, 50, db::degrees(turned));
    db::write_normal(imp(), underlay_place, change.normal);
    db::write_proxy_graphics(imp(), {});
    return setPosition(moved);
}
