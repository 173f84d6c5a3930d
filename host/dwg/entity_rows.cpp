#include "host/dwg/settle.h"
#include "host/dwg/type_rows.h"

#include <iterator>

namespace dwg {

namespace {

#define ZEF_DIMENSION                                                                                        \
    "{10+ RC:280} 3BD:210 2RD:11 BD:30 RC:10070=f T:1 BA:53 BA:51 BD: BD: BD: BA:54 BS:71 BS:72 BD:41 "      \
    "BD:42 "                                                                                                 \
    "{7+ B:73 B:74 B:75} 2RD:12 "
#define ZEF_IN_DIMENSION                                                                                     \
    "=AcDbDimension 280 2 10 11 12~o 70 1~ 71 72~1 41~1 42 73 74 75 53~0 54~0 51~0 3 210~z "
#define ZEF_TEXT_ORDER "=AcDbText 39~0 10 40 1 50~0 41~1 51~0 7~Standard 71~0 72~0 11 210~z "
#define ZEF_ATTRIBUTE                                                                                        \
    "@text N:7 {10+ RC:280} {18+ RC:10071=k {!k=1 @embedded}} T:2 BS:10073 RC:10070 {7+ B:10280} "
#define ZEF_CLIP                                                                                             \
    "BL:90 3BD:10 3BD:11 3BD:12 2RD:13 BS:70 B:280 RC:281 RC:282 RC:283 {10+ B:290} BS:71=k "                \
    "{?k=1 2RD:14 2RD:14} {!k=1 BL:91=n {*n 2RD:14}} H:340 H:360"
#define ZEF_CLIP_ORDER "90 10 11 12 13 340 70 280 281 282 283 {10+ 290} 360 71 91 [14]"
#define ZEF_BODY "@modeler"
#define ZEF_BODY_ORDER "=AcDbModelerGeometry {-10 '70=1 [1,3]} {13+ 290 2}"
#define ZEF_UNDERLAY "3BD:210 3BD:10 BA:50 BD:41 BD:42 BD:43 RC:280 RC:281 RC:282 BL:=n {*n 2RD:11} H:340"
#define ZEF_UNDERLAY_ORDER "=AcDbUnderlayReference 340 10 41~1 42~1 43~1 50~0 210~z 280 281 282 [11]"

constexpr type_row rows[] = {
    {1, "", "TEXT", role::entity, "@text N:7", ZEF_TEXT_ORDER "=AcDbText 73~0", settle_text},
    {2, "", "ATTRIB", role::entity, ZEF_ATTRIBUTE,
     ZEF_TEXT_ORDER "=AcDbAttribute {10+ 280} 2 10070 10073~0 74~0 10280", settle_attribute},
    {3, "", "ATTDEF", role::entity, ZEF_ATTRIBUTE "{10+ RC:} T:3",
     ZEF_TEXT_ORDER "=AcDbAttributeDefinition {10+ 280} 3 2 10070 10073~0 74~0 10280", settle_attribute},
    {4, "", "BLOCK", role::entity, "T:2", ""},
    {5, "", "ENDBLK", role::entity, "", "=AcDbBlockEnd"},
    {6, "", "SEQEND", role::entity, "", ""},
    {7, "", "INSERT", role::entity,
     "3BD:10 @scale BA:50 3BD:210 B:66=a {4+ {?a BL:=n}} N:2 {?a {-0 H: H:} {4+ {*n O:}} H:}",
     "=AcDbBlockReference 66~0 2 10 41~1 42~1 43~1 50~0 210~z"},
    {8, "", "INSERT", role::entity,
     "3BD:10 @scale BA:50 3BD:210 B:66=a {4+ {?a BL:=n}} BS:70 BS:71 BD:44 BD:45 N:2 {?a {-0 H: H:} {4+ {*n "
     "O:}} H:}",
     "=AcDbMInsertBlock 66~0 2 10 41~1 42~1 43~1 50~0 70~1 71~1 44~0 45~0 210~z"},
    {10, "", "VERTEX", role::entity, "RC:70 3BD:10 @widths BD:42 {10+ BL:91} BA:50",
     "=AcDbVertex =AcDb2dVertex 10 40~0 41~0 42~0 70 50~0 {10+ 91}", settle_vertex},
    {11, "", "VERTEX", role::entity, "RC:70 3BD:10", "=AcDbVertex =AcDb3dPolylineVertex 10 70"},
    {12, "", "VERTEX", role::entity, "RC:70 3BD:10", "=AcDbVertex =AcDbPolygonMeshVertex 10 70"},
    {13, "", "VERTEX", role::entity, "RC:70 3BD:10", "=AcDbVertex =AcDbPolyFaceMeshVertex 10 70"},
    {14, "", "VERTEX", role::entity, "BS:71 BS:72 BS:73 BS:74", "=AcDbFaceRecord 10 70 71~0 72~0 73~0 74~0",
     settle_face_record},
    {15, "", "POLYLINE", role::entity,
     "BS:70 BS:75 BD:40 BD:41 BT:39 BD:30 BE:210 {4+ BL:=n} {-0 H: H:} {4+ {*n O:}} H:",
     "=AcDb2dPolyline '66=1 10 39~0 70 40~0 41~0 75~0 210~z", settle_polyline},
    {16, "", "POLYLINE", role::entity, "RC:75=c RC:70 {4+ BL:=n} {-0 H: H:} {4+ {*n O:}} H:",
     "=AcDb3dPolyline '66=1 10 70 75~0", settle_polyline_3d},
    {17, "", "ARC", role::entity, "3BD:10 BD:40 BT:39 BE:210 BA:50 BA:51",
     "=AcDbCircle 39~0 10 40 210~z =AcDbArc 50 51"},
    {18, "", "CIRCLE", role::entity, "3BD:10 BD:40 BT:39 BE:210", "=AcDbCircle 39~0 10 40 210~z"},
    {19, "", "LINE", role::entity, "@line BT:39 BE:210", "=AcDbLine 39~0 10 11 210~z"},
    {20, "", "DIMENSION", role::entity, ZEF_DIMENSION "3BD:10 3BD:13 3BD:14 RC:=g N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbOrdinateDimension 13 14", settle_dimension},
    {21, "", "DIMENSION", role::entity, ZEF_DIMENSION "3BD:13 3BD:14 3BD:10 BA:52 BA:50 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbAlignedDimension 13 14 50~0 52~0 =AcDbRotatedDimension", settle_dimension},
    {22, "", "DIMENSION", role::entity, ZEF_DIMENSION "3BD:13 3BD:14 3BD:10 BA:52 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbAlignedDimension 13 14 52~0", settle_dimension},
    {23, "", "DIMENSION", role::entity, ZEF_DIMENSION "3BD:10 3BD:13 3BD:14 3BD:15 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDb3PointAngularDimension 13 14 15", settle_dimension},
    {24, "", "DIMENSION", role::entity, ZEF_DIMENSION "2RD:16 3BD:13 3BD:14 3BD:15 3BD:10 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDb2LineAngularDimension 13 14 15 16", settle_dimension},
    {25, "", "DIMENSION", role::entity, ZEF_DIMENSION "3BD:10 3BD:15 BD:40 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbRadialDimension 15 40", settle_dimension},
    {26, "", "DIMENSION", role::entity, ZEF_DIMENSION "3BD:15 3BD:10 BD:40 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbDiametricDimension 15 40", settle_dimension},
    {27, "", "POINT", role::entity, "3BD:10 BT:39 BE:210 BA:50", "=AcDbPoint 10 39~0 210~z 50~0"},
    {28, "", "3DFACE", role::entity, "@face", "=AcDbFace 10 11 12 13 70~0"},
    {29, "", "POLYLINE", role::entity, "BS:71 BS:72 {4+ BL:=n} {-0 H: H:} {4+ {*n O:}} H:",
     "=AcDbPolyFaceMesh '66=1 10 '70=64 71 72", settle_polyline},
    {30, "", "POLYLINE", role::entity,
     "BS:70 BS:75 BS:71 BS:72 BS:73 BS:74 {4+ BL:=n} {-0 H: H:} {4+ {*n O:}} H:",
     "=AcDbPolygonMesh '66=1 10 70 71 72 73~0 74~0 75~0", settle_polyline},
    {31, "", "SOLID", role::entity, "BT:39 BD:30 2RD:10 2RD:11 2RD:12 2RD:13 BE:210",
     "=AcDbTrace 10 11 12 13 39~0 210~z", settle_flat},
    {32, "", "TRACE", role::entity, "BT:39 BD:30 2RD:10 2RD:11 2RD:12 2RD:13 BE:210",
     "=AcDbTrace 10 11 12 13 39~0 210~z", settle_flat},
    {33, "", "SHAPE", role::entity,
     "3BD:10 BD:40 BA:50 BD:41 BA:51 BD:39 BS:2 3BD:210 H:", "=AcDbShape 39~0 10 40 2 50~0 41~1 51~0 210~z"},
    {34, "", "VIEWPORT", role::entity,
     "3BD:10 BD:40 BD:41 3BD:17 3BD:16 BA:51 BD:45 BD:42 BD:43 BD:44 BA:50 2RD:12 2RD:13 2RD:14 2RD:15 BS:72 "
     "{7+ BS:61} "
     "BL:=n BL:90 T:1 RC:281 B:74 B:71 3BD:110 3BD:111 3BD:112 BD:146 BS:79 {4+ BS:170} "
     "{7+ B:292 RC:282 BD:141 BD:142 CMC:63} {-0 {*n H:341}} {4+ {*n H:331}} H?:340 {-0 H:} H?:345 H?:346 "
     "{7+ H?:332 H?:348 H?:333 H?:10361}",
     "=AcDbViewport 10 40 41 '68=0 '69=0 12 13 14 15 16 17 42 43 44 45 50 51 72 [331,341] 90 340 1 281 71 74 "
     "110 111 "
     "112 345 346 79 146 170 61 332 348 333 292 282 141 142 63 421 10361"},
    {35, "", "ELLIPSE", role::entity, "3BD:10 3BD:11 3BD:210 BD:40 BD:41 BD:42",
     "=AcDbEllipse 10 11 210 40 41 42"},
    {36, "", "SPLINE", role::entity, "@spline",
     "=AcDbSpline 210 70 71 72 73 74 42 43 44 12~o 13~o [40] [41] [10] [11]"},
    {40, "", "RAY", role::entity, "3BD:10 3BD:11", "=AcDbRay 10 11"},
    {41, "", "XLINE", role::entity, "3BD:10 3BD:11", "=AcDbXline 10 11"},
    {44, "", "MTEXT", role::entity,
     "3BD:10 3BD:210 3BD:11 BD:41 {7+ BD:46} BD:40 BS:71 BS:72 BD: BD: T:1 N:7 BS:73 BD:44 B: {4+ BL:90=b "
     "@background} "
     "{18+ B:=a {?a @columns}}",
     "=AcDbMText 10 40 41 46 71 72 [3,1] 7~Standard 210~z 11~x 73 44 90~0 63 421 431 45 441 %1",
     settle_mtext},
    {45, "", "LEADER", role::entity,
     "B: BS:73 BS:72 BL:76=n {*n 3BD:10} 3BD: 3BD:210 3BD:211 3BD:212 3BD:213 {-7 BD:40 BD:41} B:74 B:71 BS: "
     "B: B: "
     "H?:340 N:3",
     "=AcDbLeader 3 71~1 72~0 73 74 75 40 41 76 [10] 340 211~x 210~z 212~o 213~o"},
    {46, "", "TOLERANCE", role::entity, "3BD:10 3BD:11 3BD:210 T:1 N:3", "=AcDbFcf 3 10 1 210~z 11~x"},
    {47, "", "MLINE", role::entity,
     "BD:40 RC:70 3BD:10 3BD:210 BS:71=f RC:73=l BS:72=n %1 {*n 3BD:11 3BD:12 3BD:13 {*l BS:74=k {*k BD:41} "
     "BS:75=k "
     "{*k BD:42}}} %0 H:340",
     "=AcDbMline 2 340 40 70 71 72 73 10 210 %1", settle_mline},
    {77, "LWPOLYLINE", "LWPOLYLINE", role::entity, "@lwpolyline",
     "=AcDbPolyline 90 70 43 38~0 39~0 <10,40,41,42~0,91> 210~z"},
    {78, "HATCH", "HATCH", role::entity,
     "{4+ %2 BL:450=h BL:451 BD:460 BD:461 BL:452 BD:462 BL:453=n {*n BD:463 CMC:63} T:470 %0} "
     "BD:30 3BD:210 T:2 B:70=s B:71 BL:91=p %1 {*p BL:92=f |q=f "
     "{?f&2 B:72=b B:73 BL:93=m {*m 2RD:10 {?b BD:42}}} "
     "{!f&2 BL:93=m {*m RC:72=e {?e=1 2RD:10 2RD:11} {?e=2 2RD:10 BD:40 BA:50 BA:51 B:73} "
     "{?e=3 2RD:10 2RD:11 BD:40 BA:50 BA:51 B:73} "
     "{?e=4 BL:94 B:73=r B:74 BL:95=k BL:96=c {*k BD:40} {*c 2RD:10 {?r BD:42}} "
     "{10+ BL:97=g {?g {*g 2RD:11} 2RD:12 2RD:13}}}}} BL:97=k {*k H:330}} %0 BS:75 BS:76 "
     "{!s BA:52 BD:41 B:77 BS:78=n %3 {*n BA:53 BD:43 BD:44 BD:45 BD:46 BS:79=k {*k BD:49}} %0} "
     "{?q&4 BD:47} BL:98=n %4 {*n 2RD:10}",
     "=AcDbHatch 10 210 2 70 71 91 %1 75 76 52 41 77 78 %3 47 98 %4 %2", settle_hatch},
    {37, "", "REGION", role::entity, ZEF_BODY, ZEF_BODY_ORDER},
    {38, "", "3DSOLID", role::entity, ZEF_BODY " {7+ H:350}", ZEF_BODY_ORDER " {7+ =AcDb3dSolid 350}"},
    {39, "", "BODY", role::entity, ZEF_BODY, ZEF_BODY_ORDER},
    {0, "ACAD_TABLE", "ACAD_TABLE", role::entity, "{-7 3BD:10 @scale BA:50 3BD:210 B:66=a N:2 H:342 @table}",
     "=AcDbBlockReference 2 10 41~1 42~1 43~1 50~0 210~z =AcDbTable 342 343 %1 %2 %3 %4"},
    {0, "LIGHT", "LIGHT", role::entity,
     "BL:90 T:1 BS:70 B:290 {-0 CMR:10090} {4+ CMC:63} B:291 BD:40 3BD:10 3BD:11 BS:72 B:292 BD:41 BD:42 "
     "BA:50 BA:51 "
     "B:293 BS:73 BS:91 RC:280",
     "=AcDbLight 90 1 70 290 10090 63 421 431 291 40 10 11 72 292 41 42 50 51 293 73 91 280"},
    {0, "MESH", "MESH", role::entity,
     "%1 BS:71 B:72 BL:91 BL:92=n {*n 3BD:10} BL:93=n {*n BL:90} BL:94=n {*n BL:90 BL:90} BL:95=n {*n "
     "BD:140} BL:90",
     "=AcDbSubDMesh %1"},
    {0, "PDFUNDERLAY", "PDFUNDERLAY", role::entity, ZEF_UNDERLAY, ZEF_UNDERLAY_ORDER},
    {0, "DWFUNDERLAY", "DWFUNDERLAY", role::entity, ZEF_UNDERLAY, ZEF_UNDERLAY_ORDER},
    {0, "DGNUNDERLAY", "DGNUNDERLAY", role::entity, ZEF_UNDERLAY, ZEF_UNDERLAY_ORDER},
    {0, "WIPEOUT", "WIPEOUT", role::entity, ZEF_CLIP, "=AcDbWipeout " ZEF_CLIP_ORDER, settle_clip},
    {0, "IMAGE", "IMAGE", role::entity, ZEF_CLIP, "=AcDbRasterImage " ZEF_CLIP_ORDER, settle_clip},
    {0, "ARC_DIMENSION", "ARC_DIMENSION", role::entity,
     ZEF_DIMENSION "3BD:10 3BD:13 3BD:14 3BD:15 B:20070 BD:40 BD:10041 B:10071 3BD:16 3BD:17 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbArcDimension 13 14 15 20070 40 10041 10071 16 17", settle_dimension},
    {0, "LARGE_RADIAL_DIMENSION", "LARGE_RADIAL_DIMENSION", role::entity,
     ZEF_DIMENSION "3BD:10 3BD:13 BD:40 3BD:14 3BD:15 N:3 N:2",
     ZEF_IN_DIMENSION "=AcDbRadialDimensionLarge 13 14 15 40", settle_dimension},
    {0, "MULTILEADER", "MULTILEADER", role::entity,
     "{10+ BS:270} %1 BL:=r {*r '302=LEADER{ B:290 B:291 3BD:10 3BD:11 BL:=k {*k 3BD:12 3BD:13} BL:90 BD:40 "
     "BL:=l "
     "{*l '304=LEADER_LINE{ BL:=p {*p 3BD:10} BL:=k {*k BL:90 BL:=q {*q 3BD:11 3BD:12}} BL:91 {10+ "
     "@leader_line} '305=} } "
     "{10+ BS:271} '303=} } %2 BD:40 3BD:10 BD:41 BD:140 BD:145 BS:174 BS:175 BS:176 BS:177 B:290=t "
     "{?t T:304 3BD:11 H:340 3BD:12 3BD:13 BD:42 BD:43 BD:44 BD:45 BS:170 CMR:90 BS:171 BS:172 CMR:91 BD:141 "
     "BL:92 "
     "B:291 B:292 BS:173 B:293 BD:142 BD:143 B:294 BL:=n {*n BD:144} B:295 B:296} "
     "{!t B:296=u {?u H:341 3BD:14 3BD:15 3BD:16 BD:46 CMR:93 16BD:47}} "
     "3BD:110 3BD:111 3BD:112 B:297 %0 {10+ BS:273 BS:272} "
     "%3 H:340 BL:90 BS:170 CMR:91 H:341 BL:171 B:290 B:291 BD:41 H?:342 BD:42 BS:172 H?:343 BS:173 BS:95 "
     "BS:174 BS:175 "
     "CMR:92 B:292 H?:344 CMR:93 3BD:10 BD:43 BS:176 B:293 {-7 BL:=n {*n B:94 H:345}} BL:=n {*n H:330 T:302 "
     "BS:177 "
     "BD:44} B:294 BS:178 BS:179 BD:45 {10+ BS:271 BS:10273 BS:10272} {13+ B:295}",
     "=AcDbMLeader 270 '300=CONTEXT_DATA{ %2 %1 272 273 '301=} %3", settle_multileader},
};

} // namespace

std::span<const type_row> entity_rows() {
    return rows;
}

} // namespace dwg
