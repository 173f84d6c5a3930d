#include "dbcurve.h"

#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/entities/imp_curve.h"

#include <algorithm>
#include <cmath>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbCurve, AcDbEntity)

AcDbCurve::AcDbCurve() = default;
AcDbCurve::~AcDbCurve() = default;

namespace {

// How far a point may be from a curve that it is said to be on.
double slack_at(const AcGePoint3d& point) {
    constexpr double relative = 1e-9;
    return relative * std::max({1.0, std::fabs(point.x), std::fabs(point.y), std::fabs(point.z)});
}

} // namespace

bool AcDbCurve::subMakePieces(AcDbImpCurve& /*pieces*/) const {
    return false;
}

// The pieces are kept until the curve changes: who asks along a curve asks often.
Acad::ErrorStatus AcDbCurve::pieces(const AcDbImpCurve*& made) const {
    assertReadEnabled();
    const AcDbImpObject& self = imp();
    const std::size_t journal = self.database != nullptr ? self.database->records().journal().size() : 0;
    const bool stand = m_pieces && m_pieces->revision == self.revision() &&
                       (!m_pieces->reads_parts || (self.database != nullptr && m_pieces->journal == journal));
    if (!stand) {
        m_pieces = std::make_unique<AcDbImpCurve>();
        if (!subMakePieces(*m_pieces)) {
            m_pieces.reset();
            return Acad::eNotImplementedYet;
        }
        m_pieces->revision = self.revision();
        m_pieces->journal = journal;
    }
    made = m_pieces.get();
    return made->is_empty() ? Acad::eDegenerateGeometry : Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getStartParam(double& param) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (std::isinf(curve->first()))
        return Acad::eNotApplicable;
    param = curve->first();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getEndParam(double& param) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (std::isinf(curve->last()))
        return Acad::eNotApplicable;
    param = curve->last();
    return Acad::eOk;
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

Acad::ErrorStatus AcDbCurve::getPointAtParam(double param, AcGePoint3d& point) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (!curve->has(param))
        return Acad::eInvalidInput;
    point = curve->at(param);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getParamAtPoint(const AcGePoint3d& point, double& param) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    const double nearest = curve->nearest(point, false);
    if (!(curve->at(nearest).distanceTo(point) <= slack_at(point)))
        return Acad::eInvalidInput;
    param = nearest;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getDistAtParam(double param, double& dist) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (std::isinf(curve->first()))
        return Acad::eNotApplicable;
    if (!(param >= curve->first() && param <= curve->last()))
        return Acad::eInvalidInput;
    dist = curve->length_to(param);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getParamAtDist(double dist, double& param) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (std::isinf(curve->first()))
        return Acad::eNotApplicable;
    const double whole = curve->length();
    if (!(dist >= 0.0 && dist <= whole * (1.0 + 1e-12)))
        return Acad::eInvalidInput;
    param = curve->param_at_length(dist);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getDistAtPoint(const AcGePoint3d& point, double& dist) const {
    double param = 0.0;
    const Acad::ErrorStatus status = getParamAtPoint(point, param);
    return status == Acad::eOk ? getDistAtParam(param, dist) : status;
}

Acad::ErrorStatus AcDbCurve::getPointAtDist(double dist, AcGePoint3d& point) const {
    double param = 0.0;
    const Acad::ErrorStatus status = getParamAtDist(dist, param);
    return status == Acad::eOk ? getPointAtParam(param, point) : status;
}

Acad::ErrorStatus AcDbCurve::getFirstDeriv(double param, AcGeVector3d& derivative) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (!curve->has(param))
        return Acad::eInvalidInput;
    derivative = curve->slope(param);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getFirstDeriv(const AcGePoint3d& point, AcGeVector3d& derivative) const {
    double param = 0.0;
    const Acad::ErrorStatus status = getParamAtPoint(point, param);
    return status == Acad::eOk ? getFirstDeriv(param, derivative) : status;
}

Acad::ErrorStatus AcDbCurve::getClosestPointTo(const AcGePoint3d& given, AcGePoint3d& point,
                                               bool extend) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    point = curve->at(curve->nearest(given, extend));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::getArea(double& area) const {
    const AcDbImpCurve* curve = nullptr;
    if (const Acad::ErrorStatus status = pieces(curve); status != Acad::eOk)
        return status;
    if (std::isinf(curve->last()))
        return Acad::eNotApplicable;
    area = curve->area();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCurve::reverseCurve() {
    return Acad::eNotImplementedYet;
}
