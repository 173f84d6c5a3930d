// Hatches: their loops, what they cover, their patterns, and loops that are not what they say.
#include "dbents.h"
#include "dbhatch.h"
#include "host/gi/region.h"
#include "tests/db_entities.h"

#include <cmath>
#include <numbers>

namespace {

using test::box;

constexpr double pi = std::numbers::pi;

// A hatch of the plane with these loops.
std::string hatch(std::string_view loops, std::string_view style = "75 0", std::string_view front = "70 1",
                  std::string_view tail = "76 1|98 0") {
    return test::with_entities(
        "0 HATCH|5 100|100 AcDbEntity|8 0|100 AcDbHatch|10 0|20 0|30 0|210 0|220 0|230 1|"
        "2 SOLID|" +
        std::string(front) + "|71 0|91 9|" + std::string(loops) + (loops.empty() ? "" : "|") +
        std::string(style) + "|" + std::string(tail));
}

std::string square(int type, double from, double to) {
    const std::string a = std::to_string(from);
    const std::string b = std::to_string(to);
    return "92 " + std::to_string(type) + "|72 0|73 1|93 4|10 " + a + "|20 " + a + "|10 " + b + "|20 " + a +
           "|10 " + b + "|20 " + b + "|10 " + a + "|20 " + b + "|97 0";
}

// Edges, as many groups as come.
std::string edges(std::string_view groups) {
    return "92 1|93 99|" + std::string(groups) + "|97 0";
}

// Whether a point of the plane picks the entity.
class point_pick final : public gi::canvas {
public:
    point_pick(double x, double y)
        : region_(gi::region::box({x - 1e-4, y - 1e-4}, {x + 1e-4, y + 1e-4})), test_(region_) {}
    bool hit() const { return test_.touched(); }

    void lines(std::span<const AcGePoint3d> points) override { test_.lines(points); }
    void area(std::span<const AcGePoint3d> points) override { test_.area(points); }
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override { test_.area_of_rims(rims); }
    void curve(const gi::arc& arc) override { test_.curve(arc); }

private:
    gi::region region_;
    gi::region_test test_;
};

bool is_hit(const AcDbEntity& entity, double x, double y) {
    point_pick pick(x, y);
    gi::tracer(pick).draw(entity);
    return pick.hit();
}

AcGePoint2dArray points(std::initializer_list<AcGePoint2d> list) {
    AcGePoint2dArray all;
    for (const AcGePoint2d& point : list)
        all.append(point);
    return all;
}

AcGeDoubleArray numbers(std::initializer_list<double> list) {
    AcGeDoubleArray all;
    for (const double number : list)
        all.append(number);
    return all;
}

} // namespace

TEST(DbHatch, ItsBoxIsThatOfItsLoops) {
    struct row {
        const char* what;
        std::string loops;
        box expected;
    };
    const double root = std::sqrt(0.5);
    for (const row& row : {
             row{"a square", square(3, 1, 5), {1, 1, 5, 5}},
             row{"bulges to both sides",
                 "92 3|72 1|73 1|93 2|10 0|20 0|42 1|10 4|20 0|42 1|97 0",
                 {0, -2, 4, 2}},
             row{"a bulge behind the end of an open loop",
                 "92 3|72 1|73 0|93 2|10 0|20 0|42 1|10 4|20 0|42 1|97 0",
                 {0, -2, 4, 0}},
             row{"lines", edges("72 1|10 0|20 0|11 3|21 1|72 1|10 3|20 1|11 0|21 5"), {0, 0, 3, 5}},
             row{"a circle", edges("72 2|10 1|20 2|40 3|50 0|51 360|73 1"), {-2, -1, 4, 5}},
             row{"an arc over the top",
                 edges("72 2|10 0|20 0|40 1|50 45|51 135|73 1"),
                 {-root, root, root, 1}},
             row{"clockwise angles are turned round",
                 edges("72 2|10 0|20 0|40 1|50 45|51 135|73 0"),
                 {-root, -1, root, -root}},
             row{"an arc past nought",
                 edges("72 2|10 0|20 0|40 2|50 315|51 405|73 1"),
                 {2 * root, -2 * root, 2, 2 * root}},
             row{"an ellipse", edges("72 3|10 0|20 0|11 0|21 4|40 0.5|50 0|51 360|73 1"), {-2, -4, 2, 4}},
             row{"a quarter of one, by its parameter",
                 edges("72 3|10 0|20 0|11 4|21 0|40 0.5|50 45|51 90|73 1"),
                 {0, 2 * root, 4 * root, 2}},
             row{"the same clockwise",
                 edges("72 3|10 0|20 0|11 4|21 0|40 0.5|50 45|51 90|73 0"),
                 {0, -2, 4 * root, -2 * root}},
             // A cubic over its control points reaches three quarters of their height.
             row{"a spline",
                 edges("72 4|94 3|73 0|74 0|95 8|96 4|40 0|40 0|40 0|40 0|40 1|40 1|40 1|40 1|"
                       "10 0|20 0|10 0|20 4|10 6|20 4|10 6|20 0|97 0"),
                 {0, 0, 6, 3}},
             row{"a rational one: a quarter of a circle",
                 edges("72 4|94 2|73 1|74 0|95 6|96 3|40 0|40 0|40 0|40 1|40 1|40 1|10 2|20 0|42 1|10 2|20 2|"
                       "42 0.7071067811865476|10 0|20 2|42 1"),
                 {0, 0, 2, 2}},
             row{"fit points behind the control points are no vertices",
                 edges("72 4|94 1|73 0|74 0|95 4|96 2|40 0|40 0|40 1|40 1|10 0|20 0|10 3|20 2|97 1|11 99|21 "
                       "99"),
                 {0, 0, 3, 2}},
             row{"two loops", square(3, 0, 1) + "|" + square(3, 5, 6), {0, 0, 6, 6}},
             row{"no loop", "", test::nothing},
         }) {
        const auto database = test::database_of(hatch(row.loops));
        EXPECT_EQ(test::box_of(*test::seen<AcDbHatch>(*database, 0x100)), row.expected) << row.what;
    }
}

