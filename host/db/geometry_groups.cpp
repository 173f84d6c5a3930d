#include "host/db/geometry_groups.h"

#include <cmath>
#include <numbers>

namespace db {

AcGePoint3d read_point(const AcDbImpObject& object, const dxf::group_place& place, int code) {
    const dxf::group_list& groups = object.groups();
    return {groups.real(place, code).value_or(0.0), groups.real(place, code + 10).value_or(0.0),
            groups.real(place, code + 20).value_or(0.0)};
}

void write_point(AcDbImpObject& object, const dxf::group_place& place, int code, const AcGePoint3d& point) {
    dxf::group_list& groups = object.edit();
    groups.set_real(place, code, point.x);
    groups.set_real(place, code + 10, point.y);
    if (point.z != 0.0 || groups.find(place, code + 20) != dxf::group_list::npos)
        groups.set_real(place, code + 20, point.z);
}

AcGeVector3d read_normal(const AcDbImpObject& object, const dxf::group_place& place) {
    const dxf::group_list& groups = object.groups();
    if (groups.find(place, 210) == dxf::group_list::npos)
        return AcGeVector3d::kZAxis;
    const AcGeVector3d normal = read_point(object, place, 210).asVector();
    return normal.isZeroLength() ? AcGeVector3d::kZAxis : normal.normal();
}

void write_normal(AcDbImpObject& object, const dxf::group_place& place, const AcGeVector3d& normal) {
    if (read_normal(object, place) == normal)
        return;
    dxf::group_list& groups = object.edit();
    groups.set_real(place, 210, normal.x);
    groups.set_real(place, 220, normal.y);
    groups.set_real(place, 230, normal.z);
}

double read_real(const AcDbImpObject& object, const dxf::group_place& place, int code, double missing) {
    return object.groups().real(place, code).value_or(missing);
}

void write_real(AcDbImpObject& object, const dxf::group_place& place, int code, double value,
                double missing) {
    if (read_real(object, place, code, missing) != value)
        object.edit().set_real(place, code, value);
}

int read_integer(const AcDbImpObject& object, const dxf::group_place& place, int code, int missing) {
    return static_cast<int>(object.groups().integer(place, code).value_or(missing));
}

void write_integer(AcDbImpObject& object, const dxf::group_place& place, int code, int value, int missing) {
    if (read_integer(object, place, code, missing) != value)
        object.edit().set_integer(place, code, value);
}

double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

double degrees(double radians) {
    return radians * 180.0 / std::numbers::pi;
}

double plane_change::turned(double angle) const {
    const AcGeVector3d direction = plane_to_plane * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0);
    const double turned = std::atan2(direction.y, direction.x);
    return turned < 0.0 ? turned + 2.0 * std::numbers::pi : turned;
}

bool change_plane(const AcGeVector3d& normal, const AcGeMatrix3d& matrix, plane_change& change) {
    const AcGeMatrix3d from_plane = AcGeMatrix3d::planeToWorld(normal);
    const AcGeVector3d x = matrix * (from_plane * AcGeVector3d::kXAxis);
    const AcGeVector3d y = matrix * (from_plane * AcGeVector3d::kYAxis);
    constexpr double slack = 1e-6; // of the length: what scales that were written with six digits leave
    const double length = x.length();
    if (length == 0.0 || std::fabs(y.length() - length) > slack * length ||
        std::fabs(x.dotProduct(y)) > slack * length * length)
        return false;
    // The normal keeps to the side on which the old one's image is; a mirror in the plane turns angles.
    change.normal = x.crossProduct(y).normal();
    const AcGeVector3d image = matrix * normal;
    change.mirrored = change.normal.dotProduct(image) < 0.0;
    if (change.mirrored)
        change.normal = -change.normal;
    change.scale = length;
    change.plane_to_plane =
        AcGeMatrix3d::worldToPlane(change.normal) * matrix * AcGeMatrix3d::planeToWorld(normal);
    return true;
}

} // namespace db
