#include "host/dwg/settle.h"
#include "host/dwg/type_rows.h"

#include <iterator>

namespace dwg {

namespace {

#define ZEF_ENTRY "=AcDbSymbolTableRecord "
#define ZEF_CONTROL "BL:=n {*n O:} "
#define ZEF_PLOT                                                                                             \
    "T:1 T:2 BS:70 BD:40 BD:41 BD:42 BD:43 BD:44 BD:45 T:4 BD:46 BD:47 BS:72 BS:73 BS:74 BD:48 BD:49 "       \
    "BD:140 "                                                                                                \
    "BD:141 {-0 T:6} BD:142 BD:143 T:7 BS:75 BD:147 BD:148 BD:149 {4+ BS:76 BS:77 BS:78 N:6} {7+ H?:333} "
#define ZEF_PLOT_ORDER                                                                                       \
    "=AcDbPlotSettings 1 2 4 6 40 41 42 43 44 45 46 47 48 49 140 141 142 143 70 72 73 74 7 75 147 76 77 78 " \
    "148 149 333 "

// What a dimension is attached to: a path to an object, and a point of it. Intersections were not seen.
#define ZEF_ATTACHED "T:1 RC:72 BL:=k {*k H:331} BS:73 BL:91 BL:=i BD:40 3BD:10 {!i B:75}"
// A property of a visual style, with what it comes from.
#define ZEF_P(field) field " BS:176 "
#define ZEF_P_S ZEF_P("BS:90")
#define ZEF_P_L ZEF_P("BL:90")
#define ZEF_P_D ZEF_P("BD:40")
#define ZEF_P_C ZEF_P("CMC:62")
#define ZEF_P_B ZEF_P("B:290")
// Up to 2007 they stand alone, in 2010 with what they come from, since 2013 more of them and by their types.
#define ZEF_STYLE_2000                                                                                       \
    "{-7 BS:71 BS:72 BS:73 BD:40 BD:41 CMC:63 BL:90 BS:74 BL:91 CMC:64 CMC:65 BS:75 BD:42 BL:92 CMC:66 "     \
    "BD:43 "                                                                                                 \
    "BS:76 BS:77 BS:78 CMC:67 BS:79 RC:170 BS:171 B:290 BS:174 BS:175 BL:93 BL:44 BS:173 {7+ BD:45} B:291} "
#define ZEF_STYLE_2010                                                                                       \
    "{10+ {-10 BS:177 B:291 %1 " ZEF_P("BS:71") ZEF_P("BS:72") ZEF_P("BS:73") ZEF_P("BL:90") ZEF_P("BD:40")  \
        ZEF_P("BD:41") ZEF_P("CMC:63") ZEF_P("BS:74") ZEF_P("BL:91") ZEF_P("CMC:64") ZEF_P("CMC:65")         \
            ZEF_P("BS:75") ZEF_P("BS:175") ZEF_P("BD:42") ZEF_P("BL:92") ZEF_P("CMC:66") ZEF_P("BD:43")      \
                ZEF_P("BS:76") ZEF_P("BS:77") ZEF_P("BS:78") ZEF_P("CMC:67") ZEF_P("BS:79") ZEF_P("BS:170")  \
                    ZEF_P("BS:171") ZEF_P("B:290") ZEF_P("BL:93") ZEF_P("BD:44") ZEF_P("BS:173") "}} "
#define ZEF_STYLE_2013                                                                                       \
    "{13+ BS: B:291 %1 " ZEF_P_S ZEF_P_S ZEF_P_S ZEF_P_L ZEF_P_D ZEF_P_D ZEF_P_C ZEF_P_S ZEF_P_L ZEF_P_C     \
        ZEF_P_C ZEF_P_S ZEF_P_S ZEF_P_D ZEF_P_L ZEF_P_C ZEF_P_D ZEF_P_S ZEF_P_S ZEF_P_S ZEF_P_C ZEF_P_S      \
            ZEF_P_S ZEF_P_S ZEF_P_B ZEF_P_L ZEF_P_D ZEF_P_S ZEF_P_B ZEF_P_B ZEF_P_B ZEF_P_B ZEF_P_B ZEF_P_B  \
                ZEF_P_B ZEF_P_B ZEF_P_B ZEF_P_L ZEF_P_D ZEF_P_D ZEF_P_L ZEF_P_C ZEF_P_L ZEF_P_L ZEF_P_C      \
                    ZEF_P_B ZEF_P_L ZEF_P_L ZEF_P_L ZEF_P_B ZEF_P_L ZEF_P_C ZEF_P_D ZEF_P_L ZEF_P("T:1")     \
                        ZEF_P_B ZEF_P_D ZEF_P_D "}"

constexpr type_row rows[] = {
    {48, "", "BLOCK_RECORD", role::control, ZEF_CONTROL "H:360 H:360", ""},
    {49, "", "BLOCK_RECORD", role::entry, "@block_header",
     ZEF_ENTRY "=AcDbBlockTableRecord 2 340 310 10070 280 281"},
    {50, "", "LAYER", role::control, ZEF_CONTROL, ""},
    {51, "", "LAYER", role::entry, "@head BS:=f CMC:62 H: H:390 {7+ H:347} N:6 {13+ H:348}",
     ZEF_ENTRY "=AcDbLayerTableRecord 2 70 62 420 430 6 290~1 370 390 347 348", settle_layer},
    {52, "", "STYLE", role::control, ZEF_CONTROL, ""},
    {53, "", "STYLE", role::entry, "@head B:=s B:=v BD:40 BD:41 BA:50 RC:71 BD:42 T:3 T:4 H:",
     ZEF_ENTRY "=AcDbTextStyleTableRecord 2 70 40 41 50 71 42 3 4", settle_style},
    {56, "", "LTYPE", role::control, ZEF_CONTROL "O: O:", ""},
    {57, "", "LTYPE", role::entry, "@head T:3 BD:40 RC:72 RC:73=n @dashes H: @dash_styles",
     ZEF_ENTRY "=AcDbLinetypeTableRecord 2 70 3 72 73 40 [49,74,75,340,46,50,44,45,9]"},
    {60, "", "VIEW", role::control, ZEF_CONTROL, ""},
    {61, "", "VIEW", role::entry,
     "@head BD:40 BD:41 2RD:10 3BD:12 3BD:11 BA:50 BD:42 BD:43 BD:44 @view_mode RC:281 {7+ B: RC: BD: BD: "
     "CMC:} B:=p "
     "B:72=u {?u 3BD:110 3BD:111 3BD:112 BD:146 BS:79} {7+ B:73} H: {7+ H?:332 H?:348 H?:361} {?u H?:346 "
     "H?:345} "
     "{7+ H?:334}",
     ZEF_ENTRY
     "=AcDbViewTableRecord 2 70 40 10 41 11 12 42 43 44 50 71 281 72 73 110 111 112 79 146 345 346 332 334 "
     "348 361",
     settle_view},
    {62, "", "UCS", role::control, ZEF_CONTROL, ""},
    {63, "", "UCS", role::entry,
     "@head 3BD:10 3BD:11 3BD:12 BD:146 BS:79 BS:=n {*n BS:71 3BD:13} H: H?:346 H:",
     ZEF_ENTRY "=AcDbUCSTableRecord 2 70 10 11 12 79 146 346 <71,13>"},
    {64, "", "VPORT", role::control, ZEF_CONTROL, ""},
    {65, "", "VPORT", role::entry,
     "@head BD:40 BD:41 2RD:12 3BD:17 3BD:16 BA:51 BD:42 BD:43 BD:44 @view_mode RC:281 {7+ B:292 RC:282 "
     "BD:141 BD:142 "
     "CMC:63} 2RD:10 2RD:11 B:=f BS:72 B:73 B:=i B:=j B:76 2RD:15 B:75 B:77 BS:78 BA:50 2RD:13 2RD:14 B: "
     "B:65 3BD:110 "
     "3BD:111 3BD:112 BD:146 BS:79 {7+ BS:60 BS:61} H: {7+ H?:332 H?:348 H?:361} H?:345 H?:346",
     ZEF_ENTRY
     "=AcDbViewportTableRecord 2 70 10 11 12 13 14 15 16 17 40 41 42 43 44 50 51 71 72 73 74 75 76 77 78 281 "
     "65 110 111 112 345 346 79 146 332 348 60 61 292 282 141 142 63 421 431 361",
     settle_view_port},
    {66, "", "APPID", role::control, ZEF_CONTROL, ""},
    {67, "", "APPID", role::entry, "@head RC: H:", ZEF_ENTRY "=AcDbRegAppTableRecord 2 70"},
    {68, "", "DIMSTYLE", role::control, "BL:=n RC:=k {*n O:} {*k H:340}", ""},
    {69, "", "DIMSTYLE", role::entry,
     "@head T:3 T:4 BD:40 BD:41 BD:42 BD:43 BD:44 BD:45 BD:46 BD:47 BD:48 {7+ BD:49 BA:50 BS:69 CMI:10070} "
     "B:71 B:72 "
     "B:73 B:74 B:75 B:76 BS:77 BS:78 BS:79 {7+ BS:90} BD:140 BD:141 BD:142 BD:143 BD:144 BD:145 BD:146 "
     "BD:147 BD:148 "
     "B:170 BS:171 B:172 B:173 B:174 B:175 CMI:176 CMI:177 CMI:178 BS:179 BS:271 BS:272 BS:273 BS:274 BS:275 "
     "BS:276 "
     "BS:277 BS:278 BS:279 BS:280 B:281 B:282 BS:283 BS:284 BS:285 BS:286 B:288 BS:289 {7+ B:290} "
     "{10+ B:295 BD: T: BD: T:} BS:371 BS:372 B: H: H?:340 H?:341 H?:342 H?:343 H?:344 {7+ H?:345 H?:346 "
     "H?:347}",
     ZEF_ENTRY
     "=AcDbDimStyleTableRecord 2 70 3~ 4~ 40~1 41~0.18 42~0.0625 43~0.38 44~0.18 45~0 46~0 47~0 48~0 49~1 "
     "50~45 69~0 10070~0 71~0 72~0 73~1 74~1 75~0 76~0 77~0 78~0 79~0 90~0 140~0.18 141~0.09 142~0 143~25.4 "
     "144~1 145~0 146~1 147~0.09 148~0 170~0 171~2 172~0 173~0 174~0 175~0 176~0 177~0 178~0 179~0 271~4 "
     "272~4 273~2 274~2 275~0 276~0 277~2 278~46 279~0 280~0 281~0 282~0 283~1 284~0 285~0 286~0 288~0 "
     "289~3 290~0 295~0 340 341 342 343 344 345 346 347 371~-2 372~-2"},
    {42, "", "DICTIONARY", role::object, "BL:=n BS:281 RC:280=h {*n T:3 H:350}",
     "=AcDbDictionary 280~0 281 [3,350,360]", settle_dictionary},
    {0, "ACDBDICTIONARYWDFLT", "ACDBDICTIONARYWDFLT", role::object,
     "BL:=n BS:281 RC:280=h {*n T:3 H:350} H:340",
     "=AcDbDictionary 280~0 281 [3,350,360] =AcDbDictionaryWithDefault 340", settle_dictionary},
    {0, "DICTIONARYVAR", "DICTIONARYVAR", role::object, "RC:280 T:1", "=DictionaryVariables 280 1"},
    {80, "ACDBPLACEHOLDER", "ACDBPLACEHOLDER", role::object, "", ""},
    {79, "XRECORD", "XRECORD", role::object, "@xrecord", "=AcDbXrecord 280 %1"},
    {73, "", "MLINESTYLE", role::object,
     "T:2 T:3 BS:70 CMC:62 BA:51 BA:52 RC:71=n %1 {*n BD:49 CMC:62 @line_type}",
     "=AcDbMlineStyle 2 70 3 62 420 51 52 71 %1", settle_mline_style},
    {72, "", "GROUP", role::object, "T:300 BS:70 BS:71 BL:=n {*n H:340}", "=AcDbGroup 300 70 71 [340]"},
    {0, "SCALE", "SCALE", role::object, "BS:70 T:300 BD:140 BD:141 B:290", "=AcDbScale 70 300 140 141 290"},
    {0, "SORTENTSTABLE", "SORTENTSTABLE", role::object, "BL:=n H:330 {*n DH:5 H:331}",
     "=AcDbSortentsTable 330 <331,5>"},
    {0, "PLOTSETTINGS", "PLOTSETTINGS", role::object, ZEF_PLOT, ZEF_PLOT_ORDER},
    {82, "LAYOUT", "LAYOUT", role::object,
     ZEF_PLOT
     "T:10001 BL:10071 BS:10070 3BD:13 2RD:10 2RD:11 3BD:12 3BD:16 3BD:17 BD:10146 BS:10076 3BD:14 3BD:15 "
     "{4+ BL:=n} H:330 H?:331 H?:346 H?:345 {4+ {*n H:}}",
     ZEF_PLOT_ORDER "=AcDbLayout 10001 10070 10071 10 11 12 14 15 10146 13 16 17 10076 330 331 345 346",
     settle_layout},
    {0, "RASTERVARIABLES", "RASTERVARIABLES", role::object, "BL:90 BS:70 BS:71 BS:72",
     "=AcDbRasterVariables 90 70 71 72"},
    {0, "WIPEOUTVARIABLES", "WIPEOUTVARIABLES", role::object, "BS:70", "=AcDbWipeoutVariables 70"},
    {0, "PDFDEFINITION", "PDFDEFINITION", role::object, "T:1 T:2", "=AcDbUnderlayDefinition 1 2"},
    {0, "DWFDEFINITION", "DWFDEFINITION", role::object, "T:1 T:2", "=AcDbUnderlayDefinition 1 2"},
    {0, "DGNDEFINITION", "DGNDEFINITION", role::object, "T:1 T:2", "=AcDbUnderlayDefinition 1 2"},
    {0, "IMAGEDEF", "IMAGEDEF", role::object, "BL:90 2RD:10 T:1 B:280 RC:281 2RD:11",
     "=AcDbRasterImageDef 90 1 10 11 280 281"},
    {0, "IMAGEDEF_REACTOR", "IMAGEDEF_REACTOR", role::object, "BL:90", "=AcDbRasterImageDefReactor 90 330",
     settle_image_reactor},
    {0, "SPATIAL_FILTER", "SPATIAL_FILTER", role::object,
     "BS:70=n {*n 2RD:10} 3BD:210 3BD:11 BS:71 BS:72=f {?f BD:40} BS:73=b {?b BD:41} %1 12BD:40 12BD:40",
     "=AcDbFilter =AcDbSpatialFilter 70 [10] 210 11 71 72 40 73 41 %1"},
    {0, "IDBUFFER", "IDBUFFER", role::object, "RC: BL:=n {*n H:330}", "=AcDbIdBuffer [330]"},
    {0, "VISUALSTYLE", "VISUALSTYLE", role::object, "T:2 BS:70 " ZEF_STYLE_2000 ZEF_STYLE_2010 ZEF_STYLE_2013,
     "=AcDbVisualStyle 2 70 {-7 71 72 73 90 40 41 '62=5 63 421 74 91 64 422 65 423 75 175 42 92 66 424 43 76 "
     "77 78 "
     "67 425 79 170 171 290 174 93 44 173 291} {-4 '45=0.0 } {-7 45} {-10 177} {13+ '177=3 } {10+ 291} {13+ "
     "'70=58 } %1",
     settle_visual_style},
    {0, "DIMASSOC", "DIMASSOC", role::object,
     "H:330 BL:90=f B:70 RC:71 %1 {?f&1 " ZEF_ATTACHED "} {?f&2 " ZEF_ATTACHED "} {?f&4 " ZEF_ATTACHED
     "} {?f&8 " ZEF_ATTACHED "}",
     "=AcDbDimAssoc 330 90 70 71 %1"},
    {0, "MLEADERSTYLE", "MLEADERSTYLE", role::object,
     "{10+ BS:179} BS:170 BS:171 BS:172 BL:90 BD:40 BD:41 BS:173 CMR:91 H:340 BL:92 B:290 BD:42 B:291 BD:43 "
     "T:3 H?:341 "
     "BD:44 T:300 H:342 BS:174 BS:178 BS:175 BS:176 CMR:93 BD:45 B:292 B:297 BD:46 H?:343 CMR:94 BD:47 BD:49 "
     "BD:140 "
     "B:293 BD:141 B:294 BS:177 BD:142 B:295 B:296 BD:143 {10+ BS:271 BS:10273 BS:272} {13+ B:298}",
     "=AcDbMLeaderStyle 179 170 171 172 90 40 41 173 91 340 92 290 42 291 43 3 341 44 300 342 174 178 175 "
     "176 93 45 "
     "292 297 46 343 94 47 49 140 293 141 294 177 142 295 296 143 271 272 10273 298"},
};

} // namespace

std::span<const type_row> object_rows() {
    return rows;
}

} // namespace dwg
