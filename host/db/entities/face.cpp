#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"

#include <array>

ACRX_DXF_DEFINE_MEMBERS(AcDbFace, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, 3DFACE,
                        "ObjectDBX Classes")

namespace {

constexpr int face_order[] = {10, 20, 30, 11, 21, 31, 12, 22, 32, 13, 23, 33, 70};
constexpr dxf::group_place face_place{"AcDbFace", face_order};
constexpr Adesk::UInt16 corners = 4;

Acad::ErrorStatus set_edge(AcDbImpObject& object, Adesk::UInt16 index, bool visible) {
    if (index >= corners)
        return Acad::eInvalidIndex;
    const int flags = db::read_integer(object, face_place, 70);
    db::write_integer(object, face_place, 70, visible ? flags & ~(1 << index) : flags | 1 << index);
    return Acad::eOk;
}

} // namespace

AcDbFace::AcDbFace() {
    imp().begin_as("0\n3DFACE\n100\nAcDbEntity\n8\n0\n100\nAcDbFace\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n11\n0.0\n21\n0.0\n31\n0.0\n"
                   "12\n0.0\n22\n0.0\n32\n0.0\n13\n0.0\n23\n0.0\n33\n0.0\n");
}

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

AcDbFace::~AcDbFace() = default;

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
