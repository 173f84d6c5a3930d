// What all curves share: ends, length, points along them.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"

#include <memory>

class AcDbImpCurve;

// Curves are parametrized as their class says: a line by its length, a circle or an arc by its angle, a
// polyline by its vertices, an ellipse by the angle of the circle that it is the image of, a spline by its
// knots.
//
// What a class does not have answers eNotApplicable, what it does not know yet eNotImplementedYet; a
// parameter or a length that the curve does not have, and a point that is not on it, eInvalidInput; a curve
// whose data say nothing (a polyline without vertices) eDegenerateGeometry.
class ACDB_PORT AcDbCurve : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbCurve);
    ~AcDbCurve() override;

    virtual bool isClosed() const { return false; }
    virtual bool isPeriodic() const { return isClosed(); }
    virtual Acad::ErrorStatus getStartParam(double& param) const;
    // eNotApplicable for what has no end.
    virtual Acad::ErrorStatus getEndParam(double& param) const;
    virtual Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getParamAtPoint(const AcGePoint3d& point, double& param) const;
    // Along the curve, from its start. Exact on lines and arcs of circles; on other curves reckoned to twelve
    // figures.
    virtual Acad::ErrorStatus getDistAtParam(double param, double& dist) const;
    virtual Acad::ErrorStatus getParamAtDist(double dist, double& param) const;
    virtual Acad::ErrorStatus getDistAtPoint(const AcGePoint3d& point, double& dist) const;
    virtual Acad::ErrorStatus getPointAtDist(double dist, AcGePoint3d& point) const;
    // By the parameter.
    virtual Acad::ErrorStatus getFirstDeriv(double param, AcGeVector3d& derivative) const;
    virtual Acad::ErrorStatus getFirstDeriv(const AcGePoint3d& point, AcGeVector3d& derivative) const;
    // The point of the curve that is nearest to a point of the world. Lines, arcs and circles are taken to go
    // on behind their ends when `extend` is true, others are not.
    virtual Acad::ErrorStatus getClosestPointTo(const AcGePoint3d& given, AcGePoint3d& point,
                                                bool extend = false) const;
    // Of the figure between the curve and the line that joins its ends; of a curve that lies in no plane the
    // largest that any view of it shows.
    virtual Acad::ErrorStatus getArea(double& area) const;
    // The same curve from its end to its start. eNotImplementedYet from kinds that do not say how.
    virtual Acad::ErrorStatus reverseCurve();

protected:
    AcDbCurve();
    // The host's side: adds the pieces that the curve is made of. A class of an application has none, says
    // false, and overrides the members above.
    virtual bool subMakePieces(AcDbImpCurve& pieces) const;

private:
    Acad::ErrorStatus pieces(const AcDbImpCurve*& made) const;

    mutable std::unique_ptr<AcDbImpCurve> m_pieces;
};
