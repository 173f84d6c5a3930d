// Texts, attributes and text styles: what they say, where they stand, what changes them.
#include "acutmem.h"
#include "dbents.h"
#include "dbmtext.h"
#include "dbsymtb.h"
#include "host/gi/text_metrics.h"
#include "tests/db_entities.h"

#include <cmath>
#include <numbers>

namespace {

using test::box;

constexpr double quarter = std::numbers::pi / 2.0;

std::wstring taken(ACHAR* text) {
    std::wstring copy = text != nullptr ? text : L"";
    acutDelString(text);
    return copy;
}

// In the font txt a sign is six sixths of the height wide, two of which are the gap behind it: "AB" of height
// 6 is 10 wide.
constexpr std::string_view plain = "0 TEXT|5 100|8 0|10 100|20 50|30 0|40 6|1 AB";

std::unique_ptr<AcDbDatabase> with_text(std::string_view more) {
    return test::database_of(test::with_entities(std::string(plain) + std::string(more)));
}

} // namespace

TEST(DbText, CodesGiveWayToWhatTheyShow) {
    struct row {
        const wchar_t* text;
        const wchar_t* shown;
    };
    for (const row& row :
         {row{L"plain", L"plain"},
          row{L"%%c100 %%d %%p5", L"\xD8"
                                  L"100 \xB0 \xB1"
                                  L"5"},
          row{L"%%C%%D%%P", L"\xD8\xB0\xB1"}, row{L"%%uunder%%u %%oover%%O%%k", L"under over"},
          row{L"%%065%%066C", L"ABC"}, row{L"100%%%", L"100%"}, row{L"50% of%% it", L"50% of%% it"},
          row{L"%%12x", L"%%12x"}, row{L"%%", L"%%"}, row{L"%", L"%"}, row{L"", L""}})
        EXPECT_EQ(gi::shown_text(row.text), row.shown) << row.text;
}

TEST(DbText, AlignmentDecidesWhereItStands) {
    struct row {
        const char* groups;
        box expected;
    };
    for (const row& row : {
             row{"", {100, 50, 110, 56}},
             row{"|11 0|21 0", {100, 50, 110, 56}}, // no alignment: the point means nothing
             row{"|72 1|11 100|21 50", {95, 50, 105, 56}},
             row{"|72 2|11 100|21 50", {90, 50, 100, 56}},
             row{"|72 4|11 100|21 50", {95, 47, 105, 53}},
             row{"|73 3|11 100|21 50", {100, 44, 110, 50}},
             row{"|72 2|73 2|11 100|21 50", {90, 47, 100, 53}},
             row{"|72 1|73 1|11 100|21 50", {95, 52, 105, 58}},
             row{"|72 5|11 120|21 50", {100, 50, 120, 56}},
             row{"|72 3|11 100|21 70", {94, 50, 100, 70}},
             row{"|72 5|11 100|21 50", {100, 50, 110, 56}}, // fitted between a point and itself
             row{"|72 1", {95, 50, 105, 56}},               // without a point: the position stands for it
             row{"|72 9|73 -4|11 130|21 50", {100, 50, 130, 56}}, // the nearest modes that there are
             row{"|50 90", {94, 50, 100, 60}},
             row{"|50 90|72 2|11 100|21 50", {94, 40, 100, 50}},
             row{"|41 0.5", {100, 50, 105, 56}},
             row{"|51 45", {100, 50, 116, 56}},
             row{"|71 2", {90, 50, 100, 56}},
             row{"|71 4", {100, 44, 110, 50}},
             row{"|71 6|72 2|11 100|21 50", {100, 44, 110, 50}},
             row{"|210 0|220 0|230 -1", {-110, 50, -100, 56}},
         }) {
        const auto database = with_text(row.groups);
        const box found = test::box_of(*test::seen(*database, 0x100));
        EXPECT_EQ(found, row.expected) << row.groups;
    }
}

