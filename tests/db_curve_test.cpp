// Measuring along curves, and what ellipses, splines, rays and multilines are made of.
#include "dbelipse.h"
#include "dbents.h"
#include "dbhelix.h"
#include "dbmline.h"
#include "dbpl.h"
#include "dbray.h"
#include "dbspline.h"
#include "dbxline.h"
#include "tests/db_figures.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double pi = std::numbers::pi;

void expect_near(const AcGePoint3d& point, const AcGePoint3d& expected, double slack = 1e-9) {
    EXPECT_TRUE(point.distanceTo(expected) <= slack)
        << "(" << point.x << ", " << point.y << ", " << point.z << ") and not (" << expected.x << ", "
        << expected.y << ", " << expected.z << ")";
}

} // namespace

TEST(DbCurve, IsMeasuredAlongItsWay) {
    struct row {
        const char* name;
        const char* groups;
        double end_param;
        double length;
        double at;         // a length along it,
        double param;      // the parameter there,
        AcGePoint3d point; // and the point
        AcGePoint3d near;  // a point of the world, and the one of the curve that is nearest
        AcGePoint3d nearest;
        double area;
    };
    const row rows[] = {
        {"line",
         "0 LINE|5 100|8 0|10 1|20 0|30 0|11 4|21 4|31 0",
         5,
         5,
         2.5,
         2.5,
         {2.5, 2, 0},
         {9, 9, 9},
         {4, 4, 0},
         0},
        {"circle",
         "0 CIRCLE|5 100|8 0|10 1|20 1|40 2",
         2 * pi,
         4 * pi,
         pi,
         pi / 2,
         {1, 3, 0},
         {1, -9, 5},
         {1, -1, 0},
         4 * pi},
        {"circle below",
         "0 CIRCLE|5 100|8 0|10 1|20 1|40 2|210 0|220 0|230 -1",
         2 * pi,
         4 * pi,
         pi,
         pi / 2,
         {-1, 3, 0},
         {-9, 1, 0},
         {-3, 1, 0},
         4 * pi},
        // A half circle, through the top.
        {"arc",
         "0 ARC|5 100|8 0|10 0|20 0|40 2|50 0|51 180",
         pi,
         2 * pi,
         pi / 2,
         pi / 4,
         {std::sqrt(2.0), std::sqrt(2.0), 0},
         {1, -5, 0},
         {2, 0, 0},
         2 * pi},
        // The way around an ellipse with the radii 2 and 1: 8 E(3/4), of tables of elliptic integrals.
        {"ellipse",
         "0 ELLIPSE|5 100|8 0|10 0|20 0|30 0|11 2|21 0|31 0|40 0.5|41 0|42 6.283185307179586",
         2 * pi,
         9.688448220547676,
         9.688448220547676 / 4,
         pi / 2,
         {0, 1, 0},
         {0, 0.9, 4},
         {0, 1, 0},
         2 * pi},
        // A quarter of the unit circle.
        {"rational spline",
         "0 SPLINE|5 100|8 0|70 4|71 2|72 6|73 3|40 0|40 0|40 0|40 1|40 1|40 1|41 1|41 0.7071067811865476|41 "
         "1|"
         "10 1|20 0|30 0|10 1|20 1|30 0|10 0|20 1|30 0",
         1,
         pi / 2,
         pi / 4,
         0.5,
         {std::sqrt(0.5), std::sqrt(0.5), 0},
         {3, 3, 0},
         {std::sqrt(0.5), std::sqrt(0.5), 0},
         pi / 4 - 0.5},
        // Straight, but for the way its parameter runs: 3t^2 - 2t^3.
        {"uneven spline",
         "0 SPLINE|5 100|8 0|70 0|71 3|72 8|73 4|40 0|40 0|40 0|40 0|40 1|40 1|40 1|40 1|10 0|20 0|30 0|10 0|"
         "20 0|30 0|10 1|20 0|30 0|10 1|20 0|30 0",
         1,
         1,
         0.5,
         0.5,
         {0.5, 0, 0},
         {0.15625, 7, 0},
         {0.15625, 0, 0},
         0},
        // A line of 4, a half circle with the radius 1, a line of 4, closed by another half circle.
        {"light polyline",
         "0 LWPOLYLINE|5 100|8 0|90 4|70 1|38 3|10 0|20 0|10 4|20 0|42 1|10 4|20 2|10 0|20 2|42 1",
         4,
         8 + 2 * pi,
         4 + pi / 2,
         1.5,
         {5, 1, 3},
         {9, 1, 3},
         {5, 1, 3},
         8 + pi},
        {"light polyline to the right",
         "0 LWPOLYLINE|5 100|8 0|90 2|70 0|10 0|20 0|42 -1|10 2|20 0",
         1,
         pi,
         pi / 2,
         0.5,
         {1, 1, 0},
         {1, -4, 0},
         {0, 0, 0},
         pi / 2},
        {"polyline in space",
         "0 POLYLINE|5 100|8 0|66 1|70 8|0 VERTEX|5 101|8 0|10 0|20 0|30 0|70 32|0 VERTEX|5 102|8 0|10 1|20 "
         "2|30 2|"
         "70 32|0 VERTEX|5 103|8 0|10 1|20 2|30 8|70 32|0 SEQEND|5 104|8 0",
         2,
         9,
         6,
         1.5,
         {1, 2, 5},
         {2, 2, 5},
         {1, 2, 5},
         0.5 * std::sqrt(5.0) * 6},
    };
    for (const row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto database = test::database_of(test::with_entities(row.groups));
        const test::seen<AcDbCurve> curve(*database, 0x100);
        double number = -1.0;
        AcGePoint3d point;
        EXPECT_EQ(curve->getEndParam(number), Acad::eOk);
        EXPECT_NEAR(number, row.end_param, 1e-12);
        EXPECT_EQ(curve->getDistAtParam(number, number), Acad::eOk);
        EXPECT_NEAR(number, row.length, 1e-11);
        EXPECT_EQ(curve->getParamAtDist(row.at, number), Acad::eOk);
        EXPECT_NEAR(number, row.param, 1e-9);
        EXPECT_EQ(curve->getPointAtDist(row.at, point), Acad::eOk);
        expect_near(point, row.point);
        EXPECT_EQ(curve->getParamAtPoint(point, number), Acad::eOk);
        EXPECT_NEAR(number, row.param, 1e-7);
        EXPECT_EQ(curve->getDistAtPoint(point, number), Acad::eOk);
        EXPECT_NEAR(number, row.at, 1e-7);
        EXPECT_EQ(curve->getClosestPointTo(row.near, point), Acad::eOk);
        expect_near(point, row.nearest, 1e-8);
        EXPECT_EQ(curve->getArea(number), Acad::eOk);
        EXPECT_NEAR(number, row.area, 1e-9);

        EXPECT_EQ(curve->getParamAtPoint({100, 100, 100}, number), Acad::eInvalidInput);
        EXPECT_EQ(curve->getParamAtDist(row.length + 1e-3, number), Acad::eInvalidInput);
        EXPECT_EQ(curve->getParamAtDist(-1e-3, number), Acad::eInvalidInput);
        EXPECT_EQ(curve->getPointAtParam(std::nan(""), point), Acad::eInvalidInput);
        // The derivative is what the point moves by.
        AcGeVector3d slope;
        AcGePoint3d further;
        EXPECT_EQ(curve->getFirstDeriv(row.param, slope), Acad::eOk);
        EXPECT_EQ(curve->getPointAtParam(row.param, point), Acad::eOk);
        EXPECT_EQ(curve->getPointAtParam(row.param + 1e-6, further), Acad::eOk);
        EXPECT_LT(((further - point) / 1e-6 - slope).length(), 1e-4 * (1.0 + slope.length()));
    }
}

