#include "host/dxf/common_groups.h"

#include <initializer_list>
#include <unordered_map>

namespace dxf {

namespace {

constexpr common_set set_of(std::initializer_list<int> codes) {
    common_set set = 0;
    for (const int code : codes)
        set |= common_bit(code);
    return set;
}

struct type_row {
    std::string_view type;
    common_set own = 0;
};

// Source: the DXF reference's tables of entities. A code that it gives to a class and that no program writes
// there is left to the entity: 48 and 420 of MTEXT, whose columns stand in extended data or an embedded
// object and whose background has its colour in 421.
constexpr type_row rows[] = {
    {"3DFACE"},
    {"3DLINE"},
    {"3DSOLID"},
    {"ACAD_PROXY_ENTITY", set_of({92, 160, 310})},                           // its picture and its data
    {"ACAD_TABLE", set_of({60, 62, 92, 160, 284, 310, 370, 420, 430, 440})}, // rows, columns and cells
    {"ARC"},
    {"ARC_DIMENSION"},
    {"ATTDEF"},
    {"ATTRIB"},
    {"BLOCK"},
    {"BODY"},
    {"CIRCLE"},
    {"DGNUNDERLAY"},
    {"DIMENSION"},
    {"DWFUNDERLAY"},
    {"ELLIPSE"},
    {"ENDBLK"},
    {"EXTRUDEDSURFACE", set_of({48, 92, 160, 310})}, // scale along the way, what was extruded
    {"HATCH", set_of({92})},                         // type of a boundary
    {"HELIX"},
    {"IMAGE"},
    {"INSERT"},
    {"LARGE_RADIAL_DIMENSION"},
    {"LEADER"},
    {"LIGHT"},
    {"LINE"},
    {"LOFTEDSURFACE", set_of({48, 92, 160, 310})},
    {"LWPOLYLINE"},
    {"MESH", set_of({62, 92, 420, 430, 440})}, // counts, what is given to single faces
    {"MLINE"},
    {"MPOLYGON", set_of({92})},
    {"MTEXT"},
    {"MULTILEADER", set_of({92, 310})}, // colour of the text, of a leader line
    {"NURBSURFACE", set_of({48, 92, 160, 310})},
    {"OLE2FRAME", set_of({310})}, // its data
    {"OLEFRAME", set_of({310})},
    {"PDFUNDERLAY"},
    {"PLANESURFACE", set_of({48, 92, 160, 310})},
    {"POINT"},
    {"POLYLINE"},
    {"RAY"},
    {"REGION"},
    {"REVOLVEDSURFACE", set_of({48, 92, 160, 310})},
    {"SECTIONOBJECT", set_of({62, 92, 410})}, // count of corners
    {"SEQEND"},
    {"SHAPE"},
    {"SOLID"},
    {"SPLINE"},
    {"SURFACE", set_of({48, 92, 160, 310})},
    {"SWEPTSURFACE", set_of({48, 92, 160, 310})},
    {"TEXT"},
    {"TOLERANCE"},
    {"TRACE"},
    {"VERTEX"},
    {"VIEWPORT"},
    {"WIPEOUT"},
    {"XLINE"},
};

} // namespace

common_set codes_of_class(std::string_view type) {
    static const std::unordered_map<std::string_view, common_set> known = [] {
        std::unordered_map<std::string_view, common_set> made;
        for (const type_row& row : rows)
            made.emplace(row.type, row.own);
        return made;
    }();
    const auto row = known.find(type);
    return row != known.end() ? row->second : ~common_set(0);
}

} // namespace dxf
