#include "host/version/markers.h"

#include <algorithm>
#include <iterator>

namespace version {

namespace {

// Source: the DXF reference's group tables of R13 and later.
constexpr int nothing[] = {dxf::no_code};
constexpr int of_arc[] = {50, 51};
constexpr int second_of_text[] = {73};
constexpr int of_attribute[] = {2, 70, 73, 74, 280};
constexpr int of_definition[] = {2, 3, 70, 73, 74, 280};
constexpr int of_aligned[] = {12, 22, 32, 13, 23, 33, 14, 24, 34, 50, 52};
constexpr int of_radial[] = {15, 25, 35, 40};
constexpr int of_angular[] = {13, 23, 33, 14, 24, 34, 15, 25, 35, 16, 26, 36, 40, 50};

struct type_row {
    std::string_view type;
    subclass first;
    subclass second = {};
};

constexpr type_row types[] = {
    {"3DFACE", {"AcDbFace"}},
    {"3DSOLID", {"AcDbModelerGeometry"}, {"AcDb3dSolid", nothing}},
    {"ARC", {"AcDbCircle"}, {"AcDbArc", of_arc}},
    {"ATTDEF", {"AcDbText"}, {"AcDbAttributeDefinition", of_definition}},
    {"ATTRIB", {"AcDbText"}, {"AcDbAttribute", of_attribute}},
    {"BLOCK", {"AcDbBlockBegin"}},
    {"CIRCLE", {"AcDbCircle"}},
    {"ELLIPSE", {"AcDbEllipse"}},
    {"ENDBLK", {"AcDbBlockEnd"}},
    {"HATCH", {"AcDbHatch"}},
    {"LEADER", {"AcDbLeader"}},
    {"LINE", {"AcDbLine"}},
    {"LWPOLYLINE", {"AcDbPolyline"}},
    {"MTEXT", {"AcDbMText"}},
    {"POINT", {"AcDbPoint"}},
    {"RAY", {"AcDbRay"}},
    {"SHAPE", {"AcDbShape"}},
    {"SOLID", {"AcDbTrace"}},
    {"SPLINE", {"AcDbSpline"}},
    {"TEXT", {"AcDbText"}, {"AcDbText", second_of_text}},
    {"TOLERANCE", {"AcDbFcf"}},
    {"TRACE", {"AcDbTrace"}},
    {"VIEWPORT", {"AcDbViewport"}},
    {"XLINE", {"AcDbXline"}},
};

std::vector<subclass> of_dimension(std::int64_t flags) {
    constexpr int kind = 7;
    switch (flags & kind) {
    case 0:
        return {{"AcDbDimension"}, {"AcDbAlignedDimension", of_aligned}, {"AcDbRotatedDimension", nothing}};
    case 1:
        return {{"AcDbDimension"}, {"AcDbAlignedDimension", of_aligned}};
    case 2:
        return {{"AcDbDimension"}, {"AcDb2LineAngularDimension", of_angular}};
    case 3:
        return {{"AcDbDimension"}, {"AcDbDiametricDimension", of_radial}};
    case 4:
        return {{"AcDbDimension"}, {"AcDbRadialDimension", of_radial}};
    case 5:
        return {{"AcDbDimension"}, {"AcDb3PointAngularDimension", of_angular}};
    default:
        return {{"AcDbDimension"}, {"AcDbOrdinateDimension", of_angular}};
    }
}

// Bits of group 70 of polylines.
constexpr std::int64_t in_space = 8;
constexpr std::int64_t is_mesh = 16;
constexpr std::int64_t has_faces = 64;

std::vector<subclass> of_polyline(std::int64_t flags) {
    if ((flags & has_faces) != 0)
        return {{"AcDbPolyFaceMesh"}};
    if ((flags & is_mesh) != 0)
        return {{"AcDbPolygonMesh"}};
    return {{(flags & in_space) != 0 ? "AcDb3dPolyline" : "AcDb2dPolyline"}};
}

std::vector<subclass> of_vertex(std::int64_t flags, std::int64_t polyline) {
    constexpr std::int64_t is_place = 64; // the place of a vertex; without it a face of such
    if ((polyline & has_faces) != 0)
        return (flags & is_place) != 0
                   ? std::vector<subclass>{{"AcDbVertex", nothing}, {"AcDbPolyFaceMeshVertex"}}
                   : std::vector<subclass>{{"AcDbFaceRecord"}};
    if ((polyline & is_mesh) != 0)
        return {{"AcDbVertex", nothing}, {"AcDbPolygonMeshVertex"}};
    return {{"AcDbVertex", nothing}, {(polyline & in_space) != 0 ? "AcDb3dPolylineVertex" : "AcDb2dVertex"}};
}

} // namespace

std::vector<subclass> markers_of_entity(std::string_view type, const shape_of_record& shape) {
    if (type == "DIMENSION")
        return of_dimension(shape.flags);
    if (type == "POLYLINE")
        return of_polyline(shape.flags);
    if (type == "VERTEX")
        return of_vertex(shape.flags, shape.owner_flags);
    if (type == "INSERT")
        return {{shape.flags > 1 || shape.rows > 1 ? "AcDbMInsertBlock" : "AcDbBlockReference"}};
    const auto row = std::lower_bound(std::begin(types), std::end(types), type,
                                      [](const type_row& a, std::string_view b) { return a.type < b; });
    if (row == std::end(types) || row->type != type)
        return {};
    if (row->second.marker.empty())
        return {row->first};
    return {row->first, row->second};
}

std::string_view marker_of_entry(std::string_view type) {
    struct entry_row {
        std::string_view type;
        std::string_view marker;
    };
    static constexpr entry_row entries[] = {
        {"APPID", "AcDbRegAppTableRecord"},      {"BLOCK_RECORD", "AcDbBlockTableRecord"},
        {"DIMSTYLE", "AcDbDimStyleTableRecord"}, {"LAYER", "AcDbLayerTableRecord"},
        {"LTYPE", "AcDbLinetypeTableRecord"},    {"STYLE", "AcDbTextStyleTableRecord"},
        {"UCS", "AcDbUCSTableRecord"},           {"VIEW", "AcDbViewTableRecord"},
        {"VPORT", "AcDbViewportTableRecord"},
    };
    for (const entry_row& entry : entries)
        if (entry.type == type)
            return entry.marker;
    return {};
}

bool is_common(int code) {
    static constexpr int codes[] = {6, 8, 48, 60, 62, 67, 370, 390, 410, 420, 430, 440};
    return std::binary_search(std::begin(codes), std::end(codes), code);
}

} // namespace version