TEST(DbCurve, GoesOnBehindItsEndsWhenAsked) {
    struct row {
        const char* groups;
        AcGePoint3d given;
        AcGePoint3d on_it;
        AcGePoint3d extended;
    };
    for (const row& row : {
             row{"0 LINE|5 100|8 0|10 0|20 0|11 4|21 0", {6, 1, 0}, {4, 0, 0}, {6, 0, 0}},
             row{"0 ARC|5 100|8 0|10 0|20 0|40 2|50 0|51 90", {0, -5, 0}, {2, 0, 0}, {0, -2, 0}},
             row{"0 LWPOLYLINE|5 100|8 0|90 3|10 0|20 0|10 4|20 0|10 4|20 2",
                 {4, 9, 0},
                 {4, 2, 0},
                 {4, 2, 0}},
             row{"0 RAY|5 100|8 0|10 1|20 1|30 0|11 1|21 0|31 0", {-9, 3, 0}, {1, 1, 0}, {-9, 1, 0}},
             row{"0 XLINE|5 100|8 0|10 1|20 1|30 0|11 1|21 0|31 0", {-9, 3, 0}, {-9, 1, 0}, {-9, 1, 0}},
         }) {
        const auto database = test::database_of(test::with_entities(row.groups));
        const test::seen<AcDbCurve> curve(*database, 0x100);
        AcGePoint3d point;
        EXPECT_EQ(curve->getClosestPointTo(row.given, point), Acad::eOk);
        expect_near(point, row.on_it);
        EXPECT_EQ(curve->getClosestPointTo(row.given, point, true), Acad::eOk);
        expect_near(point, row.extended);
    }
}

