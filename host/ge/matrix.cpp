#include "gemat3d.h"

#include <algorithm>
#include <cmath>

namespace {

AcGeVector3d column(const AcGeMatrix3d& m, unsigned i) {
    return {m.entry[0][i], m.entry[1][i], m.entry[2][i]};
}

// One that leaves a point where it is and does the linear part of another matrix about it.
AcGeMatrix3d about(const AcGePoint3d& center, AcGeMatrix3d linear) {
    return linear.setTranslation(center.asVector() - linear * center.asVector());
}

} // namespace

AcGeVector3d operator*(const AcGeMatrix3d& m, const AcGeVector3d& v) {
    return column(m, 0) * v.x + column(m, 1) * v.y + column(m, 2) * v.z;
}

AcGePoint3d operator*(const AcGeMatrix3d& m, const AcGePoint3d& p) {
    return AcGePoint3d::kOrigin + (m * p.asVector() + m.translation());
}

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& right) const {
    AcGeMatrix3d product;
    for (unsigned row = 0; row != 4; ++row) {
        for (unsigned col = 0; col != 4; ++col) {
            double sum = 0.0;
            for (unsigned i = 0; i != 4; ++i)
                sum += entry[row][i] * right.entry[i][col];
            product.entry[row][col] = sum;
        }
    }
    return product;
}

double AcGeMatrix3d::det() const {
    return column(*this, 0).dotProduct(column(*this, 1).crossProduct(column(*this, 2)));
}

bool AcGeMatrix3d::inverse(AcGeMatrix3d& inverted, double tol) const {
    const double d = det();
    if (!(std::fabs(d) > tol))
        return false;
    const AcGeVector3d rows[] = {
        column(*this, 1).crossProduct(column(*this, 2)) / d,
        column(*this, 2).crossProduct(column(*this, 0)) / d,
        column(*this, 0).crossProduct(column(*this, 1)) / d,
    };
    const AcGeVector3d moved = translation();
    AcGeMatrix3d made;
    for (unsigned i = 0; i != 3; ++i) {
        for (unsigned j = 0; j != 3; ++j)
            made.entry[i][j] = rows[i][j];
        made.entry[i][3] = -rows[i].dotProduct(moved);
    }
    inverted = made;
    return true;
}

AcGeMatrix3d AcGeMatrix3d::inverse() const {
    AcGeMatrix3d made;
    // A small determinant may only mean a small scale.
    inverse(made, 0.0);
    return made;
}

bool AcGeMatrix3d::isSingular(const AcGeTol& tol) const {
    const double size = scale();
    return !(std::fabs(det()) > tol.equalVector() * size * size * size);
}

AcGeMatrix3d AcGeMatrix3d::transpose() const {
    AcGeMatrix3d made;
    for (unsigned row = 0; row != 4; ++row) {
        for (unsigned col = 0; col != 4; ++col)
            made.entry[row][col] = entry[col][row];
    }
    return made;
}

double AcGeMatrix3d::scale() const {
    return std::max({column(*this, 0).length(), column(*this, 1).length(), column(*this, 2).length()});
}

bool AcGeMatrix3d::isScaledOrtho(const AcGeTol& tol) const {
    return column(*this, 0).isPerpendicularTo(column(*this, 1), tol) &&
           column(*this, 1).isPerpendicularTo(column(*this, 2), tol) &&
           column(*this, 2).isPerpendicularTo(column(*this, 0), tol);
}

bool AcGeMatrix3d::isUniScaledOrtho(const AcGeTol& tol) const {
    const double size = scale();
    const AcGeScale3d lengths(column(*this, 0).length() / size, column(*this, 1).length() / size,
                              column(*this, 2).length() / size);
    return isScaledOrtho(tol) && lengths.isProportional(tol);
}

AcGeMatrix3d& AcGeMatrix3d::setTranslation(const AcGeVector3d& vector) {
    for (unsigned i = 0; i != 3; ++i)
        entry[i][3] = vector[i];
    return *this;
}

AcGeMatrix3d& AcGeMatrix3d::setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                           const AcGeVector3d& yAxis, const AcGeVector3d& zAxis) {
    setToIdentity();
    for (unsigned i = 0; i != 3; ++i) {
        entry[i][0] = xAxis[i];
        entry[i][1] = yAxis[i];
        entry[i][2] = zAxis[i];
    }
    return setTranslation(origin.asVector());
}

void AcGeMatrix3d::getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                                  AcGeVector3d& zAxis) const {
    origin = AcGePoint3d::kOrigin + translation();
    xAxis = column(*this, 0);
    yAxis = column(*this, 1);
    zAxis = column(*this, 2);
}

AcGeMatrix3d& AcGeMatrix3d::setToTranslation(const AcGeVector3d& vector) {
    return setToIdentity().setTranslation(vector);
}

AcGeMatrix3d& AcGeMatrix3d::setToRotation(double angle, const AcGeVector3d& axis, const AcGePoint3d& center) {
    AcGeMatrix3d turned;
    turned.setCoordSystem(AcGePoint3d::kOrigin, AcGeVector3d(AcGeVector3d::kXAxis).rotateBy(angle, axis),
                          AcGeVector3d(AcGeVector3d::kYAxis).rotateBy(angle, axis),
                          AcGeVector3d(AcGeVector3d::kZAxis).rotateBy(angle, axis));
    return *this = about(center, turned);
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(double factor, const AcGePoint3d& center) {
    return setToScaling(AcGeScale3d(factor), center);
}

AcGeMatrix3d& AcGeMatrix3d::setToScaling(const AcGeScale3d& factors, const AcGePoint3d& center) {
    AcGeMatrix3d scaled;
    for (unsigned i = 0; i != 3; ++i)
        scaled.entry[i][i] = factors[i];
    return *this = about(center, scaled);
}

AcGeMatrix3d& AcGeMatrix3d::setToMirroring(const AcGePoint3d& point) {
    return setToScaling(-1.0, point);
}

AcGeMatrix3d& AcGeMatrix3d::setToAlignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                               const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                               const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                               const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis) {
    AcGeMatrix3d from;
    AcGeMatrix3d to;
    from.setCoordSystem(fromOrigin, fromXAxis, fromYAxis, fromZAxis);
    to.setCoordSystem(toOrigin, toXAxis, toYAxis, toZAxis);
    return *this = to * from.inverse();
}

AcGeMatrix3d& AcGeMatrix3d::setToPlaneToWorld(const AcGeVector3d& normal) {
    const AcGeVector3d z = normal.normal();
    const AcGeVector3d x = z.perpVector();
    return setCoordSystem(AcGePoint3d::kOrigin, x, z.crossProduct(x), z);
}

AcGeMatrix3d& AcGeMatrix3d::setToWorldToPlane(const AcGeVector3d& normal) {
    // Turned axes: what undoes it is its transpose.
    return setToPlaneToWorld(normal).transposeIt();
}

bool AcGeMatrix3d::isEqualTo(const AcGeMatrix3d& other, const AcGeTol& tol) const {
    for (unsigned row = 0; row != 4; ++row) {
        for (unsigned col = 0; col != 4; ++col) {
            if (!(std::fabs(entry[row][col] - other.entry[row][col]) <= tol.equalVector()))
                return false;
        }
    }
    return true;
}
