#include "gepnt2d.h"
#include "gevec2d.h"

#include <cmath>
#include <numbers>

double AcGeVector2d::length() const {
    return std::hypot(x, y);
}

double AcGeVector2d::angle() const {
    const double a = std::atan2(y, x);
    return a < 0.0 ? a + 2.0 * std::numbers::pi : a;
}

double AcGeVector2d::angleTo(const AcGeVector2d& v) const {
    return std::atan2(std::fabs(x * v.y - y * v.x), dotProduct(v));
}

AcGeVector2d& AcGeVector2d::rotateBy(double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return set(x * c - y * s, x * s + y * c);
}

AcGeVector2d AcGeVector2d::normal(const AcGeTol& tol) const {
    return isZeroLength(tol) ? *this : *this / length();
}

bool AcGeVector2d::isZeroLength(const AcGeTol& tol) const {
    return length() <= tol.equalVector();
}

bool AcGeVector2d::isUnitLength(const AcGeTol& tol) const {
    return std::fabs(length() - 1.0) <= tol.equalVector();
}

bool AcGeVector2d::isParallelTo(const AcGeVector2d& v, const AcGeTol& tol) const {
    return isCodirectionalTo(v, tol) || isCodirectionalTo(-v, tol);
}

bool AcGeVector2d::isCodirectionalTo(const AcGeVector2d& v, const AcGeTol& tol) const {
    return !isZeroLength(tol) && !v.isZeroLength(tol) && normal(tol).isEqualTo(v.normal(tol), tol);
}

bool AcGeVector2d::isPerpendicularTo(const AcGeVector2d& v, const AcGeTol& tol) const {
    return !isZeroLength(tol) && !v.isZeroLength(tol) &&
           std::fabs(normal(tol).dotProduct(v.normal(tol))) <= tol.equalVector();
}

bool AcGeVector2d::isEqualTo(const AcGeVector2d& v, const AcGeTol& tol) const {
    return (*this - v).length() <= tol.equalVector();
}

AcGePoint2d& AcGePoint2d::rotateBy(double angle, const AcGePoint2d& center) {
    return *this = center + (*this - center).rotateBy(angle);
}

AcGePoint2d& AcGePoint2d::scaleBy(double factor, const AcGePoint2d& center) {
    return *this = center + (*this - center) * factor;
}

bool AcGePoint2d::isEqualTo(const AcGePoint2d& p, const AcGeTol& tol) const {
    return distanceTo(p) <= tol.equalPoint();
}
