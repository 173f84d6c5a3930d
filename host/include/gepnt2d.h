// A point in the plane.
#pragma once

#include "gevec2d.h"

class ACGE_PORT AcGePoint2d {
public:
    constexpr AcGePoint2d() = default;
    constexpr AcGePoint2d(double xx, double yy) : x(xx), y(yy) {}

    static const AcGePoint2d kOrigin;

    AcGePoint2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    AcGePoint2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    AcGeVector2d operator-(const AcGePoint2d& p) const { return {x - p.x, y - p.y}; }
    AcGePoint2d operator*(double scale) const { return {x * scale, y * scale}; }
    AcGePoint2d operator/(double scale) const { return {x / scale, y / scale}; }
    friend AcGePoint2d operator*(double scale, const AcGePoint2d& p) { return p * scale; }
    AcGePoint2d& operator+=(const AcGeVector2d& v) { return *this = *this + v; }
    AcGePoint2d& operator-=(const AcGeVector2d& v) { return *this = *this - v; }
    AcGePoint2d& operator*=(double scale) { return *this = *this * scale; }
    AcGePoint2d& set(double xx, double yy) { return *this = AcGePoint2d(xx, yy); }

    AcGeVector2d asVector() const { return {x, y}; }
    double distanceTo(const AcGePoint2d& p) const { return (*this - p).length(); }
    // Turns it about a point.
    AcGePoint2d& rotateBy(double angle, const AcGePoint2d& center = AcGePoint2d::kOrigin);
    // Moves it away from a point by a factor.
    AcGePoint2d& scaleBy(double factor, const AcGePoint2d& center = AcGePoint2d::kOrigin);

    bool isEqualTo(const AcGePoint2d& p, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGePoint2d& p) const { return isEqualTo(p); }
    // x, y by 0 and 1.
    double operator[](unsigned i) const { return i == 0 ? x : y; }
    double& operator[](unsigned i) { return i == 0 ? x : y; }

    double x = 0.0;
    double y = 0.0;
};
