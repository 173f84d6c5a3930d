// Points, vectors and matrices against values worked out by hand.
#include "geassign.h"
#include "gemat3d.h"
#include "gepnt2d.h"
#include "gept3dar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <numbers>

namespace {

constexpr double pi = std::numbers::pi;
using V = AcGeVector3d;
using P = AcGePoint3d;
using M = AcGeMatrix3d;

void expect_at(const P& p, double x, double y, double z) {
    EXPECT_TRUE(p.isEqualTo(P(x, y, z))) << p.x << ' ' << p.y << ' ' << p.z;
}

TEST(ge_vector, lengths_and_angles) {
    struct row {
        V a;
        V b;
        double angle;
        double angle_about_z;
        bool parallel;
        bool codirectional;
        bool perpendicular;
    };
    const row rows[] = {
        {{1, 0, 0}, {0, 2, 0}, pi / 2, pi / 2, false, false, true},
        {{0, 2, 0}, {1, 0, 0}, pi / 2, 3 * pi / 2, false, false, true},
        {{1, 1, 0}, {3, 3, 0}, 0, 0, true, true, false},
        {{1, 1, 0}, {-2, -2, 0}, pi, pi, true, false, false},
        {{1, 0, 0}, {1, std::sqrt(3.0), 0}, pi / 3, pi / 3, false, false, false},
        {{0, 0, 0}, {1, 0, 0}, 0, 0, false, false, false},
    };
    for (std::size_t i = 0; i != std::size(rows); ++i) {
        const row& r = rows[i];
        EXPECT_NEAR(r.a.angleTo(r.b), r.angle, 1e-12) << i;
        EXPECT_NEAR(r.a.angleTo(r.b, V::kZAxis), r.angle_about_z, 1e-12) << i;
        EXPECT_EQ(r.a.isParallelTo(r.b), r.parallel) << i;
        EXPECT_EQ(r.a.isCodirectionalTo(r.b), r.codirectional) << i;
        EXPECT_EQ(r.a.isPerpendicularTo(r.b), r.perpendicular) << i;
        const AcGeVector2d a(r.a.x, r.a.y);
        const AcGeVector2d b(r.b.x, r.b.y);
        EXPECT_NEAR(a.angleTo(b), r.angle, 1e-12) << i;
        EXPECT_EQ(a.isParallelTo(b), r.parallel) << i;
        EXPECT_EQ(a.isPerpendicularTo(b), r.perpendicular) << i;
    }
    EXPECT_EQ(V(2, 3, 6).length(), 7.0);
    EXPECT_EQ(V(2, 3, 6).normal(), V(2, 3, 6) / 7);
    EXPECT_EQ(V().normalize(), V());
    EXPECT_EQ(V::kXAxis.crossProduct(V::kYAxis), V::kZAxis);
    EXPECT_TRUE(V(1, 1e-11, 0) == V::kXAxis && V(1, 1e-9, 0) != V::kXAxis);
    AcGeTol rough;
    rough.setEqualVector(0.1);
    EXPECT_TRUE(V(1, 0.05, 0).isEqualTo(V::kXAxis, rough));
    EXPECT_EQ(V(1, 0, 0).rotateBy(pi / 2, V(0, 0, 5)), V::kYAxis);
    EXPECT_EQ(V(1, 2, 3).mirror(V(0, 9, 0)), V(1, -2, 3));
    EXPECT_EQ(AcGeVector2d(1, 2).rotateBy(pi / 2), AcGeVector2d(1, 2).perpVector());
    EXPECT_NEAR(AcGeVector2d(0, -1).angle(), 3 * pi / 2, 1e-12);
}

TEST(ge_matrix, elementary_ones_move_points_where_they_should) {
    const P p(1, 2, 3);
    expect_at(M::translation({10, 20, 30}) * p, 11, 22, 33);
    expect_at(M::rotation(pi / 2, V::kZAxis) * p, -2, 1, 3);
    expect_at(M::rotation(pi / 2, V::kZAxis, {1, 1, 0}) * p, 0, 1, 3);
    expect_at(M::rotation(-pi / 2, V(7, 0, 0)) * p, 1, 3, -2);
    expect_at(M::scaling(2, {1, 1, 1}) * p, 1, 3, 5);
    expect_at(M().setToScaling(AcGeScale3d(1, -1, 2)) * p, 1, -2, 6);
    expect_at(M().setToMirroring({1, 1, 1}) * p, 1, 0, -1);
    expect_at(M::translation({1, 0, 0}) * M::rotation(pi / 2, V::kZAxis) * p, -1, 1,
              3);                                                     // the right one first
    EXPECT_EQ(M::translation({10, 20, 30}) * V(1, 2, 3), V(1, 2, 3)); // vectors stand nowhere
    expect_at(P(p).rotateBy(pi, V::kZAxis, {1, 0, 0}), 1, -2, 3);
    expect_at(P(p).scaleBy(3, {0, 2, 0}), 3, 2, 9);
    const M align = M().setToAlignCoordSys({1, 2, 3}, V::kXAxis, V::kYAxis, V::kZAxis, {5, 5, 5}, V::kYAxis,
                                           V::kZAxis, V::kXAxis);
    expect_at(align * p, 5, 5, 5);
    expect_at(align * (p + V::kXAxis), 5, 6, 5);
    const AcGePoint2d q = AcGePoint2d(2, 1).rotateBy(pi / 2, {1, 1});
    EXPECT_TRUE(q.isEqualTo(AcGePoint2d(1, 2)));
}

TEST(ge_matrix, inverse_undoes_at_every_scale) {
    for (const double factor : {1e-6, 1e-3, 1.0, -4.0, 1e6}) {
        const M m = M::translation({3, -1, 8}) * M::rotation(0.7, {1, 2, 3}) * M::scaling(factor);
        EXPECT_NEAR(m.det() / (factor * factor * factor), 1.0, 1e-9) << factor;
        EXPECT_TRUE((m.inverse() * m).isEqualTo(M::kIdentity)) << factor;
        EXPECT_NEAR(m.scale() / std::fabs(factor), 1.0, 1e-12) << factor;
        EXPECT_FALSE(m.isSingular()) << factor;
        EXPECT_TRUE(m.isUniScaledOrtho({})) << factor;
    }
    const M flat = M().setToScaling(AcGeScale3d(1, 0, 1));
    M untouched = M::translation({1, 1, 1});
    EXPECT_TRUE(flat.isSingular());
    EXPECT_FALSE(flat.inverse(untouched));
    EXPECT_EQ(untouched, M::translation({1, 1, 1}));
    EXPECT_TRUE(M().setToScaling(AcGeScale3d(1, 2, 1)).isScaledOrtho());
    EXPECT_FALSE(M().setToScaling(AcGeScale3d(1, 2, 1)).isUniScaledOrtho());
    M sheared;
    sheared(0, 1) = 0.5;
    EXPECT_FALSE(sheared.isScaledOrtho());
    EXPECT_EQ(sheared.transpose()(1, 0), 0.5);
}

TEST(ge_matrix, planes_get_the_axes_of_drawing_files) {
    struct row {
        V normal;
        V x;
        V y;
    };
    // The nearness bound is 1/64 in both x and y.
    const row rows[] = {
        {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}},          {{0, 0, -1}, {-1, 0, 0}, {0, 1, 0}},
        {{0, -1, 0}, {1, 0, 0}, {0, 0, 1}},         {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
        {{0.6, 0, 0.8}, {0, 1, 0}, {-0.8, 0, 0.6}},
    };
    for (const row& r : rows) {
        P origin;
        V x, y, z;
        M::planeToWorld(r.normal).getCoordSystem(origin, x, y, z);
        EXPECT_EQ(x, r.x);
        EXPECT_EQ(y, r.y);
        EXPECT_EQ(z, r.normal);
        EXPECT_EQ(M::worldToPlane(r.normal) * M::planeToWorld(r.normal), M::kIdentity);
    }
    EXPECT_NEAR(V(0.0156, 0, 1).perpVector().y, 0.0, 1e-12); // still near: from the world's y axis
    EXPECT_NEAR(V(0.0157, 0, 1).perpVector().y, 1.0, 1e-12); // no longer: from z
}

TEST(ge_assign, arrays_are_points) {
    ads_point a = {1, 2, 3};
    asPnt3d(a) += V(1, 1, 1);
    EXPECT_EQ(a[2], 4.0);
    EXPECT_EQ(asPnt2d(a), AcGePoint2d(2, 3));
    asVec3d(a).negate();
    EXPECT_EQ(a[0], -2.0);
    P p;
    ads_point_set(a, asDblArray(p));
    EXPECT_EQ(p, P(-2, -3, -4));
    AcGePoint3dArray points;
    points.append(p);
    EXPECT_TRUE(points.contains(P(-2, -3, -4)));
}

} // namespace
