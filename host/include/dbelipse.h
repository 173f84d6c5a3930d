// Ellipses and their arcs.
#pragma once

#include "dbcurve.h"
#include "gepnt3d.h"
#include "gevec3d.h"

// center + major axis * cos t + minor axis * sin t: t is the parameter, from the one of the start to the one
// of the end. The angle of a point is that between the major axis and the line to it; only on the axes are
// the two the same. All in coordinates of the world.
class ACDB_PORT AcDbEllipse : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbEllipse);
    AcDbEllipse();
    AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal, const AcGeVector3d& majorAxis,
                double radiusRatio, double startAngle = 0.0, double endAngle = 6.28318530717958647692);

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    AcGeVector3d normal() const;
    // From the center to the end of the longer axis; the minor axis stands at a right angle to it, to the
    // left seen against the normal.
    AcGeVector3d majorAxis() const;
    AcGeVector3d minorAxis() const;
    double majorRadius() const;
    double minorRadius() const;
    // The minor axis by the major one, above nought and not above 1: else eInvalidInput.
    double radiusRatio() const;
    Acad::ErrorStatus setRadiusRatio(double ratio);

    // Parameters from 0 to 2 pi; the one of the end is above that of the start.
    Acad::ErrorStatus setStartParam(double startParam);
    Acad::ErrorStatus setEndParam(double endParam);
    double startAngle() const;
    Acad::ErrorStatus setStartAngle(double startAngle);
    double endAngle() const;
    Acad::ErrorStatus setEndAngle(double endAngle);
    double paramAtAngle(double angle) const;
    double angleAtParam(double param) const;

    void get(AcGePoint3d& center, AcGeVector3d& unitNormal, AcGeVector3d& majorAxis, double& radiusRatio,
             double& startAngle, double& endAngle) const;
    // eInvalidInput for a major axis without length, or one that is not in the plane, and as setRadiusRatio.
    Acad::ErrorStatus set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                          const AcGeVector3d& majorAxis, double radiusRatio, double startAngle = 0.0,
                          double endAngle = 6.28318530717958647692);

    bool isClosed() const override;
    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // Any transformation; eDegenerateGeometry for one that leaves no ellipse.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
