// What all curves share: ends, length, points along them.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"

// Curves are parametrized as their class says: a line by its length, a circle or an arc by its angle, a
// polyline by its vertices.
class ACDB_PORT AcDbCurve : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbCurve);
    ~AcDbCurve() override;

    virtual bool isClosed() const { return false; }
    virtual bool isPeriodic() const { return isClosed(); }
    // What a class does not have answers eNotApplicable, what it does not know yet eNotImplementedYet.
    virtual Acad::ErrorStatus getStartParam(double& param) const;
    virtual Acad::ErrorStatus getEndParam(double& param) const;
    virtual Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const;
    virtual Acad::ErrorStatus getParamAtPoint(const AcGePoint3d& point, double& param) const;
    virtual Acad::ErrorStatus getDistAtParam(double param, double& dist) const;
    virtual Acad::ErrorStatus getParamAtDist(double dist, double& param) const;
    virtual Acad::ErrorStatus getPointAtDist(double dist, AcGePoint3d& point) const;
    // The point of the curve that is nearest to a point of the world.
    virtual Acad::ErrorStatus getClosestPointTo(const AcGePoint3d& given, AcGePoint3d& point,
                                                bool extend = false) const;
    virtual Acad::ErrorStatus getArea(double& area) const;

protected:
    AcDbCurve();
};
