// A point in space.
#pragma once

#include "gevec3d.h"

class ACGE_PORT AcGePoint3d {
public:
    constexpr AcGePoint3d() = default;
    constexpr AcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const AcGePoint3d kOrigin;

    AcGePoint3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGePoint3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-(const AcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    AcGePoint3d operator*(double scale) const { return {x * scale, y * scale, z * scale}; }
    AcGePoint3d operator/(double scale) const { return {x / scale, y / scale, z / scale}; }
    friend AcGePoint3d operator*(double scale, const AcGePoint3d& p) { return p * scale; }
    AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    AcGePoint3d& operator*=(double scale) { return *this = *this * scale; }
    AcGePoint3d& operator/=(double scale) { return *this = *this / scale; }
    AcGePoint3d& set(double xx, double yy, double zz) { return *this = AcGePoint3d(xx, yy, zz); }

    AcGeVector3d asVector() const { return {x, y, z}; }
    double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
    AcGePoint3d& transformBy(const AcGeMatrix3d& matrix);
    // Turns it about an axis through a point, by the right hand's rule.
    AcGePoint3d& rotateBy(double angle, const AcGeVector3d& axis,
                          const AcGePoint3d& center = AcGePoint3d::kOrigin);
    // Moves it away from a point by a factor.
    AcGePoint3d& scaleBy(double factor, const AcGePoint3d& center = AcGePoint3d::kOrigin);

    bool isEqualTo(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGePoint3d& p) const { return isEqualTo(p); }
    // x, y, z by 0, 1 and 2.
    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// The matrix applied to a point.
ACGE_PORT AcGePoint3d operator*(const AcGeMatrix3d& matrix, const AcGePoint3d& point);