TEST(DbHatch, IsHitInsideAndNotInItsHoles) {
    // Squares one in another: 0-10, 2-8, 4-6.
    const std::string nested = square(3, 0, 10) + "|" + square(0x13, 2, 8) + "|" + square(2, 4, 6);
    struct row {
        const char* what;
        std::string drawing;
        bool rim, ring, middle_ring, heart;
    };
    for (const row& row : {
             row{"normal", hatch(nested), true, true, false, true},
             row{"outer", hatch(nested, "75 1"), true, true, false, false},
             row{"ignoring", hatch(nested, "75 2"), true, true, true, true},
             row{"lines of a pattern", hatch(nested, "75 0", "70 0", "76 1|52 0|41 1|77 0|78 0|98 0"), true,
                 true, false, true},
         }) {
        const auto database = test::database_of(row.drawing);
        const test::seen<AcDbHatch> entity(*database, 0x100);
        EXPECT_EQ(is_hit(*entity, 10, 5), row.rim) << row.what;
        EXPECT_EQ(is_hit(*entity, 1, 5), row.ring) << row.what;
        EXPECT_EQ(is_hit(*entity, 3, 5), row.middle_ring) << row.what;
        EXPECT_EQ(is_hit(*entity, 5, 5), row.heart) << row.what;
        EXPECT_FALSE(is_hit(*entity, 11, 5)) << row.what;
    }
    // Some programs write single edges backwards: the figure is the same. A half circle on a square.
    for (const char* const loop :
         {"72 1|10 0|20 2|11 0|21 0|72 1|10 0|20 0|11 4|21 0|72 1|10 4|20 0|11 4|21 2|"
          "72 2|10 2|20 2|40 2|50 0|51 180|73 1",
          "72 1|10 0|20 0|11 0|21 2|72 1|10 0|20 0|11 4|21 0|72 1|10 4|20 2|11 4|21 0|"
          "72 2|10 2|20 2|40 2|50 180|51 360|73 0"}) {
        const auto database = test::database_of(hatch(edges(loop)));
        const test::seen<AcDbHatch> entity(*database, 0x100);
        EXPECT_TRUE(is_hit(*entity, 2, 1)) << loop;
        EXPECT_TRUE(is_hit(*entity, 3.3, 3.4)) << loop;
        EXPECT_FALSE(is_hit(*entity, 3.6, 3.6)) << loop;
        EXPECT_FALSE(is_hit(*entity, 4.1, 1)) << loop;
    }
}

