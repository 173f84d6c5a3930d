// Block references: where they put their blocks, what limits and takes them apart, and blocks that mean harm.
#include "dbelipse.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "tests/db_entities.h"

#include <cmath>
#include <numbers>

namespace {

using test::box;

constexpr double quarter = std::numbers::pi / 2.0;

// Blocks of R12, which need no records. B holds a line from (1, 1) to (5, 3) and has its base at (1, 1).
constexpr std::string_view b =
    "0 BLOCK|8 0|2 B|70 0|10 1|20 1|3 B|0 LINE|8 0|10 1|20 1|11 5|21 3|0 ENDBLK|8 0";

std::string old_drawing(std::string_view blocks, std::string_view entities) {
    return test::groups("0 SECTION|2 BLOCKS|" + std::string(blocks) + "|0 ENDSEC|0 SECTION|2 ENTITIES|" +
                        std::string(entities) + "|0 ENDSEC|0 EOF");
}

// Of 2000.
std::string block(std::string_view name, std::string_view record, std::string_view entities) {
    const std::string n(name);
    const std::string r(record);
    return "0 BLOCK|2 " + n + "|330 " + r + "|5 " + r +
           "1|100 AcDbEntity|8 0|100 AcDbBlockBegin|70 0|10 0|20 0|30 0|3 " + n + "|1 |" +
           std::string(entities) + "|0 ENDBLK|5 " + r + "2|330 " + r + "|100 AcDbEntity|8 0|100 AcDbBlockEnd";
}

void destroy(AcDbVoidPtrArray& parts) {
    for (int i = 0; i < parts.length(); ++i)
        delete static_cast<AcDbEntity*>(parts[i]);
}

} // namespace

TEST(DbBlockReference, ItPutsItsBlockWhereItsGroupsSay) {
    struct row {
        const char* groups;
        box expected;
    };
    for (const row& row : {
             row{"", {10, 20, 14, 22}},
             row{"|41 2|42 3", {10, 20, 18, 26}},
             row{"|41 -1", {6, 20, 10, 22}},
             row{"|41 -2|42 -2", {2, 16, 10, 20}},
             row{"|50 90", {8, 20, 10, 24}},
             row{"|50 90|41 2", {8, 20, 10, 28}},
             row{"|210 0|220 0|230 -1", {-14, 20, -10, 22}},
             row{"|210 1|220 0|230 0", {0, 10, 0, 14}}, // the plane's x axis is the world's y axis
             row{"|70 3|44 10", {10, 20, 34, 22}},
             row{"|70 3|71 2|44 10|45 -5|50 90", {8, 20, 15, 44}},
             row{"|70 0|71 -1|44 10|45 10", {10, 20, 14, 22}},
             row{"|70 32767|71 32767|44 1|45 1", {10, 20, 32780, 32788}},
         }) {
        const auto database =
            test::database_of(old_drawing(b, "0 INSERT|5 100|8 0|2 b|10 10|20 20" + std::string(row.groups)));
        EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), row.expected) << row.groups;
    }
}

TEST(DbBlockReference, TheBoxIsExactAlsoWhenNestedBlocksAreTurned) {
    // N holds B turned by 45 degrees; a diagonal that lies level then.
    const std::string blocks =
        std::string("0 BLOCK|8 0|2 D|70 0|10 0|20 0|3 D|0 LINE|8 0|10 0|20 0|11 10|21 10|") +
        "0 LINE|8 0|10 0|20 0|11 -10|21 -10|0 ENDBLK|8 0|" +
        "0 BLOCK|8 0|2 N|70 0|10 0|20 0|3 N|0 INSERT|8 0|2 D|10 0|20 0|50 -45|0 ENDBLK|8 0";
    const auto database = test::database_of(
        old_drawing(blocks, "0 INSERT|5 100|8 0|2 N|10 0|20 0|0 INSERT|5 101|8 0|2 N|10 0|20 0|50 45"));
    const double half = std::sqrt(200.0);
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), (box{-half, 0, half, 0}));
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x101)), (box{-10, -10, 10, 10}));
}

