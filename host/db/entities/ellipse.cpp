#include "acgi.h"
#include "dbelipse.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double full = 2.0 * std::numbers::pi;
constexpr db::field ellipse_fields[] = {
    db::point(10, "0.0"),  db::point(11, "1.0 0.0 0.0"),
    db::normal(),          db::number(40, "1.0").or_else(1.0),
    db::number(41, "0.0"), db::number(42, "6.283185307179586").or_else(full),
};
constexpr auto ellipse_place = db::section_of<ellipse_fields>("AcDbEllipse");

constexpr double least_ratio = 1e-6; // the editor's own limit

double start_param(const AcDbImpObject& object) {
    return db::read_real(object, ellipse_place, 41);
}

// The parameter of the end is made to lie above that of the start, a whole turn when they are the same.
double end_param(const AcDbImpObject& object) {
    const double start = start_param(object);
    const double sweep = std::fmod(db::read_real(object, ellipse_place, 42, full) - start, full);
    if (!std::isfinite(sweep))
        return start + full;
    return start + (sweep > 1e-12 ? sweep : sweep + full);
}

gi::arc read_arc(const AcDbEllipse& ellipse) {
    const double start = start_param(ellipse.imp());
    return {ellipse.center(), ellipse.majorAxis(), ellipse.minorAxis(), start,
            end_param(ellipse.imp()) - start};
}

// The angle to the parameter and the other way round: the one stretches across the major axis what the other
// presses together. Both are in the same quarter of the same turn.
double stretched(double angle, double ratio) {
    const double quarters = angle / (full / 4.0);
    if (std::fabs(quarters - std::round(quarters)) < 1e-15)
        return angle;
    const double turns = std::floor(angle / full + 0.5) * full;
    return turns + std::atan2(std::sin(angle), std::cos(angle) * ratio);
}

} // namespace

ENTITY_CLASS(AcDbEllipse, AcDbCurve, ELLIPSE, ellipse_place)

AcDbEllipse::AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                         const AcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                         double endAngle)
    : AcDbEllipse() {
    set(center, unitNormal, majorAxis, radiusRatio, startAngle, endAngle);
}

FIELD_MEMBERS(AcDbEllipse, center, setCenter, ellipse_place, 10)
FIELD_GETTER(AcDbEllipse, normal, ellipse_place, 210)
FIELD_GETTER(AcDbEllipse, majorAxis, ellipse_place, 11)

AcGeVector3d AcDbEllipse::minorAxis() const {
    return normal().crossProduct(majorAxis()) * radiusRatio();
}

double AcDbEllipse::majorRadius() const {
    return majorAxis().length();
}

double AcDbEllipse::minorRadius() const {
    return majorRadius() * radiusRatio();
}

VALUE_GETTER(AcDbEllipse, radiusRatio, std::fabs(db::read_real(imp(), ellipse_place, 40, 1.0)))

Acad::ErrorStatus AcDbEllipse::setRadiusRatio(double ratio) {
    assertWriteEnabled();
    if (!(ratio >= least_ratio && ratio <= 1.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), ellipse_place, 40, ratio, 1.0);
    return Acad::eOk;
}

FIELD_SETTER(AcDbEllipse, setStartParam, ellipse_place, 41)
FIELD_SETTER(AcDbEllipse, setEndParam, ellipse_place, 42)
VALUE_GETTER(AcDbEllipse, startAngle, angleAtParam(start_param(imp())))

Acad::ErrorStatus AcDbEllipse::setStartAngle(double startAngle) {
    return setStartParam(paramAtAngle(startAngle));
}

VALUE_GETTER(AcDbEllipse, endAngle, angleAtParam(end_param(imp())))

Acad::ErrorStatus AcDbEllipse::setEndAngle(double endAngle) {
    return setEndParam(paramAtAngle(endAngle));
}

double AcDbEllipse::paramAtAngle(double angle) const {
    return stretched(angle, radiusRatio());
}

double AcDbEllipse::angleAtParam(double param) const {
    return stretched(param, 1.0 / std::max(radiusRatio(), least_ratio));
}

