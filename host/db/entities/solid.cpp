#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"

#include <array>

// Files call both by one class, and write the corners in the coordinates of the plane.
namespace {

constexpr db::field solid_fields[] = {
    db::point(10, "0.0"), db::point(11, "0.0"), db::point(12, "0.0"),
    db::point(13, "0.0"), db::number(39),       db::normal().direction(),
};
constexpr auto solid_place = db::section_of<solid_fields>("AcDbTrace");
constexpr Adesk::UInt16 corners = 4;

bool has_fourth(const AcDbImpObject& object) {
    return object.groups().find(solid_place, 13) != dxf::group_list::npos;
}

AcGePoint3d read_corner(const AcDbImpObject& object, Adesk::UInt16 index) {
    return db::read_point(object, solid_place, index == 3 && !has_fourth(object) ? 12 : 10 + index);
}

Acad::ErrorStatus get_point(const AcDbImpObject& object, Adesk::UInt16 index, AcGePoint3d& point) {
    if (index >= corners)
        return Acad::eInvalidIndex;
    point = AcGeMatrix3d::planeToWorld(db::read_normal(object, solid_place)) * read_corner(object, index);
    return Acad::eOk;
}

Acad::ErrorStatus set_point(AcDbImpObject& object, Adesk::UInt16 index, const AcGePoint3d& point) {
    if (index >= corners)
        return Acad::eInvalidIndex;
    db::write_point(object, solid_place, 10 + index,
                    AcGeMatrix3d::worldToPlane(db::read_normal(object, solid_place)) * point);
    return Acad::eOk;
}

void draw_solid(const AcDbImpObject& object, AcGiWorldDraw& draw) {
    const AcGiWorldGeometry& to = draw.geometry();
    const double thickness = db::read_real(object, solid_place, 39);
    std::array<AcGePoint3d, corners> base;
    std::array<AcGePoint3d, corners> top;
    constexpr std::array<Adesk::UInt16, corners> around{0, 1, 3, 2};
    for (std::size_t i = 0; i < corners; ++i) {
        base[i] = read_corner(object, around[i]);
        top[i] = base[i] + AcGeVector3d::kZAxis * thickness;
    }
    draw.geometry().pushModelTransform(db::read_normal(object, solid_place));
    to.polygon(corners, base.data());
    if (thickness != 0.0) {
        to.polygon(corners, top.data());
        for (std::size_t i = 0; i < corners; ++i) {
            const std::size_t next = (i + 1) % corners;
            const std::array side{base[i], base[next], top[next], top[i]};
            to.polygon(corners, side.data());
        }
    }
    draw.geometry().popModelTransform();
}

Acad::ErrorStatus transform(AcDbImpObject& object, const AcGeMatrix3d& matrix) {
    db::plane_change change;
    const AcGeVector3d normal = db::read_normal(object, solid_place);
    if (!db::change_any_plane(normal, matrix, change))
        return Acad::eDegenerateGeometry;
    for (Adesk::UInt16 i = 0; i < corners; ++i)
        if (i < 3 || has_fourth(object))
            db::write_point(object, solid_place, 10 + i, change.plane_to_plane * read_corner(object, i));
    db::write_real(object, solid_place, 39,
                   db::read_real(object, solid_place, 39) * change.normal.dotProduct(matrix * normal));
    db::write_normal(object, solid_place, change.normal);
    return Acad::eOk;
}

} // namespace

ENTITY_CLASS(AcDbSolid, AcDbEntity, SOLID, solid_place)

AcDbSolid::AcDbSolid(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
                     const AcGePoint3d& pt3)
    : AcDbSolid() {
    setPointAt(0, pt0);
    setPointAt(1, pt1);
    setPointAt(2, pt2);
    setPointAt(3, pt3);
}

AcDbSolid::AcDbSolid(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2)
    : AcDbSolid(pt0, pt1, pt2, pt2) {
}

ENTITY_CLASS(AcDbTrace, AcDbEntity, TRACE, solid_place)

AcDbTrace::AcDbTrace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
                     const AcGePoint3d& pt3)
    : AcDbTrace() {
    setPointAt(0, pt0);
    setPointAt(1, pt1);
    setPointAt(2, pt2);
    setPointAt(3, pt3);
}

#define DEFINE_SOLID(CLASS)                                                                                  \
    Acad::ErrorStatus CLASS::getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const {                     \
        assertReadEnabled();                                                                                 \
        return get_point(imp(), index, point);                                                               \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::setPointAt(Adesk::UInt16 index, const AcGePoint3d& point) {                     \
        assertWriteEnabled();                                                                                \
        return set_point(imp(), index, point);                                                               \
    }                                                                                                        \
    FIELD_MEMBERS(CLASS, thickness, setThickness, solid_place, 39)                                           \
    FIELD_MEMBERS(CLASS, normal, setNormal, solid_place, 210)                                                \
    PLANE_FIGURE(CLASS)                                                                                      \
    Adesk::Boolean CLASS::subWorldDraw(AcGiWorldDraw* draw) {                                                \
        draw_solid(imp(), *draw);                                                                            \
        return true;                                                                                         \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::subTransformBy(const AcGeMatrix3d& matrix) {                                    \
        return transform(imp(), matrix);                                                                     \
    }

DEFINE_SOLID(AcDbSolid)
DEFINE_SOLID(AcDbTrace)

#undef DEFINE_SOLID
