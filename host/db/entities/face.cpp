#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"

#include <array>

namespace {

constexpr db::field face_fields[] = {db::point(10, "0.0"), db::point(11, "0.0"), db::point(12, "0.0"),
                                     db::point(13, "0.0"), db::number(70)};
constexpr auto face_place = db::section_of<face_fields>("AcDbFace");
constexpr Adesk::UInt16 corners = 4;

Acad::ErrorStatus set_edge(AcDbImpObject& object, Adesk::UInt16 index, bool visible) {
    if (index >= corners)
        return Acad::eInvalidIndex;
    const int flags = db::read_integer(object, face_place, 70);
    db::write_integer(object, face_place, 70, visible ? flags & ~(1 << index) : flags | 1 << index);
    return Acad::eOk;
}

} // namespace

ENTITY_CLASS(AcDbFace, AcDbEntity, 3DFACE, face_place)

AcDbFace::AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
                   const AcGePoint3d& pt3, Adesk::Boolean e0vis, Adesk::Boolean e1vis, Adesk::Boolean e2vis,
                   Adesk::Boolean e3vis)
    : AcDbFace() {
    const std::array points{pt0, pt1, pt2, pt3};
    const std::array visible{e0vis, e1vis, e2vis, e3vis};
    for (Adesk::UInt16 i = 0; i < corners; ++i) {
        setVertexAt(i, points[i]);
        set_edge(imp(), i, visible[i]);
    }
}

AcDbFace::AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
                   Adesk::Boolean e0vis, Adesk::Boolean e1vis, Adesk::Boolean e2vis, Adesk::Boolean e3vis)
    : AcDbFace(pt0, pt1, pt2, pt2, e0vis, e1vis, e2vis, e3vis) {
}

Acad::ErrorStatus AcDbFace::getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const {
    assertReadEnabled();
    if (index >= corners)
        return Acad::eInvalidIndex;
    // Without a fourth corner it is where the third is.
    const bool missing = index == 3 && imp().groups().find(face_place, 13) == dxf::group_list::npos;
    point = db::read_point(imp(), face_place, missing ? 12 : 10 + index);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::setVertexAt(Adesk::UInt16 index, const AcGePoint3d& point) {
    assertWriteEnabled();
    if (index >= corners)
        return Acad::eInvalidIndex;
    db::write_point(imp(), face_place, 10 + index, point);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::isEdgeVisibleAt(Adesk::UInt16 index, Adesk::Boolean& visible) const {
    assertReadEnabled();
    if (index >= corners)
        return Acad::eInvalidIndex;
    visible = (db::read_integer(imp(), face_place, 70) & 1 << index) == 0;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::makeEdgeVisibleAt(Adesk::UInt16 index) {
    assertWriteEnabled();
    return set_edge(imp(), index, true);
}

Acad::ErrorStatus AcDbFace::makeEdgeInvisibleAt(Adesk::UInt16 index) {
    assertWriteEnabled();
    return set_edge(imp(), index, false);
}

Adesk::Boolean AcDbFace::subWorldDraw(AcGiWorldDraw* draw) {
    for (Adesk::UInt16 i = 0; i < corners; ++i) {
        Adesk::Boolean visible = true;
        isEdgeVisibleAt(i, visible);
        std::array<AcGePoint3d, 2> edge;
        getVertexAt(i, edge[0]);
        getVertexAt(static_cast<Adesk::UInt16>((i + 1) % corners), edge[1]);
        const bool is_point = i == 2 && edge[0] == edge[1]; // of a triangle
        if (!is_point && (visible || draw->regenType() == kAcGiForExtents))
            draw->geometry().polyline(2, edge.data());
    }
    return true;
}

Acad::ErrorStatus AcDbFace::subTransformBy(const AcGeMatrix3d& matrix) {
    for (Adesk::UInt16 i = 0; i < corners; ++i) {
        AcGePoint3d point;
        if (i < 3 || imp().groups().find(face_place, 13) != dxf::group_list::npos) {
            getVertexAt(i, point);
            setVertexAt(i, matrix * point);
        }
    }
    return Acad::eOk;
}