TEST(DbHatch, TellsWhatItsGroupsSay) {
    const auto database = test::database_of(hatch(
        square(3, 0, 4) + "|" + edges("72 1|10 0|20 0|11 1|21 1") + "|" +
            "92 7|72 1|73 1|93 2|10 1|20 2|42 0.5|10 3|20 4|97 2|330 100|330 999",
        "75 1", "70 0",
        "76 0|52 30|41 2|77 1|78 2|53 30|43 1|44 2|45 -1|46 1.5|79 2|49 3|49 -1|53 120|43 0|44 0|45 4|46 5|"
        "79 0|98 1|10 9|20 9|450 1|451 0|460 0.5|461 0.25|452 1|462 0.75|453 0|470 LINEAR"));
    const test::seen<AcDbHatch> h(*database, 0x100);
    EXPECT_EQ(h->numLoops(), 3);
    EXPECT_EQ(h->loopTypeAt(2), AcDbHatch::kExternal | AcDbHatch::kPolyline | AcDbHatch::kDerived);
    EXPECT_EQ(h->loopTypeAt(3), AcDbHatch::kDefault);
    Adesk::Int32 type = 0;
    AcGePoint2dArray vertices;
    AcGeDoubleArray bulges;
    ASSERT_EQ(h->getLoopAt(2, type, vertices, bulges), Acad::eOk);
    ASSERT_EQ(vertices.length(), 2);
    EXPECT_EQ(vertices[1], AcGePoint2d(3, 4));
    EXPECT_EQ(bulges[0], 0.5);
    EXPECT_EQ(bulges[1], 0.0) << "a vertex without a bulge";
    EXPECT_EQ(h->getLoopAt(1, type, vertices, bulges), Acad::eInvalidInput);
    AcGeVoidPointerArray pointers;
    AcGeIntArray types;
    EXPECT_EQ(h->getLoopAt(1, type, pointers, types), Acad::eNotImplementedYet);
    EXPECT_EQ(h->getLoopAt(0, type, pointers, types), Acad::eInvalidInput);
    EXPECT_EQ(h->getLoopAt(-1, type, vertices, bulges), Acad::eInvalidIndex);
    AcDbObjectIdArray ids;
    EXPECT_EQ(h->getAssocObjIdsAt(2, ids), Acad::eOk);
    ASSERT_EQ(ids.length(), 2);
    EXPECT_EQ(ids[0], h->objectId());
    EXPECT_TRUE(ids[1].isNull());
    EXPECT_EQ(h->hatchStyle(), AcDbHatch::kOuter);
    EXPECT_EQ(h->patternType(), AcDbHatch::kUserDefined);
    EXPECT_STREQ(h->patternName(), L"SOLID");
    EXPECT_FALSE(h->isSolidFill());
    EXPECT_NEAR(h->patternAngle(), pi / 6, 1e-12);
    EXPECT_EQ(h->patternSpace(), 2.0);
    EXPECT_TRUE(h->patternDouble());
    EXPECT_EQ(h->numPatternDefinitions(), 2);
    double angle = 0, x = 0, y = 0, dx = 0, dy = 0;
    AcGeDoubleArray dashes;
    ASSERT_EQ(h->getPatternDefinitionAt(0, angle, x, y, dx, dy, dashes), Acad::eOk);
    EXPECT_EQ(AcGePoint2d(dx, dy), AcGePoint2d(-1, 1.5));
    ASSERT_EQ(dashes.length(), 2);
    EXPECT_EQ(dashes[1], -1.0);
    EXPECT_EQ(h->getPatternDefinitionAt(2, angle, x, y, dx, dy, dashes), Acad::eInvalidIndex);
    EXPECT_TRUE(h->isGradient());
    EXPECT_STREQ(h->gradientName(), L"LINEAR");
    EXPECT_EQ(h->gradientAngle(), 0.5);
    EXPECT_EQ(h->gradientShift(), 0.25F);
    EXPECT_TRUE(h->getGradientOneColorMode());
    EXPECT_EQ(h->getShadeTintValue(), 0.75F);
    EXPECT_EQ(test::written_to<AcDbHatch>(*database, 0x100)->evaluateHatch(), Acad::eNotImplementedYet);
}

