#include "host/db/core/entity_classes.h"

#include "base/utf.h"
#include "dbSubD.h"
#include "dbbody.h"
#include "dbdim.h"
#include "dbelipse.h"
#include "dbents.h"
#include "dbfcf.h"
#include "dbhatch.h"
#include "dbhelix.h"
#include "dblead.h"
#include "dbmleader.h"
#include "dbmline.h"
#include "dbmtext.h"
#include "dbole.h"
#include "dbpl.h"
#include "dbproxy.h"
#include "dbray.h"
#include "dbregion.h"
#include "dbsol3d.h"
#include "dbspline.h"
#include "dbsurf.h"
#include "dbtable.h"
#include "dbunderlayref.h"
#include "dbwipe.h"
#include "dbxline.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/polyline_flags.h"
#include "host/dxf/code_line.h"
#include "host/dxf/group_list.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"
#include "rxdict.h"

#include <array>
#include <unordered_map>

namespace db {

namespace {

struct entity_row {
    std::string_view type;
    void (*init)();
    AcRxClass* (*desc)();
    // For types that several classes share: which one, by the groups. Null for the others.
    AcRxClass* (*choose)(dxf::padded_text record);
};

// A reference in rows and columns, whether it says so by its marker or by their numbers.
AcRxClass* class_of_insert(dxf::padded_text record) {
    if (!dxf::may_hold(record, "70") && !dxf::may_hold(record, "71") &&
        record.find("AcDbMInsertBlock") == record.npos)
        return AcDbBlockReference::desc();
    dxf::group_reader groups(record);
    dxf::raw_group group;
    constexpr int columns = 70;
    constexpr int rows = 71;
    constexpr int extended_data = 1000;
    while (groups.next(group) && group.code < extended_data)
        if ((group.code == 100 && dxf::trimmed(group.value) == "AcDbMInsertBlock") ||
            ((group.code == columns || group.code == rows) &&
             dxf::leading_real(group.value).value_or(1.0) > 1.0))
            return AcDbMInsertBlock::desc();
    return AcDbBlockReference::desc();
}

// The flags of a POLYLINE or a VERTEX.
int flags_of(dxf::padded_text record) {
    constexpr double most = 1e9;
    const double flags = dxf::leading_real(dxf::value_of(record, 70)).value_or(0.0);
    return flags > -most && flags < most ? static_cast<int>(flags) : 0;
}

AcRxClass* class_of_polyline(dxf::padded_text record) {
    const int flags = flags_of(record);
    if ((flags & polyline_flag::polyface) != 0)
        return AcDbPolyFaceMesh::desc();
    if ((flags & polyline_flag::mesh) != 0)
        return AcDbPolygonMesh::desc();
    return (flags & polyline_flag::in_space) != 0 ? AcDb3dPolyline::desc() : AcDb2dPolyline::desc();
}

AcRxClass* class_of_vertex(dxf::padded_text record) {
    const int flags = flags_of(record);
    if ((flags & vertex_flag::polyface) != 0)
        return (flags & vertex_flag::mesh) != 0 ? AcDbPolyFaceMeshVertex::desc() : AcDbFaceRecord::desc();
    if ((flags & vertex_flag::mesh) != 0)
        return AcDbPolygonMeshVertex::desc();
    return (flags & vertex_flag::in_space) != 0 ? AcDb3dPolylineVertex::desc() : AcDb2dVertex::desc();
}

void init_polylines() {
    AcDb2dPolyline::rxInit();
    AcDb3dPolyline::rxInit();
    AcDbPolygonMesh::rxInit();
    AcDbPolyFaceMesh::rxInit();
}

void init_vertices() {
    AcDbVertex::rxInit();
    AcDb2dVertex::rxInit();
    AcDb3dPolylineVertex::rxInit();
    AcDbPolygonMeshVertex::rxInit();
    AcDbPolyFaceMeshVertex::rxInit();
    AcDbFaceRecord::rxInit();
}

void init_proxies() {
    AcDbProxyEntity::rxInit();
    AcDbProxyObject::rxInit();
}

void init_dimensions() {
    AcDbDimension::rxInit();
    AcDbRotatedDimension::rxInit();
    AcDbAlignedDimension::rxInit();
    AcDb2LineAngularDimension::rxInit();
    AcDbDiametricDimension::rxInit();
    AcDbRadialDimension::rxInit();
    AcDb3PointAngularDimension::rxInit();
    AcDbOrdinateDimension::rxInit();
}

// By the lowest three bits of group 70.
AcRxClass* class_of_dimension(dxf::padded_text record) {
    constexpr AcRxClass* (*kinds[])() = {
        AcDbRotatedDimension::desc,   AcDbAlignedDimension::desc, AcDb2LineAngularDimension::desc,
        AcDbDiametricDimension::desc, AcDbRadialDimension::desc,  AcDb3PointAngularDimension::desc,
        AcDbOrdinateDimension::desc,  AcDbRotatedDimension::desc,
    };
    const double flags = dxf::leading_real(dxf::value_of(record, 70)).value_or(0.0);
    constexpr double most = 32767.0;
    return kinds[flags >= 0.0 && flags <= most ? static_cast<unsigned>(flags) & 7u : 0u]();
}

constexpr entity_row rows[] = {
    {"3DFACE", AcDbFace::rxInit, AcDbFace::desc, nullptr},
    {"3DLINE", AcDbLine::rxInit, AcDbLine::desc, nullptr},
    {"3DSOLID", AcDb3dSolid::rxInit, AcDb3dSolid::desc, nullptr},
    {"ACAD_PROXY_ENTITY", init_proxies, AcDbProxyEntity::desc, nullptr},
    {"ACAD_TABLE", AcDbTable::rxInit, AcDbTable::desc, nullptr},
    {"ARC", AcDbArc::rxInit, AcDbArc::desc, nullptr},
    {"ARC_DIMENSION", AcDbArcDimension::rxInit, AcDbArcDimension::desc, nullptr},
    {"ATTDEF", AcDbAttributeDefinition::rxInit, AcDbAttributeDefinition::desc, nullptr},
    {"ATTRIB", AcDbAttribute::rxInit, AcDbAttribute::desc, nullptr},
    {"BLOCK", AcDbBlockBegin::rxInit, AcDbBlockBegin::desc, nullptr},
    {"BODY", AcDbBody::rxInit, AcDbBody::desc, nullptr},
    {"CIRCLE", AcDbCircle::rxInit, AcDbCircle::desc, nullptr},
    {"DGNUNDERLAY", AcDbDgnReference::rxInit, AcDbDgnReference::desc, nullptr},
    {"DIMENSION", init_dimensions, AcDbRotatedDimension::desc, class_of_dimension},
    {"DWFUNDERLAY", AcDbDwfReference::rxInit, AcDbDwfReference::desc, nullptr},
    {"ELLIPSE", AcDbEllipse::rxInit, AcDbEllipse::desc, nullptr},
    {"ENDBLK", AcDbBlockEnd::rxInit, AcDbBlockEnd::desc, nullptr},
    {"EXTRUDEDSURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"HATCH", AcDbHatch::rxInit, AcDbHatch::desc, nullptr},
    {"HELIX", AcDbHelix::rxInit, AcDbHelix::desc, nullptr},
    {"IMAGE", AcDbRasterImage::rxInit, AcDbRasterImage::desc, nullptr},
    {"INSERT", AcDbBlockReference::rxInit, AcDbBlockReference::desc, class_of_insert},
    {"LARGE_RADIAL_DIMENSION", AcDbRadialDimensionLarge::rxInit, AcDbRadialDimensionLarge::desc, nullptr},
    {"LEADER", AcDbLeader::rxInit, AcDbLeader::desc, nullptr},
    {"LINE", AcDbLine::rxInit, AcDbLine::desc, nullptr},
    {"LOFTEDSURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"LWPOLYLINE", AcDbPolyline::rxInit, AcDbPolyline::desc, nullptr},
    {"MESH", AcDbSubDMesh::rxInit, AcDbSubDMesh::desc, nullptr},
    {"MLINE", AcDbMline::rxInit, AcDbMline::desc, nullptr},
    {"MTEXT", AcDbMText::rxInit, AcDbMText::desc, nullptr},
    {"MULTILEADER", AcDbMLeader::rxInit, AcDbMLeader::desc, nullptr},
    {"NURBSURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"OLE2FRAME", AcDbOle2Frame::rxInit, AcDbOle2Frame::desc, nullptr},
    {"PDFUNDERLAY", AcDbPdfReference::rxInit, AcDbPdfReference::desc, nullptr},
    {"PLANESURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"POINT", AcDbPoint::rxInit, AcDbPoint::desc, nullptr},
    {"POLYLINE", init_polylines, AcDb2dPolyline::desc, class_of_polyline},
    {"RAY", AcDbRay::rxInit, AcDbRay::desc, nullptr},
    {"REGION", AcDbRegion::rxInit, AcDbRegion::desc, nullptr},
    {"REVOLVEDSURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"SEQEND", AcDbSequenceEnd::rxInit, AcDbSequenceEnd::desc, nullptr},
    {"SHAPE", AcDbShape::rxInit, AcDbShape::desc, nullptr},
    {"SOLID", AcDbSolid::rxInit, AcDbSolid::desc, nullptr},
    {"SPLINE", AcDbSpline::rxInit, AcDbSpline::desc, nullptr},
    {"SURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"SWEPTSURFACE", AcDbSurface::rxInit, AcDbSurface::desc, nullptr},
    {"TEXT", AcDbText::rxInit, AcDbText::desc, nullptr},
    {"TOLERANCE", AcDbFcf::rxInit, AcDbFcf::desc, nullptr},
    {"TRACE", AcDbTrace::rxInit, AcDbTrace::desc, nullptr},
    {"VERTEX", init_vertices, AcDb2dVertex::desc, class_of_vertex},
    {"VIEWPORT", AcDbViewport::rxInit, AcDbViewport::desc, nullptr},
    {"WIPEOUT", AcDbWipeout::rxInit, AcDbWipeout::desc, nullptr},
    {"XLINE", AcDbXline::rxInit, AcDbXline::desc, nullptr},
};

} // namespace

void register_entity_classes() {
    AcDbCurve::rxInit();
    AcDbUnderlayReference::rxInit();
    for (const entity_row& row : rows)
        row.init();
    AcDbMInsertBlock::rxInit();
}

namespace {

const entity_row* row_of(std::string_view type) {
    static const std::unordered_map<std::string_view, const entity_row*> known = [] {
        std::unordered_map<std::string_view, const entity_row*> made;
        for (const entity_row& row : rows)
            made.emplace(row.type, &row);
        return made;
    }();
    const auto row = known.find(type);
    return row != known.end() ? row->second : nullptr;
}

} // namespace

AcRxClass* class_of_entity(const dxf::record_table& records, dxf::record_id id) {
    // Most entities are of types that have the same number in every drawing.
    static std::array<const entity_row*, dxf::known_types> by_number{};
    const std::uint32_t type = records.type(id);
    const entity_row* row = type < by_number.size() ? by_number[type] : nullptr;
    if (row == nullptr) {
        row = row_of(records.type_name(id));
        if (row != nullptr && type < by_number.size())
            by_number[type] = row;
    }
    if (row != nullptr)
        return row->choose != nullptr ? row->choose(records.text(id)) : row->desc();
    AcRxClass* const type_of_application = application_class(records.type_name(id), true);
    return type_of_application != nullptr ? type_of_application : AcDbEntity::desc();
}

} // namespace db
