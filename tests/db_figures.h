// Curves, faces and meshes as tests have them: figures whose sizes can be worked out by hand.
#pragma once

#include "tests/db_entities.h"

#include <sstream>
#include <vector>

namespace test {

// A box in space, to be compared with a slack that is relative to its size.
inline bool same_box(const AcDbExtents& a, const AcDbExtents& b, double slack = 1e-9) {
    const double size = 1.0 + a.minPoint().distanceTo(a.maxPoint());
    return a.minPoint().distanceTo(b.minPoint()) <= slack * size &&
           a.maxPoint().distanceTo(b.maxPoint()) <= slack * size;
}

inline std::string text_of(const AcDbExtents& box) {
    std::ostringstream out;
    for (const AcGePoint3d& point : {box.minPoint(), box.maxPoint()})
        out << "(" << point.x << ", " << point.y << ", " << point.z << ")";
    return out.str();
}

struct figure {
    const char* name;
    const char* groups; // the entity has handle 100
    bool round;         // whether only what keeps circles round may be done to it
};

inline const std::vector<figure>& figures() {
    static const std::vector<figure> all = {
        {"line", "0 LINE|5 100|8 0|39 2|10 1|20 2|30 3|11 4|21 6|31 3", false},
        {"line in space", "0 3DLINE|5 100|8 0|10 1|20 2|30 3|11 4|21 6|31 8", false},
        {"circle", "0 CIRCLE|5 100|8 0|39 1|10 5|20 6|30 7|40 2", true},
        {"arc", "0 ARC|5 100|8 0|10 5|20 6|40 2|50 300|51 100", true},
        {"arc in a plane", "0 ARC|5 100|8 0|10 5|20 6|30 1|40 2|50 10|51 200|210 1|220 2|230 3", true},
        {"ellipse", "0 ELLIPSE|5 100|8 0|10 1|20 2|30 3|11 4|21 1|31 0|40 0.5|41 0|42 6.283185307179586",
         false},
        {"elliptic arc",
         "0 ELLIPSE|5 100|8 0|10 1|20 2|30 0|11 0|21 0|31 3|210 1|220 0|230 0|40 0.25|41 1|42 4", false},
        {"spline",
         "0 SPLINE|5 100|8 0|70 4|71 2|72 6|73 3|40 0|40 0|40 0|40 1|40 1|40 1|41 1|41 0.7071067811865476|"
         "41 1|10 1|20 0|30 0|10 1|20 1|30 0|10 0|20 1|30 0",
         false},
        {"spline through points",
         "0 SPLINE|5 100|8 0|70 8|71 3|74 3|12 1|22 1|32 1|11 0|21 0|31 0|11 5|21 5|31 1|11 9|21 0|31 0",
         false},
        {"light polyline", "0 LWPOLYLINE|5 100|8 0|90 3|70 1|43 0|38 2|39 1|10 0|20 0|10 4|20 0|10 4|20 3",
         false},
        {"light polyline with arcs and widths",
         "0 LWPOLYLINE|5 100|8 0|90 4|70 1|210 0|220 0|230 -1|10 0|20 0|40 1|41 1|42 0|10 8|20 0|40 1|41 1|"
         "42 1|10 8|20 6|40 0|41 0|42 -0.5|10 0|20 6|40 0|41 0|42 0",
         true},
        {"old polyline",
         "0 POLYLINE|5 100|8 0|66 1|10 0|20 0|30 1|70 0|0 VERTEX|5 101|8 0|10 1|20 1|30 1|0 VERTEX|5 102|8 0|"
         "10 5|20 1|30 1|42 1|0 VERTEX|5 103|8 0|10 5|20 4|30 1|0 SEQEND|5 104|8 0",
         true},
        {"polyline in space",
         "0 POLYLINE|5 100|8 0|66 1|10 0|20 0|30 0|70 9|0 VERTEX|5 101|8 0|10 1|20 1|30 1|70 32|0 VERTEX|"
         "5 102|8 0|10 5|20 1|30 4|70 32|0 VERTEX|5 103|8 0|10 5|20 4|30 0|70 32|0 SEQEND|5 104|8 0",
         false},
        {"mesh",
         "0 POLYLINE|5 100|8 0|66 1|10 0|20 0|30 0|70 48|71 2|72 3|0 VERTEX|5 101|8 0|10 0|20 0|30 0|70 64|"
         "0 VERTEX|5 102|8 0|10 1|20 0|30 1|70 64|0 VERTEX|5 103|8 0|10 2|20 0|30 0|70 64|0 VERTEX|5 104|8 0|"
         "10 0|20 3|30 0|70 64|0 VERTEX|5 105|8 0|10 1|20 3|30 1|70 64|0 VERTEX|5 106|8 0|10 2|20 3|30 0|70 "
         "64|"
         "0 SEQEND|5 107|8 0",
         false},
        {"polyface",
         "0 POLYLINE|5 100|8 0|66 1|10 0|20 0|30 0|70 64|71 4|72 2|0 VERTEX|5 101|8 0|10 0|20 0|30 0|70 192|"
         "0 VERTEX|5 102|8 0|10 4|20 0|30 0|70 192|0 VERTEX|5 103|8 0|10 0|20 4|30 0|70 192|0 VERTEX|5 104|"
         "8 0|10 0|20 0|30 4|70 192|0 VERTEX|5 105|8 0|10 0|20 0|30 0|70 128|71 1|72 -2|73 3|0 VERTEX|5 106|"
         "8 0|10 0|20 0|30 0|70 128|71 1|72 4|0 SEQEND|5 107|8 0",
         false},
        {"face", "0 3DFACE|5 100|8 0|10 0|20 0|30 0|11 4|21 0|31 1|12 4|22 4|32 0|13 0|23 4|33 2|70 5",
         false},
        {"solid", "0 SOLID|5 100|8 0|10 0|20 0|11 4|21 0|12 0|22 3|13 4|23 3|39 2", false},
        {"trace", "0 TRACE|5 100|8 0|10 0|20 0|11 4|21 0|12 0|22 3|13 4|23 3|210 0|220 1|230 0", false},
        {"multiline",
         "0 MLINE|5 100|8 0|2 STANDARD|40 1|70 1|71 1|72 2|73 2|10 0|20 0|30 0|210 0|220 0|230 1|11 0|21 "
         "0|31 0|"
         "12 1|22 0|32 0|13 0|23 1|33 0|74 4|41 1|41 0|41 2|41 3|75 0|74 2|41 -1|41 0|75 0|11 9|21 0|31 0|12 "
         "1|"
         "22 0|32 0|13 0|23 1|33 0|74 2|41 1|41 0|75 0|74 2|41 -1|41 0|75 0",
         true},
        {"helix",
         "0 HELIX|5 100|100 AcDbEntity|8 0|100 AcDbSpline|70 0|71 3|72 8|73 4|74 0|40 0|40 0|40 0|40 0|40 1|"
         "40 1|40 1|40 1|10 1|20 0|30 0|10 1|20 1|30 1|10 -1|20 1|30 2|10 -1|20 0|30 3|100 AcDbHelix|90 29|"
         "91 63|10 0|20 0|30 0|11 1|21 0|31 0|12 0|22 0|32 1|40 1|41 0.5|42 6|290 1|280 1",
         true},
    };
    return all;
}

} // namespace test
