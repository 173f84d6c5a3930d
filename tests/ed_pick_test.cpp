// Picks by point, nested picks, windows, crossings and fences, by what entities draw.
#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/history.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/ed/pick.h"
#include "host/view/extents.h"
#include "host/view/quick_box.h"
#include "host/view/space_index.h"
#include "host/view/tracer.h"
#include "tests/db_entities.h"
#include "tests/support.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>

#include <mutex>

namespace {

struct opened {
    AcDbDatabase database{false, true};
    explicit opened(const std::filesystem::path& file) {
        EXPECT_EQ(database.dxfIn(file.wstring().c_str()), Acad::eOk) << file;
    }
    AcDbImpDatabase& imp() { return database.imp(); }
};

std::string digits(std::uint64_t handle) {
    char text[20];
    std::snprintf(text, sizeof text, "%llX", static_cast<unsigned long long>(handle));
    return text;
}

std::string handle_of(AcDbObjectId id) {
    return digits(static_cast<Adesk::UInt64>(id.handle()));
}

// "entity>innermost", with the containers from the innermost to the outermost; empty for nothing.
std::string picked(AcDbImpDatabase& database, double x, double y) {
    const auto hit = ed::pick(database, {x, y, 0.0});
    if (!hit)
        return {};
    std::string text = digits(database.records().handle(hit->entity));
    if (handle_of(hit->innermost) != text) {
        text = handle_of(hit->innermost);
        for (const AcDbObjectId container : hit->containers)
            text += "<" + handle_of(container);
    }
    return text;
}

std::string selected(AcDbImpDatabase& database, const gi::region& region, ed::reach reach) {
    std::string text;
    for (const dxf::record_id entity : ed::entities_in(database, region, reach))
        text += (text.empty() ? "" : " ") + digits(database.records().handle(entity));
    return text;
}

} // namespace

// Three lines through a point, in model space and in a block, and a table of draw order for each: two lines
// change places, the third one keeps its own.
TEST(Pick, TheTableOfDrawOrderSaysWhatLiesOnTop) {
    const auto lines = [](const std::string& first, const std::string& owner) {
        std::string text;
        for (int i = 0; i < 3; ++i)
            text += (i == 0 ? "" : "|") + std::string("0 LINE|5 ") + first + std::to_string(i) + "|330 " +
                    owner + "|100 AcDbEntity|8 0|100 AcDbLine|10 " + std::to_string(-i) + "|20 -5|11 " +
                    std::to_string(i) + "|21 5";
        return text;
    };
    const std::string insert =
        "|0 INSERT|5 200|330 1F|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B|10 100|20 0";
    const std::string block =
        "0 BLOCK|2 B|330 B0|5 B1|100 AcDbEntity|8 0|100 AcDbBlockBegin|70 0|10 0|20 0|" + lines("12", "B0") +
        "|0 ENDBLK|5 B2|330 B0|100 AcDbEntity|8 0|100 AcDbBlockEnd";
    const auto table = [](const std::string& handle, const std::string& first) {
        return "|0 DICTIONARY|5 " + handle + "0|100 AcDbDictionary|3 OTHER|350 0|3 ACAD_SORTENTS|350 " +
               handle + "1|0 SORTENTSTABLE|5 " + handle + "1|100 AcDbSortentsTable|330 0|331 " + first +
               "0|5 " + first + "2|331 " + first + "2|5 " + first + "0";
    };
    std::string text = test::modern_drawing(lines("10", "1F") + insert, block,
                                            "3 X|350 0" + table("D", "10") + table("E", "12"));
    const auto give_dictionary = [&](const std::string& record, const std::string& dictionary) {
        const std::string head = test::groups("5 " + record + "|330 1");
        const std::size_t at = text.find(head);
        ASSERT_NE(at, text.npos);
        text.insert(at + head.size(), test::groups("102 {ACAD_XDICTIONARY|360 " + dictionary + "|102 }"));
    };
    const auto plain = test::database_of(text);
    EXPECT_EQ(picked(plain->imp(), 0, 0), "102");
    EXPECT_EQ(picked(plain->imp(), 100, 0), "122<200");
    give_dictionary("1F", "D0");
    give_dictionary("B0", "E0");
    const auto ordered = test::database_of(text);
    EXPECT_EQ(picked(ordered->imp(), 0, 0), "100");
    EXPECT_EQ(picked(ordered->imp(), 100, 0), "120<200");
    // The line that keeps its place lies above the one that was on top.
    ordered->imp().records().begin_step("erase");
    ordered->imp().records().set_gone(ordered->imp().records().find(0x100), true);
    EXPECT_EQ(picked(ordered->imp(), 0, 0), "101");
    // Without the table the order is that of the file again.
    ordered->imp().records().set_gone(ordered->imp().records().find(0xD1), true);
    EXPECT_EQ(picked(ordered->imp(), 0, 0), "102");
}

