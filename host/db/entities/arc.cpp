#include "acgi.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/entities/imp_curve.h"

#include <cmath>
#include <numbers>

ACRX_DXF_DEFINE_MEMBERS(AcDbArc, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, ARC,
                        "ObjectDBX Classes")

namespace {

// An arc is a circle with two angles more.
constexpr int circle_order[] = {39, 10, 20, 30, 40, 210, 220, 230};
constexpr dxf::group_place circle_place{"AcDbCircle", circle_order};
constexpr int arc_order[] = {50, 51};
constexpr dxf::group_place arc_place{"AcDbArc", arc_order};

constexpr double full = 2.0 * std::numbers::pi;

double in_one_turn(double angle) {
    const double turned = std::fmod(angle, full);
    return turned < 0.0 ? turned + full : turned;
}

} // namespace

AcDbArc::AcDbArc() {
    imp().begin_as("0\nARC\n100\nAcDbEntity\n8\n0\n100\nAcDbCircle\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n40\n0.0\n100\nAcDbArc\n50\n0.0\n51\n0.0\n");
}

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

AcDbArc::~AcDbArc() = default;

AcGePoint3d AcDbArc::center() const {
    assertReadEnabled();
    return AcGeMatrix3d::planeToWorld(normal()) * db::read_point(imp(), circle_place, 10);
}

Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
    assertWriteEnabled();
    db::write_point(imp(), circle_place, 10, AcGeMatrix3d::worldToPlane(normal()) * center);
    return Acad::eOk;
}

double AcDbArc::radius() const {
    assertReadEnabled();
    return db::read_real(imp(), circle_place, 40);
}

Acad::ErrorStatus AcDbArc::setRadius(double radius) {
    assertWriteEnabled();
    if (!(radius >= 0.0))
        return Acad::eInvalidInput;
    db::write_real(imp(), circle_place, 40, radius);
    return Acad::eOk;
}

double AcDbArc::startAngle() const {
    assertReadEnabled();
    return in_one_turn(db::radians(db::read_real(imp(), arc_place, 50)));
}

Acad::ErrorStatus AcDbArc::setStartAngle(double angle) {
    assertWriteEnabled();
    if (angle != startAngle())
        db::write_real(imp(), arc_place, 50, db::degrees(in_one_turn(angle)));
    return Acad::eOk;
}

double AcDbArc::endAngle() const {
    assertReadEnabled();
    return in_one_turn(db::radians(db::read_real(imp(), arc_place, 51)));
}

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

double AcDbArc::thickness() const {
    assertReadEnabled();
    return db::read_real(imp(), circle_place, 39);
}

Acad::ErrorStatus AcDbArc::setThickness(double thickness) {
    assertWriteEnabled();
    db::write_real(imp(), circle_place, 39, thickness);
    return Acad::eOk;
}

// The normal may stand in either section: programs differ.
AcGeVector3d AcDbArc::normal() const {
    assertReadEnabled();
    const bool behind = imp().groups().find(arc_place, 210) != dxf::group_list::npos;
    return db::read_normal(imp(), behind ? arc_place : circle_place);
}

Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    const AcGePoint3d kept = center();
    const bool behind = imp().groups().find(arc_place, 210) != dxf::group_list::npos;
    db::write_normal(imp(), behind ? arc_place : circle_place, normal.normal());
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

void AcDbArc::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToPlaneToWorld(normal());
}

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
