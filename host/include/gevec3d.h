// A vector in space.
#pragma once

#include "gegbl.h"

class AcGeMatrix3d;
class AcGeVector2d;

class ACGE_PORT AcGeVector3d {
public:
    constexpr AcGeVector3d() = default;
    constexpr AcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

    static const AcGeVector3d kIdentity; // (0, 0, 0)
    static const AcGeVector3d kXAxis;
    static const AcGeVector3d kYAxis;
    static const AcGeVector3d kZAxis;

    AcGeVector3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGeVector3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-() const { return {-x, -y, -z}; }
    AcGeVector3d operator*(double scale) const { return {x * scale, y * scale, z * scale}; }
    AcGeVector3d operator/(double scale) const { return {x / scale, y / scale, z / scale}; }
    friend AcGeVector3d operator*(double scale, const AcGeVector3d& v) { return v * scale; }
    AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
    AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
    AcGeVector3d& operator*=(double scale) { return *this = *this * scale; }
    AcGeVector3d& operator/=(double scale) { return *this = *this / scale; }
    AcGeVector3d& set(double xx, double yy, double zz) { return *this = AcGeVector3d(xx, yy, zz); }
    AcGeVector3d& negate() { return *this = -*this; }

    double length() const;
    double lengthSqrd() const { return x * x + y * y + z * z; }
    double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
    AcGeVector3d crossProduct(const AcGeVector3d& v) const {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    // A vector at right angles to this one: the x axis that the editor gives a plane with this normal.
    AcGeVector3d perpVector() const;
    // Between the two, 0 to pi.
    double angleTo(const AcGeVector3d& v) const;
    // From this one to the other, counter-clockwise as seen against the reference, 0 to 2 pi.
    double angleTo(const AcGeVector3d& v, const AcGeVector3d& reference) const;
    // Turns it about an axis, by the right hand's rule.
    AcGeVector3d& rotateBy(double angle, const AcGeVector3d& axis);
    AcGeVector3d& transformBy(const AcGeMatrix3d& matrix);
    // Mirrors it at the plane with this normal.
    AcGeVector3d& mirror(const AcGeVector3d& normalToPlane);
    // The same direction with length one; a vector without a length stays as it is.
    AcGeVector3d normal(const AcGeTol& tol = AcGeContext::gTol) const;
    AcGeVector3d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }
    bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const;
    // Of two vectors that have a length; false without one.
    bool isParallelTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isCodirectionalTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;

    bool isEqualTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGeVector3d& v) const { return isEqualTo(v); }
    // x, y, z by 0, 1 and 2.
    double operator[](unsigned i) const { return i == 0 ? x : i == 1 ? y : z; }
    double& operator[](unsigned i) { return i == 0 ? x : i == 1 ? y : z; }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// The linear part of the matrix applied to a vector.
ACGE_PORT AcGeVector3d operator*(const AcGeMatrix3d& matrix, const AcGeVector3d& vector);
