#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/plain_figures.h"
#include "host/db/entities/imp_curve.h"

#include <cmath>
#include <numbers>

namespace {

// An arc is a circle with two angles more.
constexpr db::field arc_fields[] = {db::angle(50, "0.0"), db::angle(51, "0.0")};
constexpr auto arc_place = db::section_of<arc_fields>("AcDbArc");

constexpr double full = 2.0 * std::numbers::pi;

double in_one_turn(double angle) {
    const double turned = std::fmod(angle, full);
    return turned < 0.0 ? turned + full : turned;
}

} // namespace

ENTITY_CLASS(AcDbArc, AcDbCurve, ARC, db::circle_place, arc_place)

AcDbArc::AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle)
    : AcDbArc(center, AcGeVector3d::kZAxis, radius, startAngle, endAngle) {
}

AcDbArc::AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
                 double endAngle)
    : AcDbArc() {
    setNormal(normal);
    setCenter(center);
    setRadius(radius);
    setStartAngle(startAngle);
    setEndAngle(endAngle);
}

VALUE_GETTER(AcDbArc, center,
             AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), db::circle_place, 10))

Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
    assertWriteEnabled();
    db::write_point(imp(), db::circle_place, 10, AcGeMatrix3d::worldToPlane(normal()) * center);
    return Acad::eOk;
}

FIELD_MEMBERS(AcDbArc, radius, setRadius, db::circle_place, 40)
VALUE_GETTER(AcDbArc, startAngle, in_one_turn(db::radians(db::read_real(imp(), arc_place, 50))))

Acad::ErrorStatus AcDbArc::setStartAngle(double angle) {
    assertWriteEnabled();
    if (angle != startAngle())
        db::write_real(imp(), arc_place, 50, db::degrees(in_one_turn(angle)));
    return Acad::eOk;
}

VALUE_GETTER(AcDbArc, endAngle, in_one_turn(db::radians(db::read_real(imp(), arc_place, 51))))

Acad::ErrorStatus AcDbArc::setEndAngle(double angle) {
    assertWriteEnabled();
    if (angle != endAngle())
        db::write_real(imp(), arc_place, 51, db::degrees(in_one_turn(angle)));
    return Acad::eOk;
}

// Equal angles are a whole turn, as in 0 and 360 degrees.
double AcDbArc::totalAngle() const {
    const double sweep = in_one_turn(endAngle() - startAngle());
    return sweep < 1e-12 ? full : sweep;
}

double AcDbArc::length() const {
    return radius() * totalAngle();
}

FIELD_MEMBERS(AcDbArc, thickness, setThickness, db::circle_place, 39)

// The normal may stand in either section: programs differ.
AcGeVector3d AcDbArc::normal() const {
    assertReadEnabled();
    const bool behind = imp().groups().find(arc_place, 210) != dxf::group_list::npos;
    return db::read_normal(imp(), behind ? arc_place : db::circle_place);
}

Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    const AcGePoint3d kept = center();
    const bool behind = imp().groups().find(arc_place, 210) != dxf::group_list::npos;
    db::write_normal(imp(), behind ? arc_place : db::circle_place, normal.normal());
    return setCenter(kept);
}

bool AcDbArc::subMakePieces(AcDbImpCurve& pieces) const {
    const AcGeMatrix3d to_world = AcGeMatrix3d::planeToWorld(normal());
    const double start = startAngle();
    const double sweep = totalAngle();
    pieces.add_arc({center(), to_world * (AcGeVector3d::kXAxis * radius()),
                    to_world * (AcGeVector3d::kYAxis * radius()), start, sweep},
                   start, start + sweep);
    return true;
}

PLANE_FIGURE(AcDbArc)

Adesk::Boolean AcDbArc::subWorldDraw(AcGiWorldDraw* draw) {
    const double start = startAngle();
    const AcGeVector3d towards =
        AcGeMatrix3d::planeToWorld(normal()) * AcGeVector3d(std::cos(start), std::sin(start), 0.0);
    draw->subEntityTraits().setThickness(thickness());
    draw->geometry().circularArc(center(), radius(), normal(), towards, totalAngle());
    return true;
}

Acad::ErrorStatus AcDbArc::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(normal(), matrix, change))
        return Acad::eCannotScaleNonUniformly;
    const AcGePoint3d moved = matrix * center();
    const double first = change.turned(startAngle());
    const double second = change.turned(endAngle());
    setThickness(thickness() * (matrix * normal()).length());
    setRadius(radius() * change.scale);
    setNormal(change.normal);
    setCenter(moved);
    setStartAngle(change.mirrored ? second : first);
    return setEndAngle(change.mirrored ? first : second);
}