TEST(DbBlockReference, ClassesAndGettersTellWhatItIs) {
    const auto database = test::database_of(test::modern_drawing(
        "0 INSERT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 b|10 1|20 2|30 3|41 2|42 -3|43 "
        "4|50 450|"
        "0 INSERT|5 101|330 1F|100 AcDbEntity|8 0|100 AcDbMInsertBlock|2 B|10 1|20 2|30 3|70 3|71 2|44 5|45 "
        "6|"
        "0 INSERT|5 102|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 none|10 1|20 2|30 3|71 2|"
        "0 INSERT|5 103|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|41 nan|50 inf|70 99999999999",
        block("B", "B0", "0 POINT|5 B3|330 B0|100 AcDbEntity|8 0|100 AcDbPoint|10 0|20 0|30 0")));
    const test::seen<AcDbBlockReference> reference(*database, 0x100);
    EXPECT_EQ(reference->isA(), AcDbBlockReference::desc());
    EXPECT_EQ(reference->position(), AcGePoint3d(1, 2, 3));
    EXPECT_EQ(reference->scaleFactors(), AcGeScale3d(2, -3, 4));
    EXPECT_NEAR(reference->rotation(), quarter, 1e-12);
    EXPECT_EQ(reference->blockTableRecord(), database->imp().id(database->imp().records().find(0xB0)));
    const test::seen<AcDbMInsertBlock> array(*database, 0x101);
    EXPECT_EQ(array->columns(), 3);
    EXPECT_EQ(array->rows(), 2);
    EXPECT_EQ(array->columnSpacing(), 5.0);
    EXPECT_EQ(array->rowSpacing(), 6.0);
    EXPECT_EQ(test::seen<AcDbMInsertBlock>(*database, 0x102)->rows(), 2) << "by its numbers alone";
    EXPECT_TRUE(test::seen<AcDbBlockReference>(*database, 0x102)->blockTableRecord().isNull());
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x102)), test::nothing);
    EXPECT_EQ(test::seen<AcDbBlockReference>(*database, 0x103)->blockTransform(), AcGeMatrix3d::kIdentity);
    EXPECT_EQ(test::seen<AcDbEntity>(*database, 0xB01)->isA(), AcDbBlockBegin::desc());
    EXPECT_EQ(test::seen<AcDbEntity>(*database, 0xB02)->isA(), AcDbBlockEnd::desc());
}

TEST(DbBlockReference, SettersAndTransformationsChangeTheirGroupsAlone) {
    struct row {
        const char* what;
        Acad::ErrorStatus (*change)(AcDbBlockReference&);
        Acad::ErrorStatus answer;
        std::vector<std::string> expected;
    };
    const row rows[] = {
        {"where it is",
         [](AcDbBlockReference& r) {
             return r.setPosition({10, 20, 0});
         },
         Acad::eOk,
         {}},
        {"position",
         [](AcDbBlockReference& r) {
             return r.setPosition({10, 21, 0});
         },
         Acad::eOk,
         {"- 20", "+ 21.0"}},
        {"scale",
         [](AcDbBlockReference& r) {
             return r.setScaleFactors({2, 1, 1});
         },
         Acad::eOk,
         {"+ 41", "+ 2.0"}},
        {"no scale",
         [](AcDbBlockReference& r) {
             return r.setScaleFactors({2, 0, 1});
         },
         Acad::eInvalidInput,
         {}},
        {"rotation",
         [](AcDbBlockReference& r) { return r.setRotation(-quarter); },
         Acad::eOk,
         {"+ 50", "+ 270.0"}},
        {"moved",
         [](AcDbBlockReference& r) {
             return r.transformBy(AcGeMatrix3d::translation({1, 0, 0}));
         },
         Acad::eOk,
         {"- 10", "+ 11.0"}},
        {"mirrored at the y axis",
         [](AcDbBlockReference& r) {
             AcGeMatrix3d m;
             m.setToScaling(AcGeScale3d(-1, 1, 1));
             return r.transformBy(m);
         },
         Acad::eOk,
         {"- 10", "+ -10.0", "+ 41", "+ -1.0"}},
        {"mirrored at the x axis",
         [](AcDbBlockReference& r) {
             AcGeMatrix3d m;
             m.setToScaling(AcGeScale3d(1, -1, 1));
             return r.transformBy(m);
         },
         Acad::eOk,
         {"- 20", "+ -20.0", "+ 42", "+ -1.0"}},
        {"its own transformation",
         [](AcDbBlockReference& r) { return r.setBlockTransform(r.blockTransform()); },
         Acad::eOk,
         {}},
        {"slanted",
         [](AcDbBlockReference& r) {
             AcGeMatrix3d m;
             m(0, 1) = 0.5;
             return r.setBlockTransform(m);
         },
         Acad::eCannotScaleNonUniformly,
         {}},
        {"no block",
         [](AcDbBlockReference& r) { return r.setBlockTableRecord(AcDbObjectId::kNull); },
         Acad::eWrongObjectType,
         {}},
    };
    for (const row& row : rows) {
        const std::string before = old_drawing(b, "0 INSERT|5 100|8 0|2 B|10 10|20 20");
        const auto database = test::database_of(before);
        {
            const test::written_to<AcDbBlockReference> reference(*database, 0x100);
            EXPECT_EQ(row.change(*reference), row.answer) << row.what;
        }
        auto expected = row.expected;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(test::lines_changed(before, test::written(database->imp().drawing())), expected)
            << row.what;
    }
}