TEST(DbCurve, RunsTheOtherWayWhenReversed) {
    for (const char* const groups :
         {"0 LINE|5 100|8 0|10 1|20 0|30 0|11 4|21 4|31 0",
          "0 LWPOLYLINE|5 100|8 0|90 3|70 0|10 0|20 0|40 1|41 2|42 0.5|10 4|20 0|40 3|41 4|42 -1|10 4|20 "
          "3|40 5|41 6",
          "0 LWPOLYLINE|5 100|8 0|90 3|70 1|43 1|10 0|20 0|42 0.5|10 4|20 0|10 4|20 3|42 2",
          "0 SPLINE|5 100|8 0|71 2|72 7|73 4|40 0|40 0|40 0|40 1|40 5|40 5|40 5|10 1|20 0|30 0|10 1|20 1|30 "
          "0|"
          "10 0|20 1|30 0|10 -3|20 0|30 4"}) {
        const auto database = test::database_of(test::with_entities(groups));
        const auto untouched = test::database_of(test::with_entities(groups));
        const test::seen<AcDbCurve> before(*untouched, 0x100);
        const test::written_to<AcDbCurve> curve(*database, 0x100);
        double length = 0.0;
        double end = 0.0;
        before->getEndParam(end);
        before->getDistAtParam(end, length);
        for (int time = 0; time < 2; ++time) {
            ASSERT_EQ(curve->reverseCurve(), Acad::eOk);
            AcGePoint3d there;
            AcGePoint3d here;
            for (const double part : {0.0, 0.2, 0.5, 0.9, 1.0}) {
                ASSERT_EQ(before->getPointAtDist(length * part, there), Acad::eOk);
                ASSERT_EQ(curve->getPointAtDist(length * (time == 0 ? 1.0 - part : part), here), Acad::eOk);
                expect_near(here, there, 1e-8);
            }
            EXPECT_TRUE(test::same_box(
                [&] {
                    AcDbExtents box;
                    curve->getGeomExtents(box);
                    return box;
                }(),
                [&] {
                    AcDbExtents box;
                    before->getGeomExtents(box);
                    return box;
                }()))
                << "widths go with their segments";
        }
    }
}

TEST(DbCurve, EndlessOnesHaveNoEndAndNoExtents) {
    const auto database = test::database_of(test::with_entities(
        "0 RAY|5 100|8 0|10 1|20 1|30 0|11 3|21 4|31 0|0 XLINE|5 101|8 0|10 1|20 1|30 0|11 0|21 0|31 2"));
    const test::seen<AcDbRay> ray(*database, 0x100);
    const test::seen<AcDbXline> xline(*database, 0x101);
    AcDbExtents box;
    double number = 0.0;
    AcGePoint3d point;
    EXPECT_EQ(ray->getGeomExtents(box), Acad::eInvalidExtents);
    EXPECT_EQ(xline->getGeomExtents(box), Acad::eInvalidExtents);
    EXPECT_EQ(ray->getStartParam(number), Acad::eOk);
    EXPECT_EQ(ray->getEndParam(number), Acad::eNotApplicable);
    EXPECT_EQ(xline->getStartParam(number), Acad::eNotApplicable);
    EXPECT_EQ(xline->getDistAtParam(1.0, number), Acad::eNotApplicable);
    EXPECT_EQ(ray->getArea(number), Acad::eNotApplicable);
    EXPECT_EQ(ray->getPointAtDist(10.0, point), Acad::eOk);
    expect_near(point, {7, 9, 0});
    EXPECT_EQ(xline->getPointAtParam(-2.0, point), Acad::eOk);
    expect_near(point, {1, 1, -2});
    AcDbRay fresh;
    EXPECT_EQ(fresh.setSecondPoint(fresh.basePoint()), Acad::eInvalidInput);
    EXPECT_EQ(fresh.setSecondPoint({0, 5, 0}), Acad::eOk);
    expect_near(fresh.secondPoint(), {0, 1, 0});
}

// ---- ellipses

