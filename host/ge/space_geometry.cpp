#include "gemat3d.h"
#include "gepnt3d.h"
#include "gescl3d.h"
#include "gevec3d.h"

#include <cmath>
#include <numbers>

double AcGeVector3d::length() const {
    return std::hypot(x, y, z);
}

AcGeVector3d AcGeVector3d::perpVector() const {
    // A normal nearer to the world's z axis than this gets its x axis from the world's y axis, others from z:
    // the rule, and the number, are those of drawing files.
    constexpr double near = 1.0 / 64.0;
    const AcGeVector3d n = normal();
    const bool is_near_z = std::fabs(n.x) < near && std::fabs(n.y) < near;
    return (is_near_z ? kYAxis : kZAxis).crossProduct(n).normal();
}

double AcGeVector3d::angleTo(const AcGeVector3d& v) const {
    return std::atan2(crossProduct(v).length(), dotProduct(v));
}

double AcGeVector3d::angleTo(const AcGeVector3d& v, const AcGeVector3d& reference) const {
    const double angle = angleTo(v);
    return crossProduct(v).dotProduct(reference) < 0.0 ? 2.0 * std::numbers::pi - angle : angle;
}

AcGeVector3d& AcGeVector3d::rotateBy(double angle, const AcGeVector3d& axis) {
    const AcGeVector3d n = axis.normal();
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return *this = *this * c + n.crossProduct(*this) * s + n * (n.dotProduct(*this) * (1.0 - c));
}

AcGeVector3d& AcGeVector3d::transformBy(const AcGeMatrix3d& matrix) {
    return *this = matrix * *this;
}

AcGeVector3d& AcGeVector3d::mirror(const AcGeVector3d& normalToPlane) {
    const AcGeVector3d n = normalToPlane.normal();
    return *this -= n * (2.0 * dotProduct(n));
}

AcGeVector3d AcGeVector3d::normal(const AcGeTol& tol) const {
    return isZeroLength(tol) ? *this : *this / length();
}

bool AcGeVector3d::isZeroLength(const AcGeTol& tol) const {
    return length() <= tol.equalVector();
}

bool AcGeVector3d::isUnitLength(const AcGeTol& tol) const {
    return std::fabs(length() - 1.0) <= tol.equalVector();
}

bool AcGeVector3d::isParallelTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    return isCodirectionalTo(v, tol) || isCodirectionalTo(-v, tol);
}

bool AcGeVector3d::isCodirectionalTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    return !isZeroLength(tol) && !v.isZeroLength(tol) && normal(tol).isEqualTo(v.normal(tol), tol);
}

bool AcGeVector3d::isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    return !isZeroLength(tol) && !v.isZeroLength(tol) &&
           std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}

bool AcGeVector3d::isEqualTo(const AcGeVector3d& v, const AcGeTol& tol) const {
    return (*this - v).length() <= tol.equalVector();
}

AcGePoint3d& AcGePoint3d::transformBy(const AcGeMatrix3d& matrix) {
    return *this = matrix * *this;
}

AcGePoint3d& AcGePoint3d::rotateBy(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
    return *this = center + (*this - center).rotateBy(angle, axis);
}

AcGePoint3d& AcGePoint3d::scaleBy(double factor, const AcGePoint3d& center) {
    return *this = center + (*this - center) * factor;
}

bool AcGePoint3d::isEqualTo(const AcGePoint3d& p, const AcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}

bool AcGeScale3d::isProportional(const AcGeTol& tol) const {
    return std::fabs(std::fabs(sx) - std::fabs(sy)) <= tol.equalVector() &&
           std::fabs(std::fabs(sx) - std::fabs(sz)) <= tol.equalVector();
}

bool AcGeScale3d::isEqualTo(const AcGeScale3d& s, const AcGeTol& tol) const {
    return std::fabs(sx - s.sx) <= tol.equalVector() && std::fabs(sy - s.sy) <= tol.equalVector() &&
           std::fabs(sz - s.sz) <= tol.equalVector();
}
