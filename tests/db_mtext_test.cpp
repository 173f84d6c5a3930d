// Paragraph texts: their codes, where their lines break and stand, what changes them.
#include "acutmem.h"
#include "dbents.h"
#include "dbmtext.h"
#include "host/db/entities/mtext_codes.h"
#include "tests/db_entities.h"

#include <cmath>
#include <numbers>

namespace {

using test::box;

std::wstring taken(ACHAR* text) {
    std::wstring copy = text != nullptr ? text : L"";
    acutDelString(text);
    return copy;
}

// Signs of the font txt are as wide as they are high, with a third of it as the gap behind them: "ABC" of
// height 6 is 16 wide. Base lines are 10 apart.
std::unique_ptr<AcDbDatabase> with_mtext(std::string_view groups) {
    return test::database_of(
        test::modern_drawing("0 MTEXT|5 100|330 1F|100 AcDbEntity|8 0|100 AcDbMText|10 100|20 50|30 0|40 6|" +
                             std::string(groups)));
}

} // namespace

TEST(DbMText, TheTextIsTheContentsWithoutTheirCodes) {
    struct row {
        const wchar_t* contents;
        const wchar_t* text;
    };
    for (const row& row : {
             row{L"", L""}, row{L"one\\Ptwo\\Xthree\\Nfour", L"one\r\ntwo\r\nthree\r\nfour"},
             row{L"a\\~b\\\\c\\{d\\}", L"a b\\c{d}"},
             row{L"{\\fArial|b0|i1|c134|p34;big} \\Fgbenor,gbcbig;small", L"big small"},
             row{L"\\H2.5;a\\H0.7x;b\\W0.8;c\\Q15;d\\T1.2;e\\A1;f", L"abcdef"},
             row{L"\\C1;red\\c255;too\\Lunder\\l\\Oover\\o\\Kthrough\\k", L"redtoounderoverthrough"},
             row{L"\\S1/2; \\S+0.1^ -0.2; \\Sa\\;b#c;", L"1/2 +0.1^-0.2 a;b/c"},
             row{L"\\Sno fraction;", L"no fraction"}, row{L"\\pi-2,l3,xqc,t4,8;text\\pq*;", L"text"},
             row{L"%%c50 at 45%%d", L"\xD8"
                                    L"50 at 45\xB0"},
             row{L"line\nbreak\ttab", L"line\r\nbreak\ttab"}, row{L"\\H2.5", L""}, // a code that does not end
             row{L"\\Sup", L"up"},                                                 // and a fraction
             row{L"}}a{{{b\\", L"ab\\"},        // braces without their other half
             row{L"\\Zstrange", L"\\Zstrange"}, // no code
         })
        EXPECT_EQ(db::plain_mtext(row.contents), row.text) << base::narrow(row.contents);
}

TEST(DbMText, ItsLinesBreakAndStandAsItsGroupsSay) {
    struct row {
        const char* groups;
        box expected;
    };
    for (const row& row : {
             row{"1 ABC", {100, 44, 116, 50}},
             row{"1 ABC\\PA", {100, 34, 116, 50}},
             row{"3 AB|1 C", {100, 44, 116, 50}},
             row{"41 20|1 ABC ABC", {100, 34, 116, 50}},
             row{"41 40|1 ABC ABC", {100, 44, 140, 50}}, // 7 signs, the last one without a gap
             row{"41 39|1 ABC ABC", {100, 34, 116, 50}},
             row{"41 10|1 ABCDEF", {100, 44, 134, 50}}, // a word is not broken
             row{"41 20|1 ABC\\~ABC", {100, 44, 140, 50}},
             row{"41 14|1 \\U+6C34\\U+6C34\\U+6C34",
                 {100, 34, 113.56, 50}}, // but signs that fill squares are
             row{"1 ABC\\P\\PA", {100, 24, 116, 50}},
             row{"1 ABC\\P", {100, 44, 116, 50}},
             row{"44 2|1 A\\PA", {100, 24, 104, 50}},
             row{"1 A\\P\\H12;A", {100, 24, 108, 50}},
             row{"73 2|1 A\\P\\H12;A", {100, 34, 108, 50}},
             row{"1 A{\\H2x;A}A", {100, 38, 122, 50}},
             row{"1 \\W0.5;ABC", {100, 44, 108, 50}},
             row{"1 \\T2;ABC", {100, 44, 134, 50}},
             row{"1 \\Q45;ABC", {100, 44, 122, 50}},
             row{"71 2|1 ABC\\PA", {92, 34, 108, 50}},
             row{"71 3|1 ABC\\PA", {84, 34, 100, 50}},
             row{"71 4|1 ABC\\PA", {100, 42, 116, 58}},
             row{"71 5|1 ABC\\PA", {92, 42, 108, 58}},
             row{"71 6|1 ABC\\PA", {84, 42, 100, 58}},
             row{"71 7|1 ABC\\PA", {100, 50, 116, 66}},
             row{"71 8|1 ABC\\PA", {92, 50, 108, 66}},
             row{"71 9|1 ABC\\PA", {84, 50, 100, 66}},
             row{"71 77|1 ABC\\PA", {100, 34, 116, 50}},
             row{"41 36|1 \\pqc;ABC", {110, 44, 126, 50}},
             row{"41 36|1 \\pqr;ABC", {120, 44, 136, 50}},
             row{"41 36|1 \\pi1,l1;ABC ABC", {106, 34, 128, 50}},
             row{"11 0|21 1|31 0|1 ABC", {100, 50, 106, 66}},
             row{"50 90|1 ABC", {100, 50, 106, 66}},
             row{"11 1|21 0|31 0|50 90|1 ABC", {100, 50, 106, 66}}, // the last one counts
             row{"50 90|11 1|21 0|31 0|1 ABC", {100, 44, 116, 50}},
             row{"210 0|220 0|230 -1|11 1|21 0|31 0|1 ABC", {100, 50, 116, 56}},
             row{"210 0|220 0|230 -1|1 ABC", {100, 50, 116, 56}},
             row{"210 0|220 0|230 -1|50 0|1 ABC", {84, 44, 100, 50}}, // the angle is that of the plane
             // The two of a fraction stand ten apart, sixteen high together, around the middle of a letter.
             row{"1 \\A1;\\S1/2;", {100, 34, 104, 50}},
             row{"1 \\A0;\\SA^ B;A", {100, 34, 110, 50}},
             row{"1 \\SA#A;", {100, 41, 112, 50}},
         }) {
        const auto database = with_mtext(row.groups);
        EXPECT_EQ(test::box_of(*test::seen(*database, 0x100)), row.expected) << row.groups;
    }
}

