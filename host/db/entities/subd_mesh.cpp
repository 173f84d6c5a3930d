#include "acgi.h"
#include "dbSubD.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/custom/proxy_graphics.h"

#include <algorithm>

namespace {

constexpr db::field subd_mesh_fields[] = {
    db::number(71, "2"), db::number(72, "0"), db::number(91, "0"), db::number(92, "0"),
    db::number(93, "0"), db::number(94, "0"), db::number(95, "0"), db::number(90, "0"),
};
constexpr db::section subd_mesh_place{{"AcDbSubDMesh"}, subd_mesh_fields};

// The entries of the list of faces: group 93 counts them, and edges (94) follow.
std::vector<Adesk::Int32> face_entries(const AcDbImpObject& imp) {
    std::vector<Adesk::Int32> entries;
    const auto& all = imp.groups().groups();
    const std::size_t count = imp.groups().find(subd_mesh_place, 93);
    if (count == dxf::group_list::npos)
        return entries;
    for (std::size_t i = count + 1; i < all.size() && all[i].code == 90; ++i) {
        constexpr double most = 2e9;
        const double entry = dxf::leading_real(all[i].value).value_or(0.0);
        entries.push_back(entry >= 0.0 && entry <= most ? static_cast<Adesk::Int32>(entry) : 0);
    }
    return entries;
}

} // namespace

ENTITY_CLASS(AcDbSubDMesh, AcDbEntity, MESH, subd_mesh_place)

Acad::ErrorStatus AcDbSubDMesh::subdLevel(Adesk::Int32& level) const {
    assertReadEnabled();
    level = std::max(db::read_integer(imp(), subd_mesh_place, 91), 0);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSubDMesh::numOfVertices(Adesk::Int32& count) const {
    assertReadEnabled();
    count = static_cast<Adesk::Int32>(db::read_points(imp(), subd_mesh_place, 10).size());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSubDMesh::numOfFaces(Adesk::Int32& count) const {
    assertReadEnabled();
    const std::vector<Adesk::Int32> entries = face_entries(imp());
    count = 0;
    for (std::size_t at = 0; at < entries.size(); at += static_cast<std::size_t>(entries[at]) + 1)
        ++count;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSubDMesh::getVertices(AcGePoint3dArray& vertices) const {
    assertReadEnabled();
    vertices.removeAll();
    for (const AcGePoint3d& vertex : db::read_points(imp(), subd_mesh_place, 10))
        vertices.append(vertex);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSubDMesh::getFaceArray(AcArray<Adesk::Int32>& faces) const {
    assertReadEnabled();
    faces.removeAll();
    for (const Adesk::Int32 entry : face_entries(imp()))
        faces.append(entry);
    return Acad::eOk;
}

Adesk::Boolean AcDbSubDMesh::subWorldDraw(AcGiWorldDraw* draw) {
    Adesk::Int32 level = 0;
    subdLevel(level);
    if (level > 0) {
        const std::string saved = db::read_proxy_graphics(imp());
        if (db::kind_of_proxy_graphics(saved) == db::metafile::graphics) {
            db::draw_proxy_graphics(saved, imp(), *draw);
            return true;
        }
    }
    const std::vector<AcGePoint3d> points = db::read_points(imp(), subd_mesh_place, 10);
    const std::vector<Adesk::Int32> faces = face_entries(imp());
    if (!points.empty())
        draw->geometry().shell(static_cast<Adesk::UInt32>(points.size()), points.data(),
                               static_cast<Adesk::UInt32>(faces.size()), faces.data());
    return true;
}

Acad::ErrorStatus AcDbSubDMesh::subTransformBy(const AcGeMatrix3d& matrix) {
    db::change_points(imp(), subd_mesh_place, 10, [&](const AcGePoint3d& point) { return matrix * point; });
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}
