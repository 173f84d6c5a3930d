// Entities as tests have them: figures whose sizes can be worked out by hand.
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
        {"hatch between polylines",
         "0 HATCH|5 100|8 0|10 0|20 0|30 2|210 0|220 0|230 1|2 SOLID|70 1|71 0|91 2|92 3|72 1|73 1|93 3|10 0|"
         "20 0|42 0.3|10 9|20 0|42 0|10 9|20 7|42 -0.5|97 0|92 2|72 0|73 1|93 3|10 6|20 1|10 7|20 1|10 7|20 "
         "2|"
         "97 0|75 0|76 1|98 1|10 1|20 1",
         true},
        {"hatch between edges",
         "0 HATCH|5 100|8 0|10 0|20 0|30 0|210 1|220 2|230 3|2 ANSI31|70 0|71 0|91 1|92 1|93 4|72 1|10 0|20 "
         "0|"
         "11 4|21 0|72 2|10 4|20 2|40 2|50 270|51 450|73 1|72 3|10 2|20 4|11 2|21 0|40 0.5|50 0|51 180|73 0|"
         "72 4|94 3|73 0|74 0|95 8|96 4|40 0|40 0|40 0|40 0|40 1|40 1|40 1|40 1|10 0|20 4|10 -3|20 3|10 2|20 "
         "1|"
         "10 0|20 0|97 0|75 0|76 1|52 0|41 1|77 0|78 1|53 45|43 0|44 0|45 -1|46 1|79 0|98 0",
         true},
        {"rotated dimension",
         "0 DIMENSION|5 100|100 AcDbEntity|8 0|100 AcDbDimension|10 8|20 6|30 1|11 4|21 7|31 1|70 32|1  |3 "
         "Standard|"
         "100 AcDbAlignedDimension|13 0|23 1|33 1|14 8|24 0|34 1|50 10|100 AcDbRotatedDimension|1001 "
         "ACAD|1000 DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"aligned dimension",
         "0 DIMENSION|5 100|8 0|10 8|20 6|30 0|11 4|21 7|31 0|70 1|1  |3 Standard|13 0|23 1|33 0|14 8|24 "
         "0|34 0|1001 ACAD|1000 DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"angle between lines",
         "0 DIMENSION|5 100|8 0|10 0|20 8|30 0|11 4|21 4|31 0|70 2|1  |13 0|23 0|33 0|14 8|24 0|34 0|15 0|25 "
         "1|"
         "35 0|16 4|26 3|36 0|1001 ACAD|1000 DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"angle at a point",
         "0 DIMENSION|5 100|8 0|10 4|20 3|30 0|11 4|21 4|31 0|70 5|1  |13 8|23 0|33 0|14 0|24 8|34 0|15 0|25 "
         "0|35 0|1001 ACAD|1000 DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"radius",
         "0 DIMENSION|5 100|8 0|10 0|20 0|30 0|11 4|21 4|31 0|70 4|1  |15 3|25 3|35 0|40 1|1001 ACAD|1000 "
         "DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"diameter",
         "0 DIMENSION|5 100|8 0|10 -3|20 -3|30 0|11 4|21 4|31 0|70 3|1  |15 3|25 3|35 0|1001 ACAD|1000 "
         "DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"ordinate",
         "0 DIMENSION|5 100|8 0|10 0|20 0|30 0|11 6|21 9|31 0|70 70|1  |13 3|23 2|33 0|14 6|24 9|34 0|1001 "
         "ACAD|1000 DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"length of an arc",
         "0 ARC_DIMENSION|5 100|100 AcDbEntity|8 0|100 AcDbDimension|10 5|20 1|30 0|11 6|21 2|31 0|70 37|1  |"
         "100 AcDbArcDimension|13 4|23 0|33 0|14 0|24 4|34 0|15 0|25 0|35 0|70 0|40 0|41 1.5|71 0|16 4|26 "
         "0|36 0|"
         "17 0|27 4|37 0|1001 ACAD|1000 DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"jogged radius",
         "0 LARGE_RADIAL_DIMENSION|5 100|100 AcDbEntity|8 0|100 AcDbDimension|10 0|20 0|30 0|11 6|21 2|31 "
         "0|70 41|1  |"
         "100 AcDbRadialDimensionLarge|13 9|23 0|33 0|14 3|24 3|34 0|15 5|25 2|35 0|40 0.7|1001 ACAD|1000 "
         "DSTYLE|1002 {|1070 41|1040 0|1002 }",
         true},
        {"leader",
         "0 LEADER|5 100|8 0|3 Standard|71 1|72 0|73 3|76 3|10 0|20 0|30 1|10 4|20 4|30 1|10 6|20 4|30 1",
         false},
        {"curved leader",
         "0 LEADER|5 100|8 0|3 Standard|71 0|72 1|73 3|76 3|10 0|20 0|30 0|10 4|20 4|30 0|10 6|20 -1|30 2",
         false},
        {"multileader",
         "0 MULTILEADER|5 100|100 AcDbEntity|8 0|100 AcDbMLeader|270 2|300 CONTEXT_DATA{|40 1|10 5|20 5|30 "
         "0|41 1|"
         "140 1|290 0|11 0|21 0|31 1|296 0|302 LEADER{|290 1|291 1|10 5|20 5|30 0|11 1|21 0|31 0|40 2|"
         "304 LEADER_LINE{|10 0|20 0|30 0|10 1|20 4|30 0|305 }|304 LEADER_LINE{|10 9|20 0|30 0|305 }|303 "
         "}|301 }|"
         "172 0",
         true},
        {"image",
         "0 IMAGE|5 100|8 0|90 0|10 1|20 2|30 3|11 0.1|21 0|31 0|12 0|22 0.2|32 0|13 40|23 30|70 7|280 0",
         false},
        {"wipeout",
         "0 WIPEOUT|5 100|8 0|90 0|10 1|20 2|30 3|11 8|21 0|31 0|12 0|22 6|32 0|13 1|23 1|70 7|280 1|71 2|91 "
         "4|"
         "14 -0.5|24 -0.5|14 0.5|24 -0.5|14 0.25|24 0.5|14 -0.5|24 -0.5",
         false},
        {"underlay",
         "0 PDFUNDERLAY|5 100|8 0|10 1|20 2|30 0|41 2|42 2|43 2|50 30|280 3|11 0|21 0|11 4|21 0|11 4|21 3",
         true},
        {"shape", "0 SHAPE|5 100|8 0|10 1|20 2|30 0|40 3|2 BOX|50 30|41 0.5|51 15", true},
        {"mesh with levels",
         "0 MESH|5 100|100 AcDbEntity|8 0|100 AcDbSubDMesh|71 2|72 0|91 0|92 4|10 0|20 0|30 0|10 4|20 0|30 "
         "0|10 0|"
         "20 4|30 0|10 0|20 0|30 4|93 8|90 3|90 0|90 1|90 2|90 3|90 0|90 1|90 3|94 0|95 0|90 0",
         false},
    };
    return all;
}

} // namespace test