TEST(DbHatch, SettersChangeTheirGroupsAlone) {
    struct row {
        const char* what;
        Acad::ErrorStatus (*change)(AcDbHatch&);
        Acad::ErrorStatus status;
        std::vector<std::string> changes;
    };
    for (const row& row : {
             row{"what it is already", [](AcDbHatch& h) { return h.setElevation(0.0); }, Acad::eOk, {}},
             row{"elevation", [](AcDbHatch& h) { return h.setElevation(7.0); }, Acad::eOk, {"+ 7.0", "- 0"}},
             row{"style",
                 [](AcDbHatch& h) { return h.setHatchStyle(AcDbHatch::kIgnore); },
                 Acad::eOk,
                 {"+ 2", "- 0"}},
             row{"the same pattern",
                 [](AcDbHatch& h) { return h.setPattern(AcDbHatch::kPreDefined, L"SOLID"); },
                 Acad::eOk,
                 {}},
             row{"lines",
                 [](AcDbHatch& h) { return h.setPattern(AcDbHatch::kUserDefined, L"_USER"); },
                 Acad::eOk,
                 {"+ 0",   "+ 0",   "+ 0",   "+ 0",  "+ 0.0", "+ 0.0",   "+ 0.0", "+ 0.0",
                  "+ 0.0", "+ 1.0", "+ 1.0", "+ 41", "+ 43",  "+ 44",    "+ 45",  "+ 46",
                  "+ 52",  "+ 53",  "+ 77",  "+ 78", "+ 79",  "+ _USER", "- 1",   "- SOLID"}},
             row{"a pattern of a file",
                 [](AcDbHatch& h) { return h.setPattern(AcDbHatch::kPreDefined, L"ANSI31"); },
                 Acad::eNotImplementedYet,
                 {}},
             row{"an angle of what has no lines",
                 [](AcDbHatch& h) { return h.setPatternAngle(1.0); },
                 Acad::eInvalidInput,
                 {}},
             row{"a loop of one vertex",
                 [](AcDbHatch& h) {
                     return h.appendLoop(0, points({{1, 1}}), numbers({}));
                 },
                 Acad::eInvalidInput,
                 {}},
             row{"a loop with a bulge too few",
                 [](AcDbHatch& h) {
                     return h.appendLoop(0, points({{1, 1}, {2, 2}}), numbers({1}));
                 },
                 Acad::eInvalidInput,
                 {}},
             row{"a loop of nothing that is a number",
                 [](AcDbHatch& h) {
                     return h.appendLoop(0, points({{1, 1}, {NAN, 2}}), numbers({}));
                 },
                 Acad::eInvalidInput,
                 {}},
             row{"no such loop", [](AcDbHatch& h) { return h.removeLoopAt(1); }, Acad::eInvalidIndex, {}},
         }) {
        const std::string bytes = hatch(square(3, 1, 5));
        const auto database = test::database_of(bytes);
        {
            const test::written_to<AcDbHatch> h(*database, 0x100);
            EXPECT_EQ(row.change(*h), row.status) << row.what;
        }
        std::vector<std::string> changes =
            test::lines_changed(bytes, test::written(database->imp().drawing()));
        std::vector<std::string> expected = row.changes;
        std::sort(changes.begin(), changes.end());
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(changes, expected) << row.what;
    }
}

TEST(DbHatch, ANewOneIsFilledWithLoops) {
    AcDbHatch h;
    EXPECT_EQ(h.appendLoop(AcDbHatch::kExternal, points({{0, 0}, {8, 0}, {8, 8}, {0, 8}}), numbers({})),
              Acad::eOk);
    EXPECT_EQ(h.appendLoop(AcDbHatch::kOutermost, points({{2, 4}, {6, 4}}), numbers({1, 1})), Acad::eOk);
    EXPECT_EQ(h.numLoops(), 2);
    EXPECT_EQ(h.loopTypeAt(1), AcDbHatch::kOutermost | AcDbHatch::kPolyline);
    EXPECT_EQ(test::box_of(h), (box{0, 0, 8, 8}));
    EXPECT_TRUE(is_hit(h, 1, 1));
    EXPECT_FALSE(is_hit(h, 4, 5));
    EXPECT_EQ(h.removeLoopAt(0), Acad::eOk);
    EXPECT_EQ(test::box_of(h), (box{2, 2, 6, 6}));
    EXPECT_EQ(h.setPattern(AcDbHatch::kUserDefined, L"_U"), Acad::eOk);
    EXPECT_EQ(h.setPatternSpace(2.0), Acad::eOk);
    EXPECT_EQ(h.setPatternAngle(pi / 2), Acad::eOk);
    EXPECT_EQ(h.setPatternDouble(true), Acad::eOk);
    ASSERT_EQ(h.numPatternDefinitions(), 2);
    double angle = 0, x = 0, y = 0, dx = 0, dy = 0;
    AcGeDoubleArray dashes;
    h.getPatternDefinitionAt(0, angle, x, y, dx, dy, dashes);
    EXPECT_NEAR(angle, pi / 2, 1e-12);
    EXPECT_EQ(AcGeVector2d(dx, dy), AcGeVector2d(-2, 0));
    h.getPatternDefinitionAt(1, angle, x, y, dx, dy, dashes);
    EXPECT_EQ(AcGeVector2d(dx, dy), AcGeVector2d(0, -2));
    EXPECT_EQ(h.numLoops(), 1) << "the loops stay";
}