TEST(DbMText, ColumnsStandSideBySide) {
    const auto database =
        with_mtext("41 20|1 AB\\PAB\\PAB\\PAB|101 Embedded Object|70 1|10 1|20 0|30 0|11 100|21 50|"
                   "31 0|40 20|41 16|42 0|43 0|71 1|72 2|44 20|45 5|73 0|74 0");
    const test::seen<AcDbMText> text(*database, 0x100);
    AcDbMText::ColumnType type = AcDbMText::kNoColumns;
    int count = 0;
    double gutter = 0.0;
    text->getColumnType(type);
    text->getColumnCount(count);
    text->getColumnGutterWidth(gutter);
    EXPECT_EQ(type, AcDbMText::kStaticColumns);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(gutter, 5.0);
    EXPECT_EQ(test::box_of(*text), (box{100, 34, 135, 50})) << "two lines in each";
    const auto broken =
        with_mtext("41 20|1 AB\\NAB|101 Embedded Object|40 20|41 0|71 2|72 3|44 20|45 5|73 0|46 50|46 0");
    EXPECT_EQ(test::box_of(*test::seen(*broken, 0x100)), (box{100, 44, 135, 50}));
    const auto absurd =
        with_mtext("41 nan|1 AB AB|101 Embedded Object|71 1|72 999999999|44 nan|45 1e300|46 inf");
    AcDbExtents extents;
    EXPECT_EQ(test::seen(*absurd, 0x100)->getGeomExtents(extents), Acad::eOk);
}

TEST(DbMText, SettersChangeTheirGroupsAlone) {
    struct row {
        const char* what;
        const char* groups;
        void (*change)(AcDbMText&);
        std::vector<std::string> expected;
    };
    const std::wstring longer = std::wstring(250, L'x') + std::wstring(250, L'y') + L"z";
    static std::wstring contents;
    contents = longer;
    const row rows[] = {
        {"the same contents", "3 A|1 BC", [](AcDbMText& t) { EXPECT_EQ(t.setContents(L"ABC"), 1); }, {}},
        {"shorter contents",
         "3 A|3 B|1 C|7 STANDARD",
         [](AcDbMText& t) { t.setContents(L"X"); },
         {"- 3", "- A", "- 3", "- B", "- C", "+ X"}},
        {"longer contents",
         "1 A",
         [](AcDbMText& t) { t.setContents(contents.c_str()); },
         {"+ 3", "+ " + std::string(250, 'x'), "+ 3", "+ " + std::string(250, 'y'), "- A", "+ z"}},
        {"contents where there are none", "41 7", [](AcDbMText& t) { t.setContents(L"X"); }, {"+ 1", "+ X"}},
        {"location",
         "1 A",
         [](AcDbMText& t) {
             t.setLocation({1, 50, 0});
         },
         {"- 100", "+ 1.0"}},
        {"rotation told by an angle",
         "1 A|50 45",
         [](AcDbMText& t) {
             t.setDirection({0, 3, 0});
         },
         {"- 50", "- 45", "+ 11", "+ 0.0", "+ 21", "+ 1.0", "+ 31", "+ 0.0"}},
        {"the same direction",
         "1 A|50 0",
         [](AcDbMText& t) {
             t.setDirection({2, 0, 0});
         },
         {}},
        {"attachment",
         "71 1|1 A",
         [](AcDbMText& t) { t.setAttachment(AcDbMText::kBottomRight); },
         {"- 1", "+ 9"}},
        {"bad values",
         "1 A",
         [](AcDbMText& t) {
             EXPECT_EQ(t.setTextHeight(0.0), Acad::eInvalidInput);
             EXPECT_EQ(t.setWidth(-1.0), Acad::eInvalidInput);
             EXPECT_EQ(t.setLineSpacingFactor(5.0), Acad::eInvalidInput);
             EXPECT_EQ(t.setDirection({0, 0, 1}), Acad::eInvalidInput);
             EXPECT_EQ(t.setTextStyle(AcDbObjectId::kNull), Acad::eWrongObjectType);
         },
         {}},
        {"moved with its columns",
         "41 20|1 A|101 Embedded Object|70 1|10 1|20 0|30 0|11 100|21 50|31 0|40 20|71 0",
         [](AcDbMText& t) {
             t.transformBy(AcGeMatrix3d::translation({1, 0, 0}));
         },
         {"- 100", "+ 101.0", "- 100", "+ 101.0"}},
    };
    for (const row& row : rows) {
        const auto database = with_mtext(row.groups);
        const std::string before = test::written(database->imp().drawing());
        {
            const test::written_to<AcDbMText> text(*database, 0x100);
            row.change(*text);
        }
        const auto changes = test::lines_changed(before, test::written(database->imp().drawing()));
        auto expected = row.expected;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(changes, expected) << row.what;
    }
}