void AcDbEllipse::get(AcGePoint3d& center, AcGeVector3d& unitNormal, AcGeVector3d& majorAxis,
                      double& radiusRatio, double& startAngle, double& endAngle) const {
    center = this->center();
    unitNormal = normal();
    majorAxis = this->majorAxis();
    radiusRatio = this->radiusRatio();
    startAngle = this->startAngle();
    endAngle = this->endAngle();
}

Acad::ErrorStatus AcDbEllipse::set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                                   const AcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                                   double endAngle) {
    assertWriteEnabled();
    constexpr double slack = 1e-6;
    if (majorAxis.isZeroLength() || unitNormal.isZeroLength() ||
        std::fabs(majorAxis.normal().dotProduct(unitNormal.normal())) > slack)
        return Acad::eInvalidInput;
    if (const Acad::ErrorStatus status = setRadiusRatio(radiusRatio); status != Acad::eOk)
        return status;
    setCenter(center);
    db::write_normal(imp(), ellipse_place, unitNormal.normal());
    db::write_point(imp(), ellipse_place, 11, AcGePoint3d::kOrigin + majorAxis);
    setStartAngle(startAngle);
    return setEndAngle(endAngle);
}

VALUE_GETTER(AcDbEllipse, isClosed, read_arc(*this).is_whole())

PLANE_FIGURE(AcDbEllipse)

bool AcDbEllipse::subMakePieces(AcDbImpCurve& pieces) const {
    const gi::arc arc = read_arc(*this);
    pieces.add_arc(arc, arc.start, arc.start + arc.sweep);
    return true;
}

// The image of the unit circle.
Adesk::Boolean AcDbEllipse::subWorldDraw(AcGiWorldDraw* draw) {
    const gi::arc arc = read_arc(*this);
    AcGeMatrix3d from_circle;
    from_circle.setCoordSystem(arc.center, arc.u, arc.v, normal());
    draw->geometry().pushModelTransform(from_circle);
    draw->geometry().circularArc(AcGePoint3d::kOrigin, 1.0, AcGeVector3d::kZAxis,
                                 {std::cos(arc.start), std::sin(arc.start), 0.0}, arc.sweep);
    draw->geometry().popModelTransform();
    return true;
}

// What becomes of the axes are two radii whose tangents are parallel to each other; the axes of the new
// ellipse lie a certain parameter further on.
Acad::ErrorStatus AcDbEllipse::subTransformBy(const AcGeMatrix3d& matrix) {
    const gi::arc arc = read_arc(*this);
    const AcGeVector3d u = matrix * arc.u;
    const AcGeVector3d v = matrix * arc.v;
    constexpr double slack = 1e-12;
    const bool still_axes = std::fabs(u.dotProduct(v)) <= slack * u.length() * v.length() &&
                            u.length() >= v.length() * (1.0 - slack);
    const double turn =
        still_axes ? 0.0 : 0.5 * std::atan2(2.0 * u.dotProduct(v), u.lengthSqrd() - v.lengthSqrd());
    const AcGeVector3d major = u * std::cos(turn) + v * std::sin(turn);
    const AcGeVector3d minor = v * std::cos(turn) - u * std::sin(turn);
    const double ratio = std::min(1.0, minor.length() / major.length());
    if (!(ratio >= least_ratio))
        return Acad::eDegenerateGeometry;
    AcGeVector3d up = major.crossProduct(minor).normal();
    double start = arc.start - turn;
    double end = start + arc.sweep;
    const bool behind = up.dotProduct(matrix * normal()) < 0.0;
    if (behind) { // seen from there the parameter runs the other way
        up = -up;
        std::swap(start, end);
        start = -start;
        end = -end;
    }
    db::write_point(imp(), ellipse_place, 10, matrix * arc.center);
    db::write_point(imp(), ellipse_place, 11, AcGePoint3d::kOrigin + major);
    db::write_normal(imp(), ellipse_place, up);
    if (std::fabs(ratio - radiusRatio()) > slack)
        setRadiusRatio(ratio);
    if (arc.is_whole() || (turn == 0.0 && !behind))
        return Acad::eOk; // a whole one may begin anywhere
    const double turns = std::floor(start / full) * full;
    setStartParam(start - turns);
    return setEndParam(end - turns);
}
