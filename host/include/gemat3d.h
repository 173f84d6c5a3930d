// Affine transformations of space.
#pragma once

#include "gepnt3d.h"
#include "gescl3d.h"
#include "gevec3d.h"

// A matrix of four rows and four columns that is multiplied with columns: the first three columns are what
// becomes of the axes, the last one what becomes of the origin. The last row is that of the identity.
class ACGE_PORT AcGeMatrix3d {
public:
    // The identity.
    constexpr AcGeMatrix3d() = default;

    static const AcGeMatrix3d kIdentity;

    AcGeMatrix3d& setToIdentity() { return *this = AcGeMatrix3d(); }

    // The product does what the right one does, then what the left one does.
    AcGeMatrix3d operator*(const AcGeMatrix3d& right) const;
    AcGeMatrix3d& operator*=(const AcGeMatrix3d& right) { return *this = *this * right; }
    AcGeMatrix3d& preMultBy(const AcGeMatrix3d& left) { return *this = left * *this; }
    AcGeMatrix3d& postMultBy(const AcGeMatrix3d& right) { return *this = *this * right; }
    AcGeMatrix3d& setToProduct(const AcGeMatrix3d& left, const AcGeMatrix3d& right) {
        return *this = left * right;
    }

    // What undoes the transformation; the identity when nothing can.
    AcGeMatrix3d inverse() const;
    // The same; false, and the matrix stays as it is, when the determinant is not above the tolerance.
    bool inverse(AcGeMatrix3d& inverted, double tol = 1e-10) const;
    AcGeMatrix3d& invert() { return *this = inverse(); }
    // Whether the images of the axes lie in one plane, at whatever scale.
    bool isSingular(const AcGeTol& tol = AcGeContext::gTol) const;
    AcGeMatrix3d transpose() const;
    AcGeMatrix3d& transposeIt() { return *this = transpose(); }
    double det() const;

    // The length of the longest of the three axes' images.
    double scale() const;
    // Whether right angles stay right, and whether all lengths grow alike besides.
    bool isScaledOrtho(const AcGeTol& tol = AcGeContext::gTol) const;
    bool isUniScaledOrtho(const AcGeTol& tol = AcGeContext::gTol) const;

    AcGeMatrix3d& setTranslation(const AcGeVector3d& vector);
    AcGeVector3d translation() const { return {entry[0][3], entry[1][3], entry[2][3]}; }
    // The images of origin and axes.
    AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                 const AcGeVector3d& yAxis, const AcGeVector3d& zAxis);
    void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                        AcGeVector3d& zAxis) const;

    // Makes the matrix one that moves, turns (by the right hand's rule), scales or mirrors, whatever it was.
    AcGeMatrix3d& setToTranslation(const AcGeVector3d& vector);
    AcGeMatrix3d& setToRotation(double angle, const AcGeVector3d& axis,
                                const AcGePoint3d& center = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToScaling(double factor, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToScaling(const AcGeScale3d& factors, const AcGePoint3d& center = AcGePoint3d::kOrigin);
    AcGeMatrix3d& setToMirroring(const AcGePoint3d& point);
    // One that brings the first coordinate system to where the second one is.
    AcGeMatrix3d& setToAlignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                     const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                     const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                     const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis);
    // Between the world and the plane through the origin with this normal, whose x axis the normal alone
    // decides (the arbitrary axis of drawing files).
    AcGeMatrix3d& setToPlaneToWorld(const AcGeVector3d& normal);
    AcGeMatrix3d& setToWorldToPlane(const AcGeVector3d& normal);

    static AcGeMatrix3d translation(const AcGeVector3d& vector) {
        return AcGeMatrix3d().setToTranslation(vector);
    }
    static AcGeMatrix3d rotation(double angle, const AcGeVector3d& axis,
                                 const AcGePoint3d& center = AcGePoint3d::kOrigin) {
        return AcGeMatrix3d().setToRotation(angle, axis, center);
    }
    static AcGeMatrix3d scaling(double factor, const AcGePoint3d& center = AcGePoint3d::kOrigin) {
        return AcGeMatrix3d().setToScaling(factor, center);
    }
    static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal) {
        return AcGeMatrix3d().setToPlaneToWorld(normal);
    }
    static AcGeMatrix3d worldToPlane(const AcGeVector3d& normal) {
        return AcGeMatrix3d().setToWorldToPlane(normal);
    }

    bool isEqualTo(const AcGeMatrix3d& other, const AcGeTol& tol = AcGeContext::gTol) const;
    bool operator==(const AcGeMatrix3d& other) const { return isEqualTo(other); }
    double operator()(unsigned row, unsigned column) const { return entry[row][column]; }
    double& operator()(unsigned row, unsigned column) { return entry[row][column]; }

    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}; // row, column
};