TEST(DbBlockReference, MovedItDrawsWhereWhatItDrewIsMovedTo) {
    AcGeMatrix3d mirror;
    mirror.setToScaling(AcGeScale3d(1, -1, 1));
    AcGeMatrix3d depth;
    depth.setToScaling(AcGeScale3d(1, 1, -1));
    AcGeMatrix3d uneven;
    uneven.setToScaling(AcGeScale3d(2, 3, 1));
    const AcGeMatrix3d matrices[] = {AcGeMatrix3d::translation({3, 4, 5}),
                                     AcGeMatrix3d::rotation(0.7, AcGeVector3d(1, 2, 3), {9, 8, 7}),
                                     AcGeMatrix3d::scaling(2.5, {1, 1, 1}) * mirror,
                                     AcGeMatrix3d::rotation(2.0, AcGeVector3d::kZAxis) * mirror,
                                     depth,
                                     uneven};
    const char* const references[] = {"", "|41 -2|42 3|43 0.5", "|50 180|41 -1|42 -1",
                                      "|70 3|71 2|44 10|45 7|50 90", "|210 0|220 0|230 -1|50 90"};
    for (const char* groups : references)
        for (std::size_t i = 0; i < std::size(matrices); ++i) {
            const auto database = test::database_of(old_drawing(
                b, "0 INSERT|5 100|8 0|66 1|2 B|10 10|20 20" + std::string(groups) +
                       "|0 ATTRIB|5 101|8 0|10 30|20 30|40 6|1 AB|2 TAG|70 0|0 SEQEND|5 102|8 0"));
            const test::written_to<AcDbBlockReference> reference(*database, 0x100);
            const box expected = test::box_through(*reference, matrices[i]);
            ASSERT_EQ(reference->transformBy(matrices[i]), Acad::eOk);
            EXPECT_EQ(test::box_of(*reference), expected) << groups << " by matrix " << i;
        }
    const auto database = test::database_of(old_drawing(b, "0 INSERT|5 100|8 0|2 B|10 10|20 20|50 30"));
    const test::written_to<AcDbBlockReference> reference(*database, 0x100);
    EXPECT_EQ(reference->transformBy(uneven), Acad::eCannotScaleNonUniformly);
    EXPECT_FALSE(reference->isModified());
}

