// Splines: rational B-splines, which may have been made through points.
#pragma once

#include "dbcurve.h"
#include "gedblar.h"
#include "gept3dar.h"
#include "gevec3d.h"

#include <memory>

class AcDbImpSpline;

// A curve by control points, knots and weights; the parameter is that of the knots. Besides, it may have fit
// data: the points that it was made to go through, and the directions at its ends. A spline with fit data
// alone is the cubic curve through them whose knots are as far apart as the points; without directions it
// does not bend at its ends.
//
// An index that no point has answers eInvalidIndex.
class ACDB_PORT AcDbSpline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbSpline);
    AcDbSpline();
    // Through points. Of other orders than 4 (cubic) nothing is known: such a spline stays empty.
    explicit AcDbSpline(const AcGePoint3dArray& fitPoints, int order = 4, double fitTolerance = 0.0);
    AcDbSpline(const AcGePoint3dArray& fitPoints, const AcGeVector3d& startTangent,
               const AcGeVector3d& endTangent, int order = 4, double fitTolerance = 0.0);
    // See setNurbsData.
    AcDbSpline(int degree, bool rational, bool closed, bool periodic, const AcGePoint3dArray& controlPoints,
               const AcGeDoubleArray& knots, const AcGeDoubleArray& weights, double controlPtTol = 0.0,
               double knotTol = 0.0);
    ~AcDbSpline() override;

    bool isRational() const;
    bool isClosed() const override;
    bool isPeriodic() const override;
    int degree() const;

    int numControlPoints() const;
    Acad::ErrorStatus getControlPointAt(int index, AcGePoint3d& point) const;
    // Fit data, which would be wrong then, are taken away.
    Acad::ErrorStatus setControlPointAt(int index, const AcGePoint3d& point);
    // 1 where there are no weights, -1 for an index that no point has.
    double weightAt(int index) const;

    bool hasFitData() const;
    int numFitPoints() const;
    Acad::ErrorStatus getFitPointAt(int index, AcGePoint3d& point) const;
    double fitTolerance() const;
    // eNotApplicable when it has none.
    Acad::ErrorStatus getFitTangents(AcGeVector3d& startTangent, AcGeVector3d& endTangent) const;
    Acad::ErrorStatus getFitData(AcGePoint3dArray& fitPoints, int& degree, double& fitTolerance,
                                 bool& tangentsExist, AcGeVector3d& startTangent,
                                 AcGeVector3d& endTangent) const;
    // Makes it anew, through these points. eInvalidInput for fewer than two different points, another degree
    // than 3.
    Acad::ErrorStatus setFitData(const AcGePoint3dArray& fitPoints, int degree, double fitTolerance,
                                 const AcGeVector3d& startTangent, const AcGeVector3d& endTangent);
    Acad::ErrorStatus purgeFitData();

    Acad::ErrorStatus getNurbsData(int& degree, bool& rational, bool& closed, bool& periodic,
                                   AcGePoint3dArray& controlPoints, AcGeDoubleArray& knots,
                                   AcGeDoubleArray& weights, double& controlPtTol, double& knotTol) const;
    // Makes it anew, without fit data. eInvalidInput unless there are more points than the degree, points +
    // degree + 1 knots of which none is below the one before, and of a rational one as many weights above
    // nought.
    Acad::ErrorStatus setNurbsData(int degree, bool rational, bool closed, bool periodic,
                                   const AcGePoint3dArray& controlPoints, const AcGeDoubleArray& knots,
                                   const AcGeDoubleArray& weights, double controlPtTol = 0.0,
                                   double knotTol = 0.0);

    Acad::ErrorStatus reverseCurve() override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    const AcDbImpSpline& data() const;

    mutable std::unique_ptr<AcDbImpSpline> m_data;
};