// The view is 108 high, so the pick box of three pixels reaches 0.3 to each side.
TEST(Pick, APointGivesTheTopmostEntityThatIsSeen) {
    opened drawing(test::drawing("picks.dxf"));
    struct row {
        double x, y;
        const char* expected;
        const char* why;
    };
    for (const row& row : {
             row{50.0, 0.2, "20", "within the box"},
             row{50.0, 0.4, "", "beyond the box"},
             row{0.0, 50.0, "21", "locked layers can be picked"},
             row{0.0, 0.0, "21", "of two the one drawn later"},
             row{60.0, 50.0, "26", "the line lies above the circle"},
             row{50.0, 60.1, "22", "the circle's rim"},
             row{50.0, 55.0, "", "a circle's inside is empty"},
             row{50.0, 90.0, "", "off"},
             row{50.0, 80.0, "", "frozen"},
             row{50.0, 70.0, "", "invisible"},
             row{20.0, 20.0, "11<27", "in a block: twice the size, from its base point on"},
             row{20.0, 24.0, "12<27", "on a layer of its own in the block"},
             row{20.0, 28.0, "", "frozen in the block"},
             row{75.0, 20.0, "", "layer 0 in a block follows the reference, which is off"},
             row{75.0, 22.0, "12<28", "other layers of an off reference are seen"},
             row{90.0, 42.0, "11<16<29", "nested, turned and mirrored"},
             row{92.0, 42.0, "12<16<29", "and its other line on the other side"},
             row{50.0, 102.0, "", "a frozen reference hides everything in it"},
         })
        EXPECT_EQ(picked(drawing.imp(), row.x, row.y), row.expected) << row.why;
}

TEST(Pick, NestedPicksTellTheWayToTheWorld) {
    opened drawing(test::drawing("picks.dxf"));
    const auto hit = ed::pick(drawing.imp(), {90.0, 42.0, 0.0});
    ASSERT_TRUE(hit);
    // The line's start (0, 0): from the base point (5, 0) five to the left, turned to below, at (0, 10) in
    // GROUP: (0, 5); mirrored it stays, at (90, 30) of the drawing.
    const AcGePoint3d start = hit->to_world * AcGePoint3d(0.0, 0.0, 0.0);
    EXPECT_NEAR(start.x, 90.0, 1e-9);
    EXPECT_NEAR(start.y, 35.0, 1e-9);
}

TEST(Pick, WindowsTakeWhatIsInsideCrossingsWhatTheyTouch) {
    opened drawing(test::drawing("picks.dxf"));
    struct row {
        gi::region region;
        ed::reach reach;
        const char* expected;
    };
    const auto inside = ed::reach::inside;
    const auto crossing = ed::reach::inside_or_crossing;
    for (const row& row : {
             row{gi::region::box({29.0, 39.0}, {71.0, 61.0}), inside, "26 22"},
             row{gi::region::box({41.0, 39.0}, {59.0, 61.0}), inside, ""},
             row{gi::region::box({41.0, 39.0}, {59.0, 61.0}), crossing, "26 22"},
             row{gi::region::box({45.0, 51.0}, {55.0, 55.0}), crossing, ""}, // within the empty circle
             row{gi::region::box({-1.0, -1.0}, {101.0, 101.0}), inside, "29 28 27 26 22 21 20"},
             row{gi::region::box({10.0, 19.0}, {20.0, 21.0}), crossing, "27"},
             row{gi::region::fence({{45.0, 45.0}, {45.0, 75.0}, {-5.0, 75.0}}), crossing, "26 22 21"},
             row{gi::region::polygon({{50.0, 61.0}, {72.0, 50.0}, {50.0, 39.0}, {28.0, 50.0}}), inside, "26"},
         })
        EXPECT_EQ(selected(drawing.imp(), row.region, row.reach), row.expected)
            << row.region.least().x << ',' << row.region.least().y;
}

TEST(Pick, TheIndexFollowsChanges) {
    opened drawing(test::drawing("picks.dxf"));
    AcDbImpDatabase& database = drawing.imp();
    EXPECT_EQ(picked(database, 50.0, 0.0), "20");
    const auto move = [&](std::uint64_t handle, double y) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(acdbOpenAcDbEntity(entity, database.id(database.records().find(handle)), AcDb::kForWrite),
                  Acad::eOk);
        EXPECT_EQ(entity->transformBy(AcGeMatrix3d::translation({0.0, y, 0.0})), Acad::eOk);
        entity->close();
    };
    database.history().begin_step("one");
    move(0x20, -50.0);
    EXPECT_EQ(picked(database, 50.0, 0.0), "");
    EXPECT_EQ(picked(database, 50.0, -50.0), "20");
    database.history().begin_step("two");
    move(0x11, 1.0); // in a block: every reference shows it elsewhere
    EXPECT_EQ(picked(database, 20.0, 20.0), "");
    EXPECT_EQ(picked(database, 20.0, 22.0), "11<27");
    database.history().undo();
    database.history().undo();
    EXPECT_EQ(picked(database, 50.0, 0.0), "20");
    EXPECT_EQ(picked(database, 20.0, 20.0), "11<27");
    database.objects().set_erased(database.records().find(0x20), true);
    EXPECT_EQ(picked(database, 50.0, 0.0), "");
}

