#include "host/db/core/format_versions.h"

#include <algorithm>
#include <iterator>

namespace db {

namespace {

// The entities of R12; all others came later. Source: the DXF references of R12 to R14.
constexpr std::string_view in_r12[] = {"3DFACE",   "ARC",   "ATTDEF", "ATTRIB", "CIRCLE", "DIMENSION",
                                       "INSERT",   "LINE",  "POINT",  "SEQEND", "SHAPE",  "SOLID",
                                       "POLYLINE", "TRACE", "TEXT",   "VERTEX"};

struct type_row {
    std::string_view type;
    int first;
};

constexpr type_row later_types[] = {
    {"HATCH", release_14},     {"IMAGE", release_14},      {"LWPOLYLINE", release_14},
    {"OLE2FRAME", release_14}, {"VIEWPORT", release_2000}, // older ones hold it as extended data, which
                                                           // nobody makes anew
};

struct group_row {
    std::string_view type; // empty: every one
    int code;
    int first;
};

// Groups that came after the type that has them. Source: the DXF references of R12 to 2018.
constexpr group_row later_groups[] = {
    {"", 48, release_13},
    {"", 60, release_13},
    {"", 100, release_13},
    {"", 102, release_13},
    {"", 330, release_13},
    {"", 284, release_2007},
    {"", 347, release_2007},
    {"", 348, release_2007},
    {"", 370, release_2000},
    {"", 390, release_2000},
    {"", 410, release_2000},
    {"", 420, release_2004},
    {"", 430, release_2004},
    {"", 440, release_2004},
    {"ATTDEF", 280, release_2007},
    {"ATTRIB", 280, release_2007},
    {"DIMENSION", 41, release_2000},
    {"DIMENSION", 42, release_2000},
    {"DIMENSION", 71, release_2000},
    {"DIMENSION", 72, release_2000},
    {"DIMENSION", 280, release_2010},
    {"HATCH", 450, release_2004},
    {"HATCH", 451, release_2004},
    {"HATCH", 452, release_2004},
    {"HATCH", 453, release_2004},
    {"HATCH", 460, release_2004},
    {"HATCH", 461, release_2004},
    {"HATCH", 462, release_2004},
    {"HATCH", 463, release_2004},
    {"HATCH", 470, release_2004},
    {"LAYER", 290, release_2000},
    {"LWPOLYLINE", 91, release_2010},
    {"MTEXT", 44, release_2000},
    {"MTEXT", 45, release_2004},
    {"MTEXT", 63, release_2004},
    {"MTEXT", 73, release_2000},
    {"MTEXT", 90, release_2004},
    {"VERTEX", 91, release_2010},
};

} // namespace

int first_version_of(std::string_view type) {
    if (std::find(std::begin(in_r12), std::end(in_r12), type) != std::end(in_r12))
        return 0;
    const auto row = std::find_if(std::begin(later_types), std::end(later_types),
                                  [&](const type_row& candidate) { return candidate.type == type; });
    return row != std::end(later_types) ? row->first : release_13;
}

bool knows_group(int version, std::string_view type, int code) {
    if (version < release_13 && code >= 310 && code < 1000)
        return false; // R12 has groups up to 239 and extended data
    return std::none_of(std::begin(later_groups), std::end(later_groups), [&](const group_row& row) {
        return row.code == code && (row.type.empty() || row.type == type) && version < row.first;
    });
}

std::vector<int> unknown_groups(int version, std::string_view type) {
    std::vector<int> codes;
    for (const group_row& row : later_groups)
        if ((row.type.empty() || row.type == type) && version < row.first)
            codes.push_back(row.code);
    std::sort(codes.begin(), codes.end());
    return codes;
}

} // namespace db