TEST(DbText, LettersDecideHowHighAndDeepItIs) {
    struct row {
        const char* text;
        double bottom;
        double top;
    };
    for (const row& row :
         {row{"Ab", 0, 6}, row{"xo", 0, 4}, row{"gy", -2, 4}, row{"Qy", -2, 6}, row{"%%d", 0, 6}}) {
        const auto database = test::database_of(
            test::with_entities("0 TEXT|5 100|8 0|10 0|20 0|40 6|1 " + std::string(row.text)));
        const box found = test::box_of(*test::seen(*database, 0x100));
        EXPECT_DOUBLE_EQ(found.least_y, row.bottom) << row.text;
        EXPECT_DOUBLE_EQ(found.most_y, row.top) << row.text;
    }
}

TEST(DbText, GettersTellWhatTheGroupsSay) {
    const auto database = with_text("|39 2|41 0.7|50 90|51 15|71 2|72 2|73 3|11 1|21 2|31 7|7 standard");
    const test::seen<AcDbText> text(*database, 0x100);
    EXPECT_EQ(text->position(), AcGePoint3d(100, 50, 0));
    EXPECT_EQ(text->alignmentPoint(), AcGePoint3d(1, 2, 7));
    EXPECT_FALSE(text->isDefaultAlignment());
    EXPECT_EQ(text->normal(), AcGeVector3d::kZAxis);
    EXPECT_DOUBLE_EQ(text->thickness(), 2.0);
    EXPECT_DOUBLE_EQ(text->height(), 6.0);
    EXPECT_DOUBLE_EQ(text->widthFactor(), 0.7);
    EXPECT_DOUBLE_EQ(text->rotation(), quarter);
    EXPECT_NEAR(text->oblique(), 15.0 * std::numbers::pi / 180.0, 1e-12);
    EXPECT_TRUE(text->isMirroredInX());
    EXPECT_FALSE(text->isMirroredInY());
    EXPECT_EQ(text->horizontalMode(), AcDb::kTextRight);
    EXPECT_EQ(text->verticalMode(), AcDb::kTextTop);
    EXPECT_EQ(taken(text->textString()), L"AB");
    EXPECT_TRUE(text->textStyle().isNull()) << "the drawing has no styles";
}

TEST(DbText, ABadOrMissingValueIsTheOneThatIsMeantWithoutIt) {
    for (const char* groups :
         {"|40 nan|41 inf|50 x|51 ", "|71 99999999999|72 -99999999999", "|11 nan|21 1e999|72 4",
          "|210 0|220 0|230 0", "|7 no such style|72 3|11 1e300|21 1e300",
          "|100 AcDbText|100 AcDbText|100 AcDbText|73 3"}) {
        const auto database = with_text(groups);
        const test::seen<AcDbText> text(*database, 0x100);
        EXPECT_DOUBLE_EQ(text->height(), 6.0) << groups;
        AcDbExtents extents;
        text->getGeomExtents(extents);
    }
    const auto empty = test::database_of(test::with_entities("0 TEXT|5 100"));
    EXPECT_EQ(test::box_of(*test::seen(*empty, 0x100)), test::nothing);
    EXPECT_EQ(taken(test::seen<AcDbText>(*empty, 0x100)->textString()), L"");
}

