// What a canvas is given of large arrays and nested blocks: as much as it looks at, and no more.
#include "host/gi/region.h"
#include "tests/db_entities.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace {

// Looks at what lies around a point, until it has seen enough.
class looking final : public gi::canvas {
public:
    looking(double x, double y, std::size_t enough) : x_(x), y_(y), enough_(enough) {}

    bool enter_block(const AcDbExtents& block, const AcGeMatrix3d& to_world) override {
        ++asked;
        AcDbExtents moved = block;
        moved.transformBy(to_world);
        return moved.minPoint().x <= x_ && x_ <= moved.maxPoint().x && moved.minPoint().y <= y_ &&
               y_ <= moved.maxPoint().y;
    }
    bool is_done() const override { return seen >= enough_; }
    void lines(std::span<const AcGePoint3d> /*points*/) override { ++seen; }
    void area(std::span<const AcGePoint3d> /*points*/) override {}
    void curve(const gi::arc& /*arc*/) override {}

    std::size_t asked = 0;
    std::size_t seen = 0;

private:
    double x_;
    double y_;
    std::size_t enough_;
};

constexpr std::size_t all = std::numeric_limits<std::size_t>::max();

} // namespace

// A billion places of a block are looked at where the canvas looks, wherever the array lies.
TEST(Tracer, OfAnArrayIsDrawnWhatIsLookedAt) {
    const char* const block = "0 BLOCK|2 B|330 B0|10 0|20 0|"
                              "0 LINE|5 B3|100 AcDbEntity|8 0|100 AcDbLine|10 0|20 0|11 0.5|21 0.5|"
                              "0 ENDBLK|5 B2|330 B0|8 0";
    for (const double turn : {0.0, 17.0, 90.0, 225.0})
        for (const double spacing : {1.0, -1.0}) {
            const auto database = test::database_of(test::modern_drawing(
                "0 INSERT|5 A1|100 AcDbEntity|8 0|100 AcDbMInsertBlock|2 B|10 5|20 6|50 " +
                    std::to_string(turn) + "|70 32000|71 32000|44 " + std::to_string(spacing) + "|45 1",
                block));
            const test::seen<AcDbEntity> array(*database, 0xA1);
            const double angle = turn * std::numbers::pi / 180.0;
            // In the middle of the line in column 20000, row 10000.
            const double along = 20000.0 * spacing + 0.25;
            const double up = 10000.25;
            looking there(5.0 + along * std::cos(angle) - up * std::sin(angle),
                          6.0 + along * std::sin(angle) + up * std::cos(angle), all);
            gi::tracer(there).draw(*array);
            EXPECT_GE(there.seen, 1U) << turn << ' ' << spacing;
            EXPECT_LE(there.seen, 4U) << turn << ' ' << spacing;
            EXPECT_LE(there.asked, 10'000U) << turn << ' ' << spacing;
        }
}

TEST(Tracer, ACanvasThatHasSeenEnoughIsGivenNoMore) {
    std::string blocks = "0 BLOCK|2 B0|330 B00|10 0|20 0|"
                         "0 LINE|5 B03|100 AcDbEntity|8 0|100 AcDbLine|10 0|20 0|11 9|21 9|"
                         "0 ENDBLK|5 B02|330 B00|8 0";
    for (int level = 1; level < 10; ++level) {
        const std::string number = std::to_string(level);
        blocks += "|0 BLOCK|2 B" + number + "|330 B" + number + "0|10 0|20 0";
        for (int i = 0; i < 10; ++i)
            blocks += "|0 INSERT|5 C" + number + std::to_string(i) +
                      "|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B" + std::to_string(level - 1) +
                      "|10 0|20 0";
        blocks += "|0 ENDBLK|5 B" + number + "2|330 B" + number + "0|8 0";
    }
    const auto database = test::database_of(test::modern_drawing(
        "0 INSERT|5 A1|100 AcDbEntity|8 0|100 AcDbBlockReference|2 B9|10 0|20 0", blocks));
    const test::seen<AcDbEntity> reference(*database, 0xA1);
    looking few(1.0, 1.0, 25);
    gi::tracer(few).draw(*reference);
    EXPECT_EQ(few.seen, 25U);
    EXPECT_LE(few.asked, 1000U);
}

// Points that are nowhere widen nothing.
TEST(Extents, HoldWhatLiesSomewhere) {
    const double endless = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    gi::extents_canvas canvas;
    const AcGePoint3d points[] = {
        {1.0, 2.0, 0.0}, {-endless, 0.0, 0.0}, {0.0, none, 0.0}, {1e308, 1e308, 0.0}, {3.0, 4.0, 0.0}};
    canvas.lines(points);
    EXPECT_EQ(test::flat(canvas.extents()), (test::box{1.0, 2.0, 3.0, 4.0}));
}

// Figures that no drawing holds but damaged ones lie outside of every window, and end.
TEST(RegionTest, CurvesThatAreNoneTouchNothing) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    struct row {
        gi::arc arc;
        bool touched;
        bool inside;
    };
    const auto arc = [](double x, double radius, double start, double sweep) {
        return gi::arc{{x, 0.0, 0.0}, {radius, 0.0, 0.0}, {0.0, radius, 0.0}, start, sweep};
    };
    for (const row& row :
         {row{arc(0.0, 1.0, 0.0, 7.0), true, true}, row{arc(0.0, 10.0, 0.0, 7.0), true, false},
          row{arc(0.0, 50.0, 0.0, 7.0), false, false}, row{arc(none, 1.0, 0.0, 7.0), false, false},
          row{arc(0.0, none, 0.0, 7.0), false, false}, row{arc(0.0, 1.0, none, 7.0), false, false},
          row{arc(0.0, endless, 0.0, 7.0), false, false}, row{arc(0.0, 10.0, 0.0, 1e300), true, false}}) {
        const gi::region window = gi::region::box({-10.0, -10.0}, {10.0, 10.0});
        gi::region_test test(window);
        test.curve(row.arc);
        EXPECT_EQ(test.touched(), row.touched) << row.arc.center.x << ' ' << row.arc.u.x;
        EXPECT_EQ(test.all_inside(), row.inside) << row.arc.center.x << ' ' << row.arc.u.x;
    }
}
// Blocks that hold each other, the innermost one a line.
TEST(GiTracer, BlocksThatNestDeepAreSeenOrToldOf) {
    const test::folder folder;
    const std::pair<int, bool> rows[] = {{70, true}, {500, true}, {501, false}};
    for (const auto& [levels, seen] : rows) {
        std::string bytes = "0\nSECTION\n2\nBLOCKS\n";
        for (int i = 0; i < levels; ++i)
            bytes += "0\nBLOCK\n8\n0\n2\nB" + std::to_string(i) + "\n70\n0\n10\n0\n20\n0\n" +
                     (i + 1 < levels ? "0\nINSERT\n8\n0\n2\nB" + std::to_string(i + 1) + "\n10\n0\n20\n0\n"
                                     : "0\nLINE\n8\n0\n10\n0\n20\n0\n11\n9\n21\n0\n") +
                     "0\nENDBLK\n8\n0\n";
        bytes +=
            "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nINSERT\n8\n0\n2\nB0\n10\n0\n20\n0\n0\nENDSEC\n0\nEOF\n";
        const test::run_result ran =
            test::zefhost({folder.write("deep.dxf", bytes).string(), "--no-module"}, "SELECT\n5,0\n\nQUIT\n");
        EXPECT_EQ(ran.out.find("1 found") != ran.out.npos, seen) << levels << ran.out << ran.err;
        EXPECT_EQ(ran.err.find("deeper than 500 levels") == ran.err.npos, seen) << levels << ran.err;
    }
}
