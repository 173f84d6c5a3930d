#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"

#include <array>

ACRX_DXF_DEFINE_MEMBERS(AcDbSolid, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, SOLID,
                        "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbTrace, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TRACE,
                        "ObjectDBX Classes")

// Files call both by one class, and write the corners in the coordinates of the plane.
namespace {

constexpr int solid_order[] = {10, 20, 30, 11, 21, 31, 12, 22, 32, 13, 23, 33, 39, 210, 220, 230};
constexpr dxf::group_place solid_place{"AcDbTrace", solid_order};
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

Acad::ErrorStatus set_normal(AcDbImpObject& object, const AcGeVector3d& normal) {
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    db::write_normal(object, solid_place, normal.normal());
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

AcDbSolid::AcDbSolid() {
    imp().begin_as("0\nSOLID\n100\nAcDbEntity\n8\n0\n100\nAcDbTrace\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n11\n0.0\n21\n0.0\n31\n0.0\n"
                   "12\n0.0\n22\n0.0\n32\n0.0\n13\n0.0\n23\n0.0\n33\n0.0\n");
}

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

AcDbSolid::~AcDbSolid() = default;

AcDbTrace::AcDbTrace() {
    imp().begin_as("0\nTRACE\n100\nAcDbEntity\n8\n0\n100\nAcDbTrace\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n11\n0.0\n21\n0.0\n31\n0.0\n"
                   "12\n0.0\n22\n0.0\n32\n0.0\n13\n0.0\n23\n0.0\n33\n0.0\n");
}

AcDbTrace::AcDbTrace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
                     const AcGePoint3d& pt3)
    : AcDbTrace() {
    setPointAt(0, pt0);
    setPointAt(1, pt1);
    setPointAt(2, pt2);
    setPointAt(3, pt3);
}

AcDbTrace::~AcDbTrace() = default;

#define DEFINE_SOLID(CLASS)                                                                                  \
    Acad::ErrorStatus CLASS::getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const {                     \
        assertReadEnabled();                                                                                 \
        return get_point(imp(), index, point);                                                               \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::setPointAt(Adesk::UInt16 index, const AcGePoint3d& point) {                     \
        assertWriteEnabled();                                                                                \
        return set_point(imp(), index, point);                                                               \
    }                                                                                                        \
    double CLASS::thickness() const {                                                                        \
        assertReadEnabled();                                                                                 \
        return db::read_real(imp(), solid_place, 39);                                                        \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::setThickness(double thickness) {                                                \
        assertWriteEnabled();                                                                                \
        db::write_real(imp(), solid_place, 39, thickness);                                                   \
        return Acad::eOk;                                                                                    \
    }                                                                                                        \
    AcGeVector3d CLASS::normal() const {                                                                     \
        assertReadEnabled();                                                                                 \
        return db::read_normal(imp(), solid_place);                                                          \
    }                                                                                                        \
    Acad::ErrorStatus CLASS::setNormal(const AcGeVector3d& normal) {                                         \
        assertWriteEnabled();                                                                                \
        return set_normal(imp(), normal);                                                                    \
    }                                                                                                        \
    void CLASS::getEcs(AcGeMatrix3d& matrix) const {                                                         \
        matrix.setToPlaneToWorld(normal());                                                                  \
    }                                                                                                        \
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