TEST(DbText, SettersChangeTheirGroupsAlone) {
    struct row {
        const char* what;
        const char* more;
        Acad::ErrorStatus (*change)(AcDbText&);
        Acad::ErrorStatus answer;
        std::vector<std::string> expected;
    };
    const row rows[] = {
        {"the same text", "", [](AcDbText& t) { return t.setTextString(L"AB"); }, Acad::eOk, {}},
        {"text", "", [](AcDbText& t) { return t.setTextString(L"ABC"); }, Acad::eOk, {"- AB", "+ ABC"}},
        {"text of a centered one",
         "|72 1|11 100|21 50|31 0",
         [](AcDbText& t) { return t.setTextString(L"ABC"); },
         Acad::eOk,
         {"- 100", "+ 92.0", "- AB", "+ ABC"}}, // 16 wide
        {"height", "", [](AcDbText& t) { return t.setHeight(12.0); }, Acad::eOk, {"- 6", "+ 12.0"}},
        {"no height", "", [](AcDbText& t) { return t.setHeight(0.0); }, Acad::eInvalidInput, {}},
        {"width", "", [](AcDbText& t) { return t.setWidthFactor(2.0); }, Acad::eOk, {"+ 41", "+ 2.0"}},
        {"the width that is meant", "", [](AcDbText& t) { return t.setWidthFactor(1.0); }, Acad::eOk, {}},
        {"rotation", "", [](AcDbText& t) { return t.setRotation(quarter); }, Acad::eOk, {"+ 50", "+ 90.0"}},
        {"a steep slant", "", [](AcDbText& t) { return t.setOblique(1.5); }, Acad::eInvalidInput, {}},
        {"mode",
         "",
         [](AcDbText& t) { return t.setHorizontalMode(AcDb::kTextCenter); },
         Acad::eOk,
         {"+ 72", "+ 1"}},
        {"vertical mode",
         "",
         [](AcDbText& t) { return t.setVerticalMode(AcDb::kTextTop); },
         Acad::eOk,
         {"+ 73", "+ 3"}},
        {"alignment without a mode",
         "",
         [](AcDbText& t) {
             return t.setAlignmentPoint({1, 2, 0});
         },
         Acad::eNotApplicable,
         {}},
        {"alignment",
         "|72 2|11 110|21 50|31 0",
         [](AcDbText& t) {
             return t.setAlignmentPoint({60, 50, 0});
         },
         Acad::eOk,
         {"- 100", "+ 50.0", "- 110", "+ 60.0"}},
        {"fitted",
         "|72 5|11 110|21 50|31 0|41 1",
         [](AcDbText& t) {
             return t.setAlignmentPoint({120, 50, 0});
         },
         Acad::eOk,
         {"- 110", "+ 120.0", "- 1", "+ 2.0"}},
        {"backwards", "|71 4", [](AcDbText& t) { return t.mirrorInX(true); }, Acad::eOk, {"- 4", "+ 6"}},
        {"normal",
         "",
         [](AcDbText& t) {
             return t.setNormal({0, 0, -1});
         },
         Acad::eOk,
         {"- 100", "+ -100.0", "+ 210", "+ 0.0", "+ 220", "+ 0.0", "+ 230", "+ -1.0"}},
        {"elsewhere",
         "",
         [](AcDbText& t) {
             return t.transformBy(AcGeMatrix3d::translation({1, 0, 0}));
         },
         Acad::eOk,
         {"- 100", "+ 101.0"}},
    };
    for (const row& row : rows) {
        const std::string before = test::with_entities(std::string(plain) + row.more);
        const auto database = test::database_of(before);
        {
            const test::written_to<AcDbText> text(*database, 0x100);
            EXPECT_EQ(row.change(*text), row.answer) << row.what;
        }
        const std::string after = test::written(database->imp().drawing());
        auto expected = row.expected;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(test::lines_changed(before, after), expected) << row.what;
    }
}