TEST(DbEllipse, AnglesAndParametersMeetOnTheAxes) {
    AcDbEllipse ellipse({1, 2, 3}, AcGeVector3d::kZAxis, {4, 0, 0}, 0.5, 0.0, pi / 2);
    expect_near(AcGePoint3d::kOrigin + ellipse.minorAxis(), {0, 2, 0});
    struct row {
        double angle;
        double param;
    };
    for (const row& row :
         {row{0, 0}, row{pi / 2, pi / 2}, row{-pi / 2, -pi / 2}, row{pi, pi}, row{2 * pi, 2 * pi},
          row{std::atan(0.5), pi / 4}, row{2 * pi + std::atan(0.5), 2 * pi + pi / 4},
          row{-std::atan(0.5), -pi / 4}, row{pi - std::atan(0.5), 3 * pi / 4}}) {
        EXPECT_NEAR(ellipse.paramAtAngle(row.angle), row.param, 1e-12);
        EXPECT_NEAR(ellipse.angleAtParam(row.param), row.angle, 1e-12);
    }
    EXPECT_FALSE(ellipse.isClosed());
    EXPECT_EQ(ellipse.setEndAngle(2 * pi), Acad::eOk);
    EXPECT_TRUE(ellipse.isClosed());
    AcGePoint3d point;
    EXPECT_EQ(ellipse.getEndPoint(point), Acad::eOk);
    expect_near(point, {5, 2, 3});
    EXPECT_EQ(ellipse.setRadiusRatio(0.0), Acad::eInvalidInput);
    EXPECT_EQ(ellipse.setRadiusRatio(1.5), Acad::eInvalidInput);
    EXPECT_EQ(ellipse.set({}, AcGeVector3d::kZAxis, {0, 0, 1}, 0.5), Acad::eInvalidInput);
    AcGeMatrix3d flat;
    flat.setToScaling(AcGeScale3d(1, 0, 1));
    EXPECT_EQ(ellipse.transformBy(flat), Acad::eDegenerateGeometry);
}

// A circle of the plane that is drawn out sideways is an ellipse; its arc keeps its ends.
TEST(DbEllipse, KeepsTheEndsOfItsArcWhereverItGoes) {
    AcDbEllipse ellipse({}, AcGeVector3d::kZAxis, {3, 0, 0}, 1.0, 0.5, 2.0);
    AcGePoint3d start;
    AcGePoint3d end;
    ellipse.getStartPoint(start);
    ellipse.getEndPoint(end);
    AcGeMatrix3d matrix;
    matrix.setToScaling(AcGeScale3d(-1, 2, 1));
    matrix = AcGeMatrix3d::rotation(0.3, {1, 2, 3}) * matrix;
    ASSERT_EQ(ellipse.transformBy(matrix), Acad::eOk);
    EXPECT_NEAR(ellipse.majorRadius(), 6.0, 1e-12);
    EXPECT_NEAR(ellipse.radiusRatio(), 0.5, 1e-12);
    AcGePoint3d point;
    ellipse.getEndPoint(point); // a mirror turns the way around
    expect_near(point, matrix * start);
    ellipse.getStartPoint(point);
    expect_near(point, matrix * end);
}

// ---- splines