TEST(DbBlockReference, BlocksThatHoldThemselvesOrEachOtherEnd) {
    std::string tower; // each of sixty blocks holds the one before it ten times, turned
    std::string previous = "B";
    for (int i = 0; i < 60; ++i) {
        const std::string name = "T" + std::to_string(i);
        tower += "|0 BLOCK|8 0|2 " + name + "|70 0|10 0|20 0|3 " + name;
        for (int turn = 0; turn < 10; ++turn)
            tower += "|0 INSERT|8 0|2 " + previous + "|10 0|20 0|50 " + std::to_string(turn * 7 + 1);
        tower += "|0 ENDBLK|8 0";
        previous = name;
    }
    std::string chain = "|0 BLOCK|8 0|2 C0|70 0|10 0|20 0|3 C0|0 ENDBLK|8 0"; // thousands, one in the other
    for (int i = 1; i < 5000; ++i)
        chain += "|0 BLOCK|8 0|2 C" + std::to_string(i) + "|70 0|10 0|20 0|3 C|0 INSERT|8 0|2 C" +
                 std::to_string(i - 1) + "|10 0|20 0|0 ENDBLK|8 0";
    const std::string self = "|0 BLOCK|8 0|2 S|70 0|10 0|20 0|3 S|0 INSERT|8 0|2 S|10 5|20 5|"
                             "0 LINE|8 0|10 0|20 0|11 1|21 1|0 ENDBLK|8 0";
    const auto database = test::database_of(
        old_drawing(std::string(b) + tower + chain + self,
                    "0 INSERT|5 100|8 0|2 S|10 0|20 0|0 INSERT|5 101|8 0|2 T59|10 0|20 0|50 3|"
                    "0 INSERT|5 102|8 0|2 C4999|10 0|20 0"));
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), (box{0, 0, 1, 1}));
    EXPECT_FALSE(test::box_of(*test::seen(*database, 0x101)) == test::nothing);
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x102)), test::nothing);
}

TEST(DbBlockReference, ABoxFollowsChangesInTheBlockAndItsTextStyles) {
    const auto database = test::database_of(test::modern_drawing(
        "0 INSERT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 0|20 0|30 0",
        block("B", "B0",
              "0 TEXT|5 B3|330 B0|100 AcDbEntity|8 0|100 AcDbText|10 0|20 0|30 0|40 6|1 ABC|100 AcDbText"),
        {},
        "0 STYLE|5 30|330 3|100 AcDbSymbolTableRecord|100 AcDbTextStyleTableRecord|2 Standard|70 0|3 "
        "txt|4 "));
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), (box{0, 0, 16, 6}));
    {
        const test::written_to<AcDbText> text(*database, 0xB3);
        text->setHeight(12.0);
    }
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), (box{0, 0, 32, 12}));
    {
        const test::written_to<AcDbTextStyleTableRecord> style(*database, 0x30);
        style->setFileName(L"arial.ttf");
    }
    EXPECT_NEAR(test::box_of(*test::seen(*database, 0x100)).most_x, 12.0 * (667 + 667 + 722) / 716.0, 1e-6);
}

// ---- attributes

TEST(DbBlockReference, AttributesAreAddedFoundAndDrawn) {
    const std::string before = test::modern_drawing(
        "0 INSERT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 0|20 0|30 0",
        block("B", "B0", "0 POINT|5 B3|330 B0|100 AcDbEntity|8 0|100 AcDbPoint|10 0|20 0|30 0"));
    const auto database = test::database_of(before);
    AcDbObjectId id;
    {
        const test::written_to<AcDbBlockReference> reference(*database, 0x100);
        auto* const attribute = new AcDbAttribute({50, 50, 0}, L"AB", L"TAG");
        attribute->setHeight(6.0);
        ASSERT_EQ(reference->appendAttribute(id, attribute), Acad::eOk);
        EXPECT_EQ(reference->appendAttribute(attribute), Acad::eAlreadyInDb);
        attribute->close();
        const std::unique_ptr<AcDbObjectIterator> all(reference->attributeIterator());
        ASSERT_FALSE(all->done());
        EXPECT_EQ(all->objectId(), id);
        all->step();
        EXPECT_TRUE(all->done());
    }
    EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), (box{0, 0, 60, 56}));
    const std::string after = test::written(database->imp().drawing());
    EXPECT_NE(after.find("66\n"), std::string::npos);
    EXPECT_NE(after.find("SEQEND\n"), std::string::npos);
    // What was written is read as it was meant.
    const auto again = test::database_of(after);
    EXPECT_EQ(test::box_of(*test::seen(*again, 0x100)), (box{0, 0, 60, 56}));
    const test::seen<AcDbBlockReference> reference(*again, 0x100);
    AcDbAttribute* attribute = nullptr;
    EXPECT_EQ(reference->openAttribute(attribute, reference->objectId(), AcDb::kForRead),
              Acad::eInvalidInput);
    {
        const test::written_to<AcDbAttribute> erased(*again, static_cast<std::uint64_t>(id.handle()));
        erased->erase();
    }
    EXPECT_EQ(test::box_of(*test::seen(*again, 0x100)), (box{0, 0, 0, 0}));
    EXPECT_TRUE(std::unique_ptr<AcDbObjectIterator>(reference->attributeIterator())->done());
}

