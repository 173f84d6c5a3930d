// A vector in the plane.
#pragma once

#include "gegbl.h"

class AcGePoint2d;

class ACGE_PORT AcGeVector2d {
public:
    constexpr AcGeVector2d() = default;
    constexpr AcGeVector2d(double xx, double yy) : x(xx), y(yy) {}

    static const AcGeVector2d kIdentity; // (0, 0)
    static const AcGeVector2d kXAxis;
    static const AcGeVector2d kYAxis;

    AcGeVector2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
    AcGeVector2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
    AcGeVector2d operator-() const { return {-x, -y}; }
    AcGeVector2d operator*(double scale) const { return {x * scale, y * scale}; }
    AcGeVector2d operator/(double scale) const { return {x / scale, y / scale}; }
    friend AcGeVector2d operator*(double scale, const AcGeVector2d& v) { return v * scale; }
    AcGeVector2d& operator+=(const AcGeVector2d& v) { return *this = *this + v; }
    AcGeVector2d& operator-=(const AcGeVector2d& v) { return *this = *this - v; }
    AcGeVector2d& operator*=(double scale) { return *this = *this * scale; }
    AcGeVector2d& operator/=(double scale) { return *this = *this / scale; }
    AcGeVector2d& set(double xx, double yy) { return *this = AcGeVector2d(xx, yy); }
    AcGeVector2d& negate() { return *this = -*this; }

    double length() const;
    double lengthSqrd() const { return x * x + y * y; }
    double dotProduct(const AcGeVector2d& v) const { return x * v.x + y * v.y; }
    // This vector turned a quarter to the left.
    AcGeVector2d perpVector() const { return {-y, x}; }
    // From the x axis, counter-clockwise, 0 to 2 pi.
    double angle() const;
    // Between the two, 0 to pi.
    double angleTo(const AcGeVector2d& v) const;
    AcGeVector2d& rotateBy(double angle);
    // The same direction with length one; a vector without a length stays as it is.
    AcGeVector2d normal(const AcGeTol& tol = AcGeContext::gTol) const;
    AcGeVector2d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }
    bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const;
    // Of two vectors that have a length; false without one.
    bool isParallelTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isCodirectionalTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isPerpendicularTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const;

    bool isEqualTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGeVector2d& v) const { return isEqualTo(v); }
    // x, y by 0 and 1.
    double operator[](unsigned i) const { return i == 0 ? x : y; }
    double& operator[](unsigned i) { return i == 0 ? x : y; }

    double x = 0.0;
    double y = 0.0;
};