TEST(DbText, MovedItDrawsWhereWhatItDrewIsMovedTo) {
    const char* const texts[] = {"",
                                 "|50 30",
                                 "|51 20|50 200",
                                 "|71 2|50 10",
                                 "|71 4|51 -10",
                                 "|72 2|73 3|11 90|21 40|50 45",
                                 "|72 5|11 130|21 70|31 0",
                                 "|210 0.3|220 -0.4|230 0.8|50 33|51 12"};
    std::vector<AcGeMatrix3d> matrices = {
        AcGeMatrix3d::translation({3, 4, 5}), AcGeMatrix3d::rotation(1.0, AcGeVector3d::kZAxis),
        AcGeMatrix3d::rotation(0.7, AcGeVector3d(1, 2, 3), {9, 8, 7}), AcGeMatrix3d::scaling(2.5, {1, 1, 1})};
    AcGeMatrix3d mirror;
    mirror.setToScaling(AcGeScale3d(-1, 1, 1));
    matrices.push_back(mirror);
    mirror.setToScaling(AcGeScale3d(1, -1, 1));
    matrices.push_back(AcGeMatrix3d::rotation(0.4, AcGeVector3d::kZAxis) * mirror);
    AcGeMatrix3d uneven;
    uneven.setToScaling(AcGeScale3d(3, 0.5, 1));
    matrices.push_back(uneven);
    matrices.push_back(uneven * AcGeMatrix3d::rotation(0.9, AcGeVector3d(0, 1, 1)));
    for (const char* groups : texts)
        for (std::size_t i = 0; i < matrices.size(); ++i) {
            const auto database = with_text(groups);
            const test::written_to<AcDbText> text(*database, 0x100);
            const box expected = test::box_through(*text, matrices[i]);
            ASSERT_EQ(text->transformBy(matrices[i]), Acad::eOk);
            EXPECT_EQ(test::box_of(*text), expected) << groups << " by matrix " << i;
        }
    const auto database = with_text("");
    const test::written_to<AcDbText> text(*database, 0x100);
    AcGeMatrix3d flat;
    flat.setToScaling(AcGeScale3d(1, 0, 1));
    EXPECT_EQ(text->transformBy(flat), Acad::eCannotScaleNonUniformly);
    EXPECT_EQ(test::box_of(*text), (box{100, 50, 110, 56})) << "and nothing is changed";
}

TEST(DbText, StylesDecideTheWidthAlsoOnceTheyAreChanged) {
    const auto database = test::database_of(test::modern_drawing(
        "0 TEXT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbText|10 0|20 0|40 716|1 MMM|7 sans|100 AcDbText", {},
        {},
        "0 STYLE|5 30|330 3|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Sans|70 0|40 0|41 1|50 "
        "0|"
        "71 0|42 2.5|3 arial.ttf|4 |1001 ACAD|1000 Arial|1071 34"));
    const test::seen<AcDbText> text(*database, 0x100);
    EXPECT_EQ(text->textStyle(), database->imp().id(database->imp().records().find(0x30)));
    EXPECT_NEAR(test::box_of(*text).most_x, 3 * 833, 1e-9);
    {
        const test::written_to<AcDbTextStyleTableRecord> style(*database, 0x30);
        AcString face;
        bool bold = true;
        bool italic = true;
        Charset charset;
        Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch;
        Autodesk::AutoCAD::PAL::FontUtils::FontFamily family;
        ASSERT_EQ(style->font(face, bold, italic, charset, pitch, family), Acad::eOk);
        EXPECT_EQ(face, L"Arial");
        EXPECT_FALSE(bold || italic);
        EXPECT_EQ(pitch, Autodesk::AutoCAD::PAL::FontUtils::FontPitch::kVariable);
        EXPECT_EQ(family, Autodesk::AutoCAD::PAL::FontUtils::FontFamily::kSwiss);
        EXPECT_EQ(style->setXScale(0.0), Acad::eInvalidInput);
        EXPECT_EQ(style->setTextSize(-1.0), Acad::eInvalidInput);
        EXPECT_EQ(style->setFileName(L"txt"), Acad::eOk);
        EXPECT_EQ(style->setBigFontFileName(L"gbcbig.shx"), Acad::eOk);
        EXPECT_EQ(style->setFont(L"", false, false, kAnsiCharset, {}, {}), Acad::eOk);
    }
    EXPECT_NEAR(test::box_of(*test::seen(*database, 0x100)).most_x, 716.0 * 16.0 / 6.0, 1e-9);
    const test::seen<AcDbTextStyleTableRecord> style(*database, 0x30);
    AcString file;
    AcString big_font;
    style->fileName(file);
    style->bigFontFileName(big_font);
    EXPECT_EQ(file, L"txt");
    EXPECT_EQ(big_font, L"gbcbig.shx");
    EXPECT_EQ(style->xData(L"ACAD"), nullptr);
}

