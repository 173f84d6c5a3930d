// Factors of scale along the three axes.
#pragma once

#include "gegbl.h"

class ACGE_PORT AcGeScale3d {
public:
    constexpr AcGeScale3d() = default;
    constexpr explicit AcGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
    constexpr AcGeScale3d(double xFactor, double yFactor, double zFactor)
        : sx(xFactor), sy(yFactor), sz(zFactor) {}

    static const AcGeScale3d kIdentity;

    AcGeScale3d operator*(const AcGeScale3d& s) const { return {sx * s.sx, sy * s.sy, sz * s.sz}; }
    AcGeScale3d operator*(double factor) const { return {sx * factor, sy * factor, sz * factor}; }
    AcGeScale3d& operator*=(const AcGeScale3d& s) { return *this = *this * s; }
    AcGeScale3d& operator*=(double factor) { return *this = *this * factor; }
    // The factors that undo these, none of which may be nought.
    AcGeScale3d inverse() const { return {1.0 / sx, 1.0 / sy, 1.0 / sz}; }
    AcGeScale3d& set(double x, double y, double z) { return *this = AcGeScale3d(x, y, z); }

    // Whether all three have one size, whatever their signs.
    bool isProportional(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isEqualTo(const AcGeScale3d& s, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGeScale3d& s) const { return isEqualTo(s); }
    double operator[](unsigned i) const { return i == 0 ? sx : i == 1 ? sy : sz; }
    double& operator[](unsigned i) { return i == 0 ? sx : i == 1 ? sy : sz; }

    double sx = 1.0;
    double sy = 1.0;
    double sz = 1.0;
};
