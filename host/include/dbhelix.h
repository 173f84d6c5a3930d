// Helices, which are drawn as the splines that they stand on.
#pragma once

#include "dbspline.h"

// A spline with the data that it was made of. Changes of the spline do not reach these; a transformation
// reaches both.
class ACDB_PORT AcDbHelix : public AcDbSpline {
public:
    ACRX_DECLARE_MEMBERS(AcDbHelix);
    AcDbHelix();

    AcGePoint3d axisPoint() const;
    AcGePoint3d startPoint() const;
    AcGeVector3d axisVector() const;
    // At the start, from the axis.
    double baseRadius() const;
    double turns() const;
    double turnHeight() const;
    double height() const { return turns() * turnHeight(); }
    // Whether it turns counter-clockwise as it goes up.
    Adesk::Boolean twist() const;

protected:
    // Other scales along the axes leave no helix: eCannotScaleNonUniformly.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