TEST(DbText, ANewOneWorksWithoutADrawing) {
    AcDbText text({1, 2, 3}, L"\x6C34 A", AcDbObjectId::kNull, 2.0, quarter);
    EXPECT_EQ(text.setHorizontalMode(AcDb::kTextRight), Acad::eOk);
    EXPECT_EQ(text.setAlignmentPoint({0, 0, 3}), Acad::eOk);
    EXPECT_EQ(taken(text.textString()), L"\x6C34 A");
    EXPECT_TRUE(text.textStyle().isNull());
    const box found = test::box_of(text);
    EXPECT_NEAR(found.most_y, 0.0, 1e-9);
    EXPECT_NEAR(found.least_y, -(1.13 + 1.0 + 4.0 / 6.0) * 2.0, 1e-9); // a square, a blank, a letter
    EXPECT_EQ(text.position().z, 3.0);
}

// ---- attributes

TEST(DbAttribute, FlagsAndTheDisplayOfAttributesDecideWhetherItIsDrawn) {
    struct row {
        const char* mode;
        int flags;
        bool drawn;
    };
    for (const row& row : {row{"", 0, true}, row{"", 1, false}, row{"9 $ATTMODE|70 0", 0, false},
                           row{"9 $ATTMODE|70 1", 1, false}, row{"9 $ATTMODE|70 2", 1, true},
                           row{"9 $ATTMODE|70 2", 8, true}}) {
        const auto database = test::database_of(test::modern_drawing(
            "0 INSERT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|66 1|2 NONE|10 0|20 0|"
            "0 ATTRIB|5 101|330 100|100 AcDbEntity|8 0|100 AcDbText|10 100|20 50|40 6|1 AB|"
            "100 AcDbAttribute|280 0|2 TAG|70 " +
                std::to_string(row.flags) + "|73 5|74 0|280 1|0 SEQEND|5 102|330 100|100 AcDbEntity|8 0",
            {}, {}, {}, row.mode));
        const test::seen<AcDbAttribute> attribute(*database, 0x101);
        EXPECT_EQ(taken(attribute->tag()), L"TAG");
        EXPECT_EQ(attribute->isInvisible(), (row.flags & 1) != 0);
        EXPECT_EQ(attribute->isPreset(), (row.flags & 8) != 0);
        EXPECT_EQ(attribute->fieldLength(), 5);
        EXPECT_TRUE(attribute->lockPositionInBlock());
        EXPECT_FALSE(attribute->isMTextAttribute());
        const box expected = row.drawn ? box{100, 50, 110, 56} : test::nothing;
        EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), expected)
            << row.mode << ", flags " << row.flags;
    }
}

TEST(DbAttribute, SettersFindTheirSectionWhereverThePropertiesOfTheTextStand) {
    // As the DXF reference has it, width, style and alignment behind the attribute's marker.
    const std::string before = test::modern_drawing(
        "0 INSERT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|66 1|2 NONE|10 0|20 0|"
        "0 ATTRIB|5 101|330 100|100 AcDbEntity|8 0|100 AcDbText|10 100|20 50|30 0|40 6|1 AB|"
        "100 AcDbAttribute|280 0|2 TAG|70 0|41 0.5|72 2|74 2|11 100|21 50|31 0|0 SEQEND|5 102|330 100|8 0");
    const auto database = test::database_of(before);
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x101)), (box{95, 47, 100, 53}));
    {
        const test::written_to<AcDbAttribute> attribute(*database, 0x101);
        EXPECT_EQ(attribute->verticalMode(), AcDb::kTextVertMid);
        EXPECT_EQ(attribute->setTag(L"NO TAG"), Acad::eInvalidInput);
        EXPECT_EQ(attribute->setTag(L"OTHER"), Acad::eOk);
        EXPECT_EQ(attribute->setInvisible(true), Acad::eOk);
        EXPECT_EQ(attribute->setLockPositionInBlock(true), Acad::eOk);
        EXPECT_EQ(attribute->setVerticalMode(AcDb::kTextTop), Acad::eOk);
        EXPECT_TRUE(attribute->lockPositionInBlock());
    }
    const auto changes = test::lines_changed(before, test::written(database->imp().drawing()));
    const std::vector<std::string> expected = {"- 100", "- 50", "+ 95.0", "+ 44.0", "- TAG", "+ OTHER",
                                               "- 0",   "+ 1",  "- 2",    "+ 3",    "+ 280", "+ 1"};
    for (const std::string& line : expected)
        EXPECT_NE(std::find(changes.begin(), changes.end(), line), changes.end()) << line;
    EXPECT_EQ(changes.size(), expected.size());
}