TEST(DbBlockReference, ANewOneDrawsAndBringsItsAttributes) {
    const auto database =
        test::database_of(test::modern_drawing("", block("B", "B0",
                                                         "0 LINE|5 B3|330 B0|100 AcDbEntity|8 0|100 AcDbLine|"
                                                         "10 0|20 0|30 0|11 1|21 2|31 0")));
    const AcDbObjectId definition = database->imp().id(database->imp().records().find(0xB0));
    auto reference = std::make_unique<AcDbBlockReference>(AcGePoint3d(10, 0, 0), definition);
    EXPECT_EQ(reference->blockTableRecord(), definition);
    EXPECT_EQ(test::box_of(*reference), (box{10, 0, 11, 2}));
    auto* const attribute = new AcDbAttribute({20, 0, 0}, L"AB", L"TAG");
    attribute->setHeight(6.0);
    ASSERT_EQ(reference->appendAttribute(attribute), Acad::eOk);
    EXPECT_EQ(test::box_of(*reference), (box{10, 0, 30, 6}));
    const std::unique_ptr<AcDbObjectIterator> all(reference->attributeIterator());
    EXPECT_EQ(all->entity(), attribute);
    ASSERT_EQ(reference->transformBy(AcGeMatrix3d::translation({0, 1, 0})), Acad::eOk);
    const std::unique_ptr<AcDbBlockReference> copy(static_cast<AcDbBlockReference*>(reference->clone()));
    EXPECT_EQ(test::box_of(*copy), (box{10, 1, 30, 7}));
    AcDbBlockTableRecord* space = nullptr;
    ASSERT_EQ(acdbOpenObject(space, database->currentSpaceId(), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    ASSERT_EQ(space->appendAcDbEntity(id, reference.get()), Acad::eOk);
    space->close();
    reference.release()->close();
    const auto again = test::database_of(test::written(database->imp().drawing()));
    EXPECT_EQ(test::box_of(*test::seen(*again, static_cast<std::uint64_t>(id.handle()))),
              (box{10, 1, 30, 7}));
}

// ---- clips

namespace {

// A reference at (100, 0) to a block with a diagonal, a circle and a text, with a filter of these groups.
std::unique_ptr<AcDbDatabase> clipped(std::string_view filter,
                                      std::string_view reference = "|10 100|20 0|30 0") {
    return test::database_of(test::modern_drawing(
        "0 INSERT|5 100|102 {ACAD_XDICTIONARY|360 E0|102 }|330 1F|100 AcDbEntity|8 0|100 "
        "AcDbBlockReference|2 B" +
            std::string(reference),
        block("B", "B0",
              "0 LINE|5 B3|330 B0|100 AcDbEntity|8 0|100 AcDbLine|10 0|20 0|30 0|11 10|21 10|31 0|"
              "0 CIRCLE|5 B4|330 B0|100 AcDbEntity|8 0|100 AcDbCircle|10 20|20 0|30 0|40 5|"
              "0 TEXT|5 B5|330 B0|100 AcDbEntity|8 0|100 AcDbText|10 30|20 0|30 0|40 6|1 AB|100 AcDbText|"
              "0 XLINE|5 B6|330 B0|100 AcDbEntity|8 0|100 AcDbXline|10 0|20 -50|30 0|11 1|21 0|31 0"),
        "0 DICTIONARY|5 E0|330 100|100 AcDbDictionary|3 ACAD_FILTER|360 E1|0 DICTIONARY|5 E1|330 E0|100 "
        "AcDbDictionary|"
        "3 SPATIAL|360 E2|0 SPATIAL_FILTER|5 E2|330 E1|100 AcDbFilter|100 AcDbSpatialFilter|" +
            std::string(filter)));
}

// Made when the reference stood at (100, 0).
constexpr std::string_view planes = "|210 0|220 0|230 1|11 0|21 0|31 0|71 1|72 0|73 0";
constexpr std::string_view matrices = "|40 1|40 0|40 0|40 -100|40 0|40 1|40 0|40 0|40 0|40 0|40 1|40 0"
                                      "|40 1|40 0|40 0|40 0|40 0|40 1|40 0|40 0|40 0|40 0|40 1|40 0";

std::string filter(std::string_view corners) {
    return std::string(corners) + std::string(planes) + std::string(matrices);
}

} // namespace

TEST(DbBlockReference, AClipBoundaryCutsWhatItDraws) {
    struct row {
        const char* what;
        std::string filter;
        box expected;
    };
    const row rows[] = {
        {"a box over the line's middle", filter("70 2|10 102|20 -9|10 106|20 99"), {102, 2, 106, 6}},
        {"given by its other corners", filter("70 2|10 106|20 99|10 102|20 -9"), {102, 2, 106, 6}},
        {"a box over the right of the circle", filter("70 2|10 123|20 -9|10 127|20 9"), {123, -4, 125, 4}},
        {"a box within the circle", filter("70 2|10 119|20 -1|10 121|20 1"), test::nothing},
        {"a box over part of the text", filter("70 2|10 132|20 1|10 135|20 3"), {132, 1, 135, 3}},
        {"a triangle over the line", filter("70 3|10 100|20 0|10 110|20 0|10 100|20 10"), {100, 0, 105, 5}},
        // Everything but a box from (101, -60) to (139, 9): the outer rim, and the inner one the other way
        // round.
        {"all but the inside of a box",
         filter("70 10|10 80|20 -80|10 200|20 -80|10 200|20 80|10 80|20 80|10 80|20 -80|10 101|20 -60|10 "
                "101|20 9|"
                "10 139|20 9|10 139|20 -60|10 101|20 -60"),
         {80, -50, 200, 10}},
        {"turned off",
         "70 2|10 102|20 -9|10 106|20 99|71 0|72 0|73 0" + std::string(matrices),
         {100, -5, 140, 10}},
        {"without matrices", "70 2|10 102|20 -9|10 106|20 99|71 1|72 0|73 0", {100, -5, 140, 10}},
        {"numbers that are none", filter("70 2|10 nan|20 -9|10 106|20 99"), {100, -5, 140, 10}},
        {"one corner", filter("70 1|10 102|20 -9"), {100, -5, 140, 10}},
        {"in front of the plane",
         "70 2|10 102|20 -9|10 106|20 99|71 1|72 1|40 -1|73 0" + std::string(matrices), test::nothing},
    };
    for (const row& row : rows) {
        const auto database = clipped(row.filter);
        EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), row.expected) << row.what;
    }
    // The boundary belongs to the block: it moves, turns and grows with the reference.
    const auto turned = clipped(filter("70 2|10 102|20 -9|10 106|20 99"), "|10 0|20 0|30 0|41 2|42 2|50 90");
    EXPECT_EQ(test::box_of(*test::seen(*turned, 0x100)), (box{-12, 4, -4, 12}));
    // And over rows and columns it stands still.
    const auto array = clipped(filter("70 2|10 102|20 -9|10 106|20 99"), "|10 100|20 0|30 0|70 2|44 4");
    EXPECT_EQ(test::box_of(*test::seen(*array, 0x100)), (box{102, 0, 106, 6}));
}