// A script picks as a drafter does.
TEST(Pick, AScriptPicksByPointWindowAndFence) {
    const std::string file = test::drawing("picks.dxf").string();
    struct row {
        const char* answers;
        const char* expected;
    };
    for (const row& row :
         {row{"50,0\\n\\n", "1 found"}, row{"50,30\\n\\n", "0 found"}, row{"W 29,39 71,61\\n\\n", "2 found"},
          row{"_C 41,39 59,61\\n\\n", "2 found"}, row{"F 45,45 45,75\\n\\n\\n", "2 found"},
          row{"BOX 59,39 41,61\\n\\n", "2 found"}, row{"CP 41,39 59,39 59,61 41,61\\n\\n\\n", "2 found"}}) {
        const auto run = test::zefhost({file, "--no-module", "-c", std::string("LIST ") + row.answers});
        EXPECT_NE(run.out.find(row.expected), std::string::npos) << row.answers << run.out << run.err;
    }
    const auto cut = test::zefhost({file, "--no-module", "-c", "LIST W 1,1"});
    EXPECT_EQ(cut.status, 5) << "the input ends while the second corner is asked for";
    const auto wrong = test::zefhost({file, "--no-module", "-c", "LIST W abc"});
    EXPECT_EQ(wrong.status, 4);
}

// What is passed over since its box is elsewhere must not have drawn there.
TEST(Pick, QuickBoxesHoldWhatIsDrawn) {
    std::vector<std::filesystem::path> files = test::corpus();
    files.push_back(test::drawing("picks.dxf"));
    files.push_back(test::drawing("odd/numbers.dxf"));
    files.push_back(std::filesystem::path(ZEF_SOURCE_FOLDER) / "samples" / "storey.dxf");
    std::size_t compared = 0;
    for (const auto& file : files) {
        opened drawing(file);
        AcDbImpDatabase& database = drawing.imp();
        std::mutex lock;
        gi::known_blocks blocks(database, lock);
        for (dxf::record_id id = 0; id < database.records().size(); ++id) {
            if (database.records().kind(id) != dxf::record_kind::entity)
                continue;
            const auto quick = gi::quick_box(blocks, id);
            if (!quick)
                continue;
            gi::extents_canvas canvas;
            gi::tracer(canvas, kAcGiForExtents).draw(database, id);
            if (gi::is_empty(canvas.extents()))
                continue;
            ++compared;
            const AcGePoint3d least = canvas.extents().minPoint();
            const AcGePoint3d most = canvas.extents().maxPoint();
            const double slack = 1e-6 * (1.0 + std::max(std::abs(most.x), std::abs(most.y)));
            EXPECT_TRUE(quick->least_x <= least.x + slack && quick->least_y <= least.y + slack &&
                        quick->most_x >= most.x - slack && quick->most_y >= most.y - slack)
                << file << ": " << database.records().type_name(id) << ' '
                << digits(database.records().handle(id)) << " drawn " << least.x << ',' << least.y << ' '
                << most.x << ',' << most.y << " box " << quick->least_x << ',' << quick->least_y << ' '
                << quick->most_x << ',' << quick->most_y;
        }
    }
    EXPECT_GT(compared, 15U);
}

// A rim of kilometres is hit by millimetres, however few chords would show it on a screen.
TEST(Pick, LargeCirclesAreExact) {
    constexpr double radius = 5e6;
    for (const double angle : {0.1, 1.234, 3.0}) {
        for (const double off : {-0.4, -0.2, 0.0, 0.2, 0.4}) {
            const AcGePoint2d at((radius + off) * std::cos(angle), (radius + off) * std::sin(angle));
            const gi::region box = gi::region::box({at.x - 0.1, at.y - 0.1}, {at.x + 0.1, at.y + 0.1});
            gi::region_test test(box);
            test.curve({{}, AcGeVector3d::kXAxis * radius, AcGeVector3d::kYAxis * radius, 0.0, 6.3});
            EXPECT_EQ(test.touched(), off == 0.0) << angle << ' ' << off;
            EXPECT_FALSE(test.all_inside());
        }
    }
}

// The extents of a space, of which only the edges are drawn, are those of all that is drawn.
TEST(Pick, extents_of_spaces_are_exact) {
    for (const char* const name : {"picks.dxf", "r12.dxf", "r2018.dxf", "../../samples/storey.dxf"}) {
        opened drawing(test::drawing(name));
        const dxf::record_id space = drawing.imp().blocks().find(ACDB_MODEL_SPACE);
        const AcDbExtents& all = gi::extents_of_block(drawing.imp(), space);
        const gi::flat_box edges = gi::flat_extents(drawing.imp(), space);
        ASSERT_EQ(edges.is_empty(), gi::is_empty(all)) << name;
        if (edges.is_empty())
            continue;
        EXPECT_EQ(AcGePoint2d(edges.least_x, edges.least_y), AcGePoint2d(all.minPoint().x, all.minPoint().y))
            << name;
        EXPECT_EQ(AcGePoint2d(edges.most_x, edges.most_y), AcGePoint2d(all.maxPoint().x, all.maxPoint().y))
            << name;
    }
}