TEST(DbMText, MovedItDrawsWhereWhatItDrewIsMovedTo) {
    AcGeMatrix3d mirror;
    mirror.setToScaling(AcGeScale3d(-2, 2, 2));
    const AcGeMatrix3d matrices[] = {AcGeMatrix3d::translation({3, 4, 5}),
                                     AcGeMatrix3d::rotation(0.7, AcGeVector3d(1, 2, 3), {9, 8, 7}),
                                     AcGeMatrix3d::scaling(2.5, {1, 1, 1}), mirror};
    for (const char* groups : {"1 ABC\\PA", "71 5|50 30|1 ABC {\\H9;A}", "41 20|1 ABC AB|210 0|220 1|230 0"})
        for (const AcGeMatrix3d& matrix : matrices) {
            const auto database = with_mtext(groups);
            const test::written_to<AcDbMText> text(*database, 0x100);
            const box expected = test::box_through(*text, matrix);
            ASSERT_EQ(text->transformBy(matrix), Acad::eOk);
            EXPECT_EQ(test::box_of(*text), expected) << groups;
        }
    const auto database = with_mtext("1 ABC");
    const test::written_to<AcDbMText> text(*database, 0x100);
    AcGeMatrix3d uneven;
    uneven.setToScaling(AcGeScale3d(1, 2, 1));
    EXPECT_EQ(text->transformBy(uneven), Acad::eCannotScaleNonUniformly);
    EXPECT_FALSE(text->isModified());
}

TEST(DbMText, AnotherAttachmentCanLeaveItWhereItIs) {
    for (int from = 1; from <= 9; ++from)
        for (int to = 1; to <= 9; ++to) {
            const auto database = with_mtext("50 20|1 ABC\\PA|71 " + std::to_string(from));
            const test::written_to<AcDbMText> text(*database, 0x100);
            text->setContents(L"ABC\\PABC"); // lines of one width: alignment does not move them
            const box before = test::box_of(*text);
            ASSERT_EQ(text->setAttachmentMovingLocation(static_cast<AcDbMText::AttachmentPoint>(to)),
                      Acad::eOk);
            EXPECT_EQ(text->attachment(), to);
            EXPECT_EQ(test::box_of(*text), before) << from << " to " << to;
        }
}

TEST(DbMText, TakenApartItIsLinesOfText) {
    const auto database = with_mtext("50 90|1 AB AB\\P\\H12;\\C1;C");
    const test::seen<AcDbMText> text(*database, 0x100);
    AcDbVoidPtrArray parts;
    ASSERT_EQ(text->explode(parts), Acad::eOk);
    ASSERT_EQ(parts.length(), 2);
    const std::unique_ptr<AcDbText> first(static_cast<AcDbText*>(parts[0]));
    const std::unique_ptr<AcDbText> second(static_cast<AcDbText*>(parts[1]));
    EXPECT_EQ(taken(first->textString()), L"AB AB");
    EXPECT_EQ(first->colorIndex(), 256);
    EXPECT_EQ(taken(second->textString()), L"C");
    EXPECT_EQ(second->height(), 12.0);
    EXPECT_EQ(second->colorIndex(), 1);
    AcDbExtents all;
    AcDbExtents one;
    first->getGeomExtents(all);
    second->getGeomExtents(one);
    all.addExt(one);
    EXPECT_EQ(test::flat(all), test::box_of(*text));
}
