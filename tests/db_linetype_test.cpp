// Linetypes: their dashes, and what stands in them.
#include "acutmem.h"
#include "adsdef.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "tests/db_entities.h"

#include <numbers>

namespace {

// A gas line as the editor writes it, with extended data behind; the font's style is 30.
constexpr std::string_view gas = "0 TABLE|2 LTYPE|5 5|70 1|"
                                 "0 LTYPE|5 40|330 5|100 AcDbSymbolTableRecord|100 AcDbLinetypeTableRecord|"
                                 "2 GAS|70 0|3 Gas line|72 65|73 3|40 24.13|49 12.7|74 0|49 -5.08|74 2|75 0|"
                                 "340 30|46 2.54|50 0.0|44 -2.54|45 -1.27|9 GAS|49 -6.35|74 0|"
                                 "1001 ACAD|1070 7|0 ENDTAB|";

std::string drawing_with_gas() {
    std::string text = test::modern_drawing(
        "0 LINE|5 100|8 0|10 0|20 0|11 1|21 0", {}, {},
        "0 STYLE|5 30|330 3|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Standard|70 0|40 0|41 1|"
        "50 0|71 0|42 2.5|3 txt|4 ");
    return text.insert(text.find(test::groups("0 TABLE|2 STYLE")), test::groups(gas));
}

std::wstring text_of(const AcDbLinetypeTableRecord& linetype, int dash) {
    ACHAR* text = nullptr;
    if (linetype.textAt(dash, text) != Acad::eOk)
        return L"";
    std::wstring copy = text;
    acutDelString(text);
    return copy;
}

std::string saved(AcDbDatabase& database) {
    std::string text;
    for (dxf::record_id record = 0; record < database.imp().records().size(); ++record)
        text += database.imp().records().text(record);
    return text;
}

} // namespace

TEST(DbLinetype, ItsDashesAreReadAndChangedOneByOne) {
    const auto database = test::database_of(drawing_with_gas());
    const std::string before = saved(*database);
    {
        const test::written_to<AcDbLinetypeTableRecord> linetype(*database, 0x40);
        ASSERT_EQ(linetype->numDashes(), 3);
        EXPECT_EQ(linetype->patternLength(), 24.13);
        EXPECT_EQ(linetype->dashLengthAt(1), -5.08);
        EXPECT_EQ(text_of(*linetype, 1), L"GAS");
        EXPECT_EQ(linetype->shapeStyleAt(1), database->imp().id(database->imp().records().find(0x30)));
        EXPECT_EQ(linetype->shapeScaleAt(1), 2.54);
        EXPECT_EQ(linetype->shapeOffsetAt(1).y, -1.27);
        // What is not there.
        ACHAR* none = nullptr;
        EXPECT_EQ(linetype->textAt(0, none), Acad::eKeyNotFound);
        EXPECT_EQ(linetype->textAt(3, none), Acad::eInvalidIndex);
        EXPECT_EQ(linetype->setTextAt(-1, L"X"), Acad::eInvalidIndex);
        EXPECT_EQ(linetype->dashLengthAt(7), 0.0);
        EXPECT_EQ(linetype->setShapeStyleAt(1, linetype->objectId()), Acad::eWrongObjectType);
        // One dash changes, the others and what is behind them stay.
        linetype->setShapeRotationAt(1, std::numbers::pi / 2);
        EXPECT_EQ(linetype->setTextAt(1, L"\x6C34"), Acad::eOk);
        EXPECT_NEAR(linetype->shapeRotationAt(1), std::numbers::pi / 2, 1e-12);
    }
    EXPECT_EQ(test::lines_changed(before, saved(*database)),
              (std::vector<std::string>{"+ 90.0", "+ \\U+6C34", "- 0.0", "- GAS"}));
    {
        const test::written_to<AcDbLinetypeTableRecord> linetype(*database, 0x40);
        linetype->setNumDashes(1);
        linetype->setNumDashes(2);
        EXPECT_EQ(linetype->dashLengthAt(0), 12.7);
        EXPECT_EQ(linetype->dashLengthAt(1), 0.0);
        EXPECT_EQ(text_of(*linetype, 1), L"");
        resbuf* const data = linetype->xData(L"ACAD");
        EXPECT_NE(data, nullptr);
        acutRelRb(data);
    }
}

TEST(DbLinetype, ANewOneIsWrittenAsTheDrawingsVersionHasIt) {
    const std::string old = test::groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1009|0 ENDSEC|0 SECTION|2 TABLES|"
                                         "0 TABLE|2 LTYPE|70 1|0 LTYPE|2 CONTINUOUS|70 64|3 Solid line|72 65|"
                                         "73 0|40 0.0|0 ENDTAB|0 ENDSEC|0 SECTION|2 ENTITIES|0 ENDSEC|0 EOF");
    for (const bool modern : {true, false}) {
        const auto database = test::database_of(modern ? drawing_with_gas() : old);
        const std::string before = saved(*database);
        AcDbObjectPointer<AcDbLinetypeTableRecord> linetype;
        linetype.create();
        linetype->setName(L"J");
        linetype->setComments(L"water");
        linetype->setNumDashes(2);
        linetype->setDashLengthAt(0, 20);
        linetype->setDashLengthAt(1, -4.5);
        linetype->setTextAt(1, L"J");
        linetype->setPatternLength(24.5);
        AcDbLinetypeTablePointer table(database->linetypeTableId(), AcDb::kForWrite);
        AcDbObjectId id;
        ASSERT_EQ(table->add(id, linetype.object()), Acad::eOk);
        EXPECT_EQ(linetype->dashLengthAt(1), -4.5);
        EXPECT_EQ(text_of(*linetype, 1), modern ? L"J" : L"") << "the first versions know lengths alone";
        linetype.close();
        table.close();
        const std::vector<std::string> changed = test::lines_changed(before, saved(*database));
        EXPECT_NE(std::ranges::find(changed, "+ -4.5"), changed.end());
        EXPECT_EQ(std::ranges::find(changed, "+ 74") != changed.end(), modern);
    }
}