// ---- taking apart

TEST(DbBlockReference, TakenApartItIsCopiesOfWhatStandsInTheBlock) {
    struct row {
        const char* reference;
        box expected;
        std::vector<AcRxClass*> classes;
    };
    AcRxClass* const circle = AcDbCircle::desc();
    AcRxClass* const text = AcDbText::desc();
    AcRxClass* const nested = AcDbBlockReference::desc();
    AcRxClass* const definition = AcDbAttributeDefinition::desc();
    for (const row& row :
         {row{"|10 10|20 0", {5, -5, 22, 66}, {circle, text, nested, definition}},
          row{"|10 0|20 0|41 -2|42 2|50 90", {}, {circle, text, nested, definition}},
          row{"|10 0|20 0|41 2|42 1", {}, {AcDbEllipse::desc(), text, nested, definition}}}) {
        const auto database = test::database_of(old_drawing(
            std::string(b) +
                "|0 BLOCK|8 0|2 P|70 2|10 0|20 0|3 P|0 CIRCLE|8 L|62 1|10 0|20 0|40 5|"
                "0 TEXT|8 L|10 2|20 60|40 6|1 AB|0 INSERT|8 0|2 B|10 0|20 0|0 ATTDEF|8 0|10 0|20 20|40 6|"
                "1 X|3 ?|2 AB|70 0|0 ENDBLK|8 0",
            "0 INSERT|5 100|8 0|2 P" + std::string(row.reference) +
                "|66 1|0 ATTRIB|5 101|8 0|10 0|20 20|40 6|1 ABC|2 AB|70 0|0 SEQEND|5 102|8 0"));
        const test::seen<AcDbBlockReference> reference(*database, 0x100);
        AcDbVoidPtrArray parts;
        ASSERT_EQ(reference->explode(parts), Acad::eOk) << row.reference;
        ASSERT_EQ(parts.length(), static_cast<int>(row.classes.size()));
        AcDbExtents all;
        for (int i = 0; i < parts.length(); ++i) {
            const auto* const part = static_cast<AcDbEntity*>(parts[i]);
            EXPECT_EQ(part->isA(), row.classes[static_cast<std::size_t>(i)])
                << row.reference << ", part " << i;
            AcDbExtents one;
            ASSERT_EQ(part->getGeomExtents(one), Acad::eOk);
            if (i < 3) // without the definition, which the reference does not draw
                all.addExt(one);
        }
        EXPECT_EQ(static_cast<AcDbEntity*>(parts[0])->colorIndex(), 1);
        // The reference draws the same, and an attribute besides.
        AcDbExtents drawn;
        ASSERT_EQ(reference->geomExtentsBestFit(drawn), Acad::eOk);
        AcDbExtents attribute;
        test::seen<AcDbAttribute>(*database, 0x101)->getGeomExtents(attribute);
        all.addExt(attribute);
        EXPECT_EQ(test::flat(all), test::flat(drawn)) << row.reference;
        destroy(parts);
    }
}