TEST(DbSpline, GoesThroughItsFitPoints) {
    struct row {
        const char* name;
        std::vector<AcGePoint3d> points;
        AcGeVector3d start;
        AcGeVector3d end;
        double at; // of the length of the chords
        AcGePoint3d expected;
    };
    // Worked out by hand: of two points the cubic by ends and directions; of three at equal distances h the
    // second derivative at the middle one is 3/h^2 times its deviation downwards.
    for (const row& row : {
             row{"two", {{0, 0, 0}, {1, 0, 0}}, {}, {}, 0.5, {0.5, 0, 0}},
             row{"two with directions", {{0, 0, 0}, {1, 0, 0}}, {0, 9, 0}, {0, -9, 0}, 0.5, {0.5, 0.25, 0}},
             row{"three", {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {}, {}, 0.25, {0.5, 0.6875, 0}},
             row{"three, the middle one", {{0, 0, 0}, {1, 1, 0}, {2, 0, 0}}, {}, {}, 0.5, {1, 1, 0}},
             row{"one of them twice",
                 {{0, 0, 0}, {1, 1, 0}, {1, 1, 0}, {2, 0, 0}},
                 {},
                 {},
                 0.25,
                 {0.5, 0.6875, 0}},
         }) {
        SCOPED_TRACE(row.name);
        AcGePoint3dArray points;
        for (const AcGePoint3d& point : row.points)
            points.append(point);
        const AcDbSpline made(points, row.start, row.end);
        EXPECT_TRUE(made.hasFitData());
        EXPECT_EQ(made.numFitPoints(), points.length());
        std::string text = "0 SPLINE|5 100|8 0|71 3|74 3";
        const auto add = [&](int code, double x, double y) {
            text += "|" + std::to_string(code) + " " + std::to_string(x) + "|" + std::to_string(code + 10) +
                    " " + std::to_string(y);
        };
        add(12, row.start.x, row.start.y);
        add(13, row.end.x, row.end.y);
        for (const AcGePoint3d& point : row.points)
            add(11, point.x, point.y);
        const auto database = test::database_of(test::with_entities(text));
        const test::seen<AcDbSpline> read(*database, 0x100);
        for (const AcDbSpline* const spline : {&made, static_cast<const AcDbSpline*>(&*read)}) {
            double end = 0.0;
            AcGePoint3d point;
            ASSERT_EQ(spline->getEndParam(end), Acad::eOk);
            ASSERT_EQ(spline->getPointAtParam(end * row.at, point), Acad::eOk);
            expect_near(point, row.expected);
        }
    }
}

TEST(DbSpline, TellsAndTakesItsData) {
    AcDbSpline spline;
    AcGePoint3dArray points;
    AcGeDoubleArray knots;
    AcGeDoubleArray weights;
    int degree = 0;
    bool rational = false;
    bool closed = false;
    bool periodic = false;
    double point_slack = 0.0;
    double knot_slack = 0.0;
    const auto get = [&] {
        return spline.getNurbsData(degree, rational, closed, periodic, points, knots, weights, point_slack,
                                   knot_slack);
    };
    EXPECT_EQ(get(), Acad::eDegenerateGeometry) << "an empty one";
    double number = 0.0;
    EXPECT_EQ(spline.getEndParam(number), Acad::eDegenerateGeometry);
    for (const AcGePoint3d& point : {AcGePoint3d(0, 0, 0), AcGePoint3d(1, 2, 0), AcGePoint3d(3, 2, 1)})
        points.append(point);
    for (const double knot : {0.0, 0.0, 0.0, 2.0, 2.0, 2.0})
        knots.append(knot);
    EXPECT_EQ(spline.setNurbsData(3, false, false, false, points, knots, weights), Acad::eInvalidInput);
    EXPECT_EQ(spline.setNurbsData(2, true, false, false, points, knots, weights), Acad::eInvalidInput);
    std::swap(knots[2], knots[3]);
    EXPECT_EQ(spline.setNurbsData(2, false, false, false, points, knots, weights), Acad::eInvalidInput);
    std::swap(knots[2], knots[3]);
    EXPECT_EQ(spline.numControlPoints(), 0) << "nothing was changed by what was refused";
    EXPECT_EQ(spline.setNurbsData(2, false, true, false, points, knots, weights), Acad::eOk);
    points.removeAll();
    ASSERT_EQ(get(), Acad::eOk);
    EXPECT_EQ(degree, 2);
    EXPECT_TRUE(closed && !rational && !periodic && spline.isClosed());
    EXPECT_EQ(points.length(), 3);
    EXPECT_EQ(knots[3], 2.0);
    AcGePoint3d point;
    EXPECT_EQ(spline.setControlPointAt(3, {}), Acad::eInvalidIndex);
    EXPECT_EQ(spline.setControlPointAt(1, {7, 8, 9}), Acad::eOk);
    EXPECT_EQ(spline.getControlPointAt(1, point), Acad::eOk);
    expect_near(point, {7, 8, 9});
    EXPECT_EQ(spline.getPointAtParam(1.0, point), Acad::eOk);
    expect_near(point, {4.25, 4.5, 4.75}); // a quarter of the ends, half of the middle
    EXPECT_EQ(spline.getPointAtParam(2.1, point), Acad::eInvalidInput);

    AcGePoint3dArray fit;
    fit.append({0, 0, 0});
    EXPECT_EQ(spline.setFitData(fit, 3, 0.0, {}, {}), Acad::eInvalidInput) << "one point";
    fit.append({5, 5, 0});
    EXPECT_EQ(spline.setFitData(fit, 2, 0.0, {}, {}), Acad::eInvalidInput) << "not cubic";
    EXPECT_EQ(spline.setFitData(fit, 3, 0.0, {}, {}), Acad::eOk);
    EXPECT_EQ(spline.numControlPoints(), 4);
    EXPECT_EQ(spline.purgeFitData(), Acad::eOk);
    EXPECT_FALSE(spline.hasFitData());
    EXPECT_EQ(spline.numControlPoints(), 4);
}

// What a file does not say or says wrongly is made good: knots that are missing are even, weights that are
// none are left out, a degree is not above what the points allow.
TEST(DbSpline, MendsWhatIsBroken) {
    for (const char* const groups :
         {"|71 2|10 0|20 0|10 1|20 2|10 2|20 0", "|71 2|40 0|40 0|10 0|20 0|10 1|20 2|10 2|20 0",
          "|71 9|10 0|20 0|10 1|20 2|10 2|20 0", "|71 2|41 0|41 1|41 1|10 0|20 0|10 1|20 2|10 2|20 0",
          "|71 2|40 0|40 0|40 0|40 nan|40 1|40 1|10 0|20 0|10 1|20 2|10 2|20 0",
          "|71 2|40 3|40 3|40 3|40 3|40 3|40 3|10 0|20 0|10 1|20 2|10 2|20 0"}) {
        const auto database =
            test::database_of(test::with_entities(std::string("0 SPLINE|5 100|8 0") + groups));
        const test::seen<> spline(*database, 0x100);
        EXPECT_EQ(test::box_of(*spline), (test::box{0, 0, 2, 1})) << groups;
    }
    for (const char* const groups :
         {"", "|71 0|10 0|20 0|10 1|20 2", "|71 26|10 0|20 0|10 1|20 2", "|10 1|20 1", "|11 1|21 1"}) {
        const auto database =
            test::database_of(test::with_entities(std::string("0 SPLINE|5 100|8 0") + groups));
        EXPECT_EQ(test::box_of(*test::seen<>(*database, 0x100)), test::nothing) << groups;
    }
}

TEST(DbHelix, TellsWhatItWasMadeOf) {
    const auto figure = std::find_if(test::figures().begin(), test::figures().end(),
                                     [](const auto& one) { return one.name == std::string_view("helix"); });
    const auto database = test::database_of(test::with_entities(figure->groups));
    const test::written_to<AcDbHelix> helix(*database, 0x100);
    EXPECT_EQ(helix->height(), 3.0);
    EXPECT_TRUE(helix->twist());
    AcGeMatrix3d mirror;
    mirror.setToScaling(AcGeScale3d(-2, 2, 2));
    EXPECT_EQ(helix->transformBy(mirror), Acad::eOk);
    EXPECT_NEAR(helix->height(), 6.0, 1e-12);
    EXPECT_NEAR(helix->baseRadius(), 2.0, 1e-12);
    expect_near(helix->startPoint(), {-2, 0, 0});
    EXPECT_FALSE(helix->twist()) << "the other way round in a mirror";
    AcGePoint3d point;
    EXPECT_EQ(helix->getStartPoint(point), Acad::eOk);
    expect_near(point, {-2, 0, 0});
}

// ---- multilines

TEST(DbMline, DrawsItsLinesWithTheirGaps) {
    struct lines_canvas final : gi::canvas {
        std::vector<std::string> drawn;
        void lines(std::span<const AcGePoint3d> points) override {
            std::ostringstream out;
            for (const AcGePoint3d& point : points)
                out << (out.tellp() > 0 ? " to " : "") << point.x << "," << point.y;
            drawn.push_back(out.str());
        }
        void area(std::span<const AcGePoint3d>) override { drawn.emplace_back("area"); }
        void curve(const gi::arc&) override { drawn.emplace_back("curve"); }
    };
    const auto figure = std::find_if(test::figures().begin(), test::figures().end(), [](const auto& one) {
        return one.name == std::string_view("multiline");
    });
    const auto database = test::database_of(test::with_entities(figure->groups));
    const test::seen<AcDbMline> mline(*database, 0x100);
    lines_canvas canvas;
    gi::tracer(canvas).draw(*mline);
    EXPECT_EQ(canvas.drawn, (std::vector<std::string>{"0,1 to 2,1", "3,1 to 9,1", "0,-1 to 9,-1"}));
    EXPECT_EQ(mline->numVertices(), 2);
    expect_near(mline->vertexAt(1), {9, 0, 0});
    expect_near(mline->vertexAt(2), {0, 0, 0});
    EXPECT_EQ(mline->justification(), Mline::kZero);
    EXPECT_FALSE(mline->closedMline());
    EXPECT_TRUE(mline->style().isNull());
}
