#include "dbcurve.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbCurve, AcDbEntity)

AcDbCurve::AcDbCurve() = default;
AcDbCurve::~AcDbCurve() = default;

Acad::ErrorStatus AcDbCurve::getStartParam(double& /*param*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getEndParam(double& /*param*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getStartPoint(AcGePoint3d& point) const {
    double param = 0.0;
    const Acad::ErrorStatus status = getStartParam(param);
    return status == Acad::eOk ? getPointAtParam(param, point) : status;
}

Acad::ErrorStatus AcDbCurve::getEndPoint(AcGePoint3d& point) const {
    double param = 0.0;
    const Acad::ErrorStatus status = getEndParam(param);
    return status == Acad::eOk ? getPointAtParam(param, point) : status;
}

Acad::ErrorStatus AcDbCurve::getPointAtParam(double /*param*/, AcGePoint3d& /*point*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getParamAtPoint(const AcGePoint3d& /*point*/, double& /*param*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getDistAtParam(double /*param*/, double& /*dist*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getParamAtDist(double /*dist*/, double& /*param*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getPointAtDist(double dist, AcGePoint3d& point) const {
    double param = 0.0;
    const Acad::ErrorStatus status = getParamAtDist(dist, param);
    return status == Acad::eOk ? getPointAtParam(param, point) : status;
}

Acad::ErrorStatus AcDbCurve::getClosestPointTo(const AcGePoint3d& /*given*/, AcGePoint3d& /*point*/,
                                               bool /*extend*/) const {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbCurve::getArea(double& /*area*/) const {
    return Acad::eNotApplicable;
}