TEST(DbBlockReference, WhatCanNotBeTakenApartStaysWhole) {
    const auto database = test::database_of(old_drawing(
        std::string(b) +
            "|0 BLOCK|8 0|2 X|70 4|10 0|20 0|3 X|1 x.dxf|0 ENDBLK|8 0|"
            "0 BLOCK|8 0|2 U|70 0|10 0|20 0|3 U|0 LINE|8 0|10 0|20 0|11 1|21 1|0 STRANGE|8 0|0 ENDBLK|8 0",
        "0 INSERT|5 100|8 0|2 X|10 0|20 0|0 INSERT|5 101|8 0|2 none|10 0|20 0|0 INSERT|5 102|8 0|2 B|10 0|20 "
        "0|70 2|"
        "0 INSERT|5 103|8 0|2 U|10 0|20 0|0 INSERT|5 104|8 0|2 B|10 0|20 0"));
    AcDbVoidPtrArray parts;
    for (const std::uint64_t handle : {0x100U, 0x101U, 0x102U, 0x103U}) {
        EXPECT_EQ(test::seen<AcDbBlockReference>(*database, handle)->explode(parts),
                  Acad::eCannotExplodeEntity)
            << std::hex << handle;
        EXPECT_TRUE(parts.isEmpty());
        EXPECT_EQ(test::seen<AcDbBlockReference>(*database, handle)->explodeToOwnerSpace(),
                  Acad::eCannotExplodeEntity);
    }
    const std::string before = test::written(database->imp().drawing());
    EXPECT_EQ(test::seen<AcDbBlockReference>(*database, 0x104)->explodeToOwnerSpace(), Acad::eOk);
    EXPECT_EQ(test::differences(before, test::written(database->imp().drawing())).front(), "+ LINE");
    EXPECT_EQ(AcDbBlockReference().explodeToOwnerSpace(), Acad::eNoDatabase);
}