TEST(DbAttribute, ItBecomesWhatADefinitionAsksFor) {
    AcDbAttributeDefinition definition({1, 0, 0}, L"AB", L"DN", L"Diameter?");
    definition.setHeight(6.0);
    definition.setPreset(true);
    definition.setLockPositionInBlock(true);
    EXPECT_EQ(taken(definition.prompt()), L"Diameter?");
    AcDbAttribute attribute;
    const AcGeMatrix3d placed = AcGeMatrix3d::translation({10, 20, 0}) * AcGeMatrix3d::scaling(2.0);
    ASSERT_EQ(attribute.setAttributeFromBlock(&definition, placed), Acad::eOk);
    EXPECT_EQ(taken(attribute.tag()), L"DN");
    EXPECT_EQ(taken(attribute.textString()), L"AB");
    EXPECT_TRUE(attribute.isPreset());
    EXPECT_TRUE(attribute.lockPositionInBlock());
    EXPECT_EQ(test::box_of(attribute), (box{12, 20, 32, 32}));
    EXPECT_EQ(attribute.setAttributeFromBlock(nullptr, placed), Acad::eNullObjectPointer);
}

TEST(DbAttribute, OneOfSeveralLinesShowsItsParagraphs) {
    const auto database = test::database_of(test::modern_drawing(
        "0 INSERT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|66 1|2 NONE|10 0|20 0|"
        "0 ATTRIB|5 101|330 100|100 AcDbEntity|8 0|100 AcDbText|10 100|20 50|40 6|1 AB|100 AcDbAttribute|280 "
        "0|"
        "2 TAG|70 0|101 Embedded Object|70 1|10 0|20 0|30 0|40 6|41 0|71 1|1 AB\\PABC|11 1|21 0|31 0|"
        "0 SEQEND|5 102|330 100|8 0"));
    const test::seen<AcDbAttribute> attribute(*database, 0x101);
    EXPECT_TRUE(attribute->isMTextAttribute());
    const std::unique_ptr<AcDbMText> lines(attribute->getMTextAttribute());
    ASSERT_NE(lines, nullptr);
    EXPECT_EQ(taken(lines->text()), L"AB\r\nABC");
    EXPECT_EQ(test::box_of(*attribute), (box{0, -16, 16, 0}));
}

TEST(DbAttribute, ADefinitionShowsItsTagOutsideAndWhenConstantItsTextInsideOfBlocks) {
    const std::string attdef =
        "100 AcDbEntity|8 0|100 AcDbText|10 0|20 0|40 6|1 AB|100 AcDbAttributeDefinition|"
        "3 ?|2 ABCD|70 ";
    const auto database = test::database_of(
        test::modern_drawing("0 ATTDEF|5 100|330 1F|" + attdef +
                                 "2|0 INSERT|5 101|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|"
                                 "2 B|10 0|20 0|30 0",
                             "0 BLOCK|2 B|330 B0|5 B1|100 AcDbEntity|8 0|100 AcDbBlockBegin|2 B|70 2|10 0|20 "
                             "0|30 0|3 B|1 |0 ATTDEF|5 B2|"
                             "330 B0|" +
                                 attdef + "2|0 ATTDEF|5 B3|330 B0|" + attdef +
                                 "0|10 99|0 ENDBLK|5 B4|330 B0|100 AcDbEntity|8 0|100 AcDbBlockEnd"));
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), (box{0, 0, 22, 6}));
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x101)), (box{0, 0, 10, 6}))
        << "the other one asks for a value";
}