TEST(DbHatch, ItsLinesTurnAndScaleWithIt) {
    const auto database = test::database_of(
        hatch(square(3, 0, 4), "75 0", "70 0",
              "76 1|52 10|41 2|77 0|78 1|53 45|43 1|44 1|45 -2|46 2|79 1|49 3|98 1|10 2|20 2"));
    AcGeMatrix3d mirror;
    mirror.setToScaling(AcGeScale3d(-1, 1, 1));
    struct row {
        const char* what;
        AcGeMatrix3d matrix;
        double angle, scale, line_angle;
        AcGePoint2d base;
        AcGeVector2d offset;
        double dash;
    };
    for (const row& row : {
             row{"move", AcGeMatrix3d::translation({5, 0, 3}), 10, 2, 45, {6, 1}, {-2, 2}, 3},
             row{"turn",
                 AcGeMatrix3d::rotation(pi / 2, AcGeVector3d::kZAxis),
                 100,
                 2,
                 135,
                 {-1, 1},
                 {-2, -2},
                 3},
             row{"scale", AcGeMatrix3d::scaling(3), 10, 6, 45, {3, 3}, {-6, 6}, 9},
             row{"mirror", mirror, 170, 2, 135, {-1, 1}, {2, 2}, 3},
         }) {
        const test::seen<AcDbHatch> h(*database, 0x100);
        AcDbEntity* made = nullptr;
        ASSERT_EQ(h->getTransformedCopy(row.matrix, made), Acad::eOk) << row.what;
        const std::unique_ptr<AcDbEntity> owner(made);
        const AcDbHatch& copy = *AcDbHatch::cast(made);
        EXPECT_NEAR(copy.patternAngle() * 180 / pi, row.angle, 1e-9) << row.what;
        EXPECT_NEAR(copy.patternScale(), row.scale, 1e-9) << row.what;
        double angle = 0, x = 0, y = 0, dx = 0, dy = 0;
        AcGeDoubleArray dashes;
        copy.getPatternDefinitionAt(0, angle, x, y, dx, dy, dashes);
        EXPECT_NEAR(angle * 180 / pi, row.line_angle, 1e-9) << row.what;
        EXPECT_EQ(AcGePoint2d(x, y), row.base) << row.what;
        EXPECT_EQ(AcGeVector2d(dx, dy), row.offset) << row.what;
        EXPECT_NEAR(dashes[0], row.dash, 1e-9) << row.what;
        EXPECT_EQ(copy.elevation(), row.matrix.translation().z) << row.what;
    }
}

// Counts that no file can keep are not believed, and many edges take as long as many.
TEST(DbHatch, CountsAreNotBelieved) {
    struct row {
        const char* loops;
        int count;
        box expected;
    };
    for (const row& row : {
             row{"92 3|72 0|73 1|93 2147483647|10 0|20 0|10 4|20 0|10 4|20 4|97 0", 1, {0, 0, 4, 4}},
             row{"92 3|72 0|73 1|93 -5|10 0|20 0|10 4|20 4|97 4294967295|330 100", 1, {0, 0, 4, 4}},
             row{"92 1|93 3|72 1|10 0|20 0|11 4|21 4", 1, {0, 0, 4, 4}},
             row{"92 1|93 1|72 77|10 1|20 1|11 4|21 4", 1, {1, 1, 4, 4}},
             row{"92 1|93 1|72 4|94 3|95 2000000000|96 2000000000|10 0|20 0|10 4|20 1", 1, {0, 0, 4, 1}},
             row{"92 1|93 1|72 4|94 -3|96 1", 1, {0, 0, 0, 0}},
             row{"92 3|93 2|10 nan|20 0|10 4|20 inf", 1, {0, 0, 4, 0}},
             row{"92 3|92 3|92 1", 3, test::nothing},
         }) {
        const auto database = test::database_of(hatch(row.loops));
        const test::seen<AcDbHatch> h(*database, 0x100);
        EXPECT_EQ(h->numLoops(), row.count) << row.loops;
        EXPECT_EQ(test::box_of(*h), row.expected) << row.loops;
        is_hit(*h, 1, 1);
    }
    std::string many;
    constexpr int count = 10000;
    for (int i = 0; i < count; ++i) {
        const auto corner = [&](int at) {
            const double t = 2 * pi * at / count;
            return std::to_string(100 * std::cos(t)) + "|2" + (at == i ? "0 " : "1 ") +
                   std::to_string(100 * std::sin(t));
        };
        many += "72 1|10 " + corner(i) + "|11 " + corner(i + 1) + "|";
    }
    many.pop_back();
    const auto database = test::database_of(hatch(edges(many)));
    const test::seen<AcDbHatch> h(*database, 0x100);
    EXPECT_TRUE(is_hit(*h, 70, 70));
    EXPECT_FALSE(is_hit(*h, 71, 71));
}
