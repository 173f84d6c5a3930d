#include "host/db/creation/new_drawing.h"

#include <charconv>

namespace db {

namespace {

// The groups of the drawing, one behind the other: code, blank, value, bar. Written out as a file by
// expand(). Source: the DXF reference's list of what a drawing of R2000 and later must hold.
constexpr std::string_view groups =
    "0 SECTION|2 HEADER|9 $ACADVER|1 AC1032|9 $ACADMAINTVER|90 0|9 $DWGCODEPAGE|3 ANSI_936|"
    "9 $INSBASE|10 0.0|20 0.0|30 0.0|9 $EXTMIN|10 1e+20|20 1e+20|30 1e+20|9 $EXTMAX|10 -1e+20|20 -1e+20|30 "
    "-1e+20|"
    "9 $LIMMIN|10 0.0|20 0.0|9 $LIMMAX|10 420.0|20 297.0|9 $ORTHOMODE|70 0|9 $LTSCALE|40 1.0|9 $ATTMODE|70 1|"
    "9 $TEXTSIZE|40 2.5|9 $TEXTSTYLE|7 Standard|9 $CLAYER|8 0|9 $CELTYPE|6 ByLayer|9 $CECOLOR|62 256|"
    "9 $CELTSCALE|40 1.0|9 $DIMSTYLE|2 Standard|9 $LUNITS|70 2|9 $LUPREC|70 4|9 $AUNITS|70 0|9 $AUPREC|70 0|"
    "9 $MEASUREMENT|70 1|9 $INSUNITS|70 4|9 $TILEMODE|70 1|9 $CELWEIGHT|370 -1|9 $LWDISPLAY|290 0|"
    "9 $HANDSEED|5 60|0 ENDSEC|"
    "0 SECTION|2 CLASSES|0 ENDSEC|"
    "0 SECTION|2 TABLES|"
    "0 TABLE|2 VPORT|5 1|330 0|100 AcDbSymbolTable|70 1|"
    "0 VPORT|5 20|330 1|100 AcDbSymbolTableRecord|100 AcDbViewportTableRecord|2 *Active|70 0|10 0.0|20 "
    "0.0|11 1.0|"
    "21 1.0|12 210.0|22 148.5|13 0.0|23 0.0|14 10.0|24 10.0|15 10.0|25 10.0|16 0.0|26 0.0|36 1.0|17 0.0|27 "
    "0.0|"
    "37 0.0|40 297.0|41 1.6|42 50.0|43 0.0|44 0.0|50 0.0|51 0.0|71 0|72 1000|73 1|74 3|75 0|76 0|77 0|78 0|0 "
    "ENDTAB|"
    "0 TABLE|2 LTYPE|5 2|330 0|100 AcDbSymbolTable|70 3|"
    "0 LTYPE|5 21|330 2|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 ByBlock|70 0|3 |72 65|73 "
    "0|40 0.0|"
    "0 LTYPE|5 22|330 2|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 ByLayer|70 0|3 |72 65|73 "
    "0|40 0.0|"
    "0 LTYPE|5 23|330 2|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|2 Continuous|70 0|3 Solid "
    "line|72 65|"
    "73 0|40 0.0|0 ENDTAB|"
    "0 TABLE|2 LAYER|5 3|330 0|100 AcDbSymbolTable|70 1|"
    "0 LAYER|5 24|330 3|100 AcDbSymbolTableRecord|100 AcDbLayerTableRecord|2 0|70 0|62 7|6 Continuous|370 "
    "-3|390 4F|"
    "0 ENDTAB|"
    "0 TABLE|2 STYLE|5 4|330 0|100 AcDbSymbolTable|70 1|"
    "0 STYLE|5 25|330 4|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Standard|70 0|40 0.0|41 "
    "1.0|50 0.0|"
    "71 0|42 2.5|3 txt|4 |0 ENDTAB|"
    "0 TABLE|2 VIEW|5 5|330 0|100 AcDbSymbolTable|70 0|0 ENDTAB|"
    "0 TABLE|2 UCS|5 6|330 0|100 AcDbSymbolTable|70 0|0 ENDTAB|"
    "0 TABLE|2 APPID|5 7|330 0|100 AcDbSymbolTable|70 1|"
    "0 APPID|5 26|330 7|100 AcDbSymbolTableRecord|100 AcDbRegAppTableRecord|2 ACAD|70 0|0 ENDTAB|"
    "0 TABLE|2 DIMSTYLE|5 8|330 0|100 AcDbSymbolTable|70 1|100 AcDbDimStyleTable|71 1|"
    "0 DIMSTYLE|105 27|330 8|100 AcDbSymbolTableRecord|100 AcDbDimStyleTableRecord|2 Standard|70 0|340 25|0 "
    "ENDTAB|"
    "0 TABLE|2 BLOCK_RECORD|5 9|330 0|100 AcDbSymbolTable|70 2|"
    "0 BLOCK_RECORD|5 28|330 9|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Model_Space|340 42|70 "
    "0|280 1|"
    "281 0|"
    "0 BLOCK_RECORD|5 29|330 9|100 AcDbSymbolTableRecord|100 AcDbBlockTableRecord|2 *Paper_Space|340 43|70 "
    "0|280 1|"
    "281 0|0 ENDTAB|0 ENDSEC|"
    "0 SECTION|2 BLOCKS|"
    "0 BLOCK|5 2A|330 28|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 *Model_Space|70 0|10 0.0|20 0.0|30 0.0|"
    "3 *Model_Space|1 |0 ENDBLK|5 2B|330 28|100 AcDbEntity|8 0|100 AcDbBlockEnd|"
    "0 BLOCK|5 2C|330 29|100 AcDbEntity|67 1|8 0|100 AcDbBlockBegin|2 *Paper_Space|70 0|10 0.0|20 0.0|30 0.0|"
    "3 *Paper_Space|1 |0 ENDBLK|5 2D|330 29|100 AcDbEntity|67 1|8 0|100 AcDbBlockEnd|0 ENDSEC|"
    "0 SECTION|2 ENTITIES|0 ENDSEC|"
    "0 SECTION|2 OBJECTS|"
    "0 DICTIONARY|5 40|330 0|100 AcDbDictionary|281 1|3 ACAD_GROUP|350 44|3 ACAD_LAYOUT|350 41|"
    "3 ACAD_PLOTSTYLENAME|350 4E|"
    "0 DICTIONARY|5 41|330 40|100 AcDbDictionary|281 1|3 Model|350 42|3 Layout1|350 43|"
    "0 LAYOUT|5 42|330 41|100 AcDbPlotSettings|1 |2 none_device|4 ISO_A3_(420.00_x_297.00_MM)|6 |40 7.5|41 "
    "20.0|"
    "42 7.5|43 20.0|44 420.0|45 297.0|46 0.0|47 0.0|48 0.0|49 0.0|140 0.0|141 0.0|142 1.0|143 1.0|70 1712|72 "
    "1|73 0|"
    "74 0|7 |75 0|76 0|77 2|78 300|147 1.0|148 0.0|149 0.0|100 AcDbLayout|1 Model|70 1|71 0|10 0.0|20 0.0|11 "
    "420.0|"
    "21 297.0|12 0.0|22 0.0|32 0.0|14 1e+20|24 1e+20|34 1e+20|15 -1e+20|25 -1e+20|35 -1e+20|146 0.0|13 "
    "0.0|23 0.0|"
    "33 0.0|16 1.0|26 0.0|36 0.0|17 0.0|27 1.0|37 0.0|76 0|330 28|"
    "0 LAYOUT|5 43|330 41|100 AcDbPlotSettings|1 |2 none_device|4 ISO_A3_(420.00_x_297.00_MM)|6 |40 7.5|41 "
    "20.0|"
    "42 7.5|43 20.0|44 420.0|45 297.0|46 0.0|47 0.0|48 0.0|49 0.0|140 0.0|141 0.0|142 1.0|143 1.0|70 688|72 "
    "1|73 0|"
    "74 5|7 |75 16|76 0|77 2|78 300|147 1.0|148 0.0|149 0.0|100 AcDbLayout|1 Layout1|70 1|71 1|10 0.0|20 0.0|"
    "11 420.0|21 297.0|12 0.0|22 0.0|32 0.0|14 1e+20|24 1e+20|34 1e+20|15 -1e+20|25 -1e+20|35 -1e+20|146 "
    "0.0|13 0.0|"
    "23 0.0|33 0.0|16 1.0|26 0.0|36 0.0|17 0.0|27 1.0|37 0.0|76 0|330 29|"
    "0 DICTIONARY|5 44|330 40|100 AcDbDictionary|281 1|"
    "0 ACDBDICTIONARYWDFLT|5 4E|330 40|100 AcDbDictionary|281 1|3 Normal|350 4F|100 "
    "AcDbDictionaryWithDefault|340 4F|"
    "0 ACDBPLACEHOLDER|5 4F|330 4E|0 ENDSEC|0 EOF|";

std::string expand() {
    const dxf::group_style style;
    std::string text;
    for (std::string_view rest = groups; !rest.empty();) {
        const std::size_t bar = rest.find('|');
        const std::string_view group = rest.substr(0, bar);
        rest.remove_prefix(bar + 1);
        int code = 0;
        const auto [end, error] = std::from_chars(group.data(), group.data() + group.size(), code);
        static_cast<void>(error);
        dxf::append_group(text, style, code, group.substr(static_cast<std::size_t>(end - group.data()) + 1));
    }
    return text;
}

} // namespace

std::unique_ptr<dxf::drawing> new_drawing() {
    return std::move(*dxf::drawing::from_bytes(expand()));
}

} // namespace db
