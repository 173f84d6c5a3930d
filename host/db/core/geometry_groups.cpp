#include "host/db/core/geometry_groups.h"

#include "base/number_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace db {

namespace {

constexpr double last_digits = 1e-12;

} // namespace

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

namespace {

// A point among groups that hold many: its coordinates, and where they stand.
struct point_at {
    AcGePoint3d point;
    std::size_t at[3] = {dxf::group_list::npos, dxf::group_list::npos, dxf::group_list::npos};
};

// The point whose x is the group at an index: y and z are looked for up to the next x.
point_at read_point_at(const dxf::group_list& groups, std::size_t x, std::size_t last) {
    const int code = groups.groups()[x].code;
    point_at found;
    for (std::size_t i = x; i < last; ++i) {
        const int above = groups.groups()[i].code - code;
        if (above == 0 && i != x)
            break;
        if (above != 0 && above != 10 && above != 20)
            continue;
        const auto axis = static_cast<unsigned>(above / 10);
        if (found.at[axis] != dxf::group_list::npos)
            break;
        found.at[axis] = i;
        found.point[axis] = dxf::leading_real(groups.groups()[i].value).value_or(0.0);
        if (axis == 2)
            break;
    }
    return found;
}

} // namespace

std::vector<AcGePoint3d> read_points(const AcDbImpObject& object, const dxf::group_place& place, int code) {
    const dxf::group_list& groups = object.groups();
    std::vector<AcGePoint3d> found;
    const auto [first, last] = groups.extent(place);
    for (std::size_t i = first; i < last; ++i)
        if (groups.groups()[i].code == code)
            found.push_back(read_point_at(groups, i, last).point);
    return found;
}

void change_points(AcDbImpObject& object, const dxf::group_place& place, int code,
                   const std::function<AcGePoint3d(const AcGePoint3d&)>& change) {
    dxf::group_list& groups = object.edit();
    auto [first, last] = groups.extent(place);
    for (std::size_t i = first; i < last; ++i) {
        if (groups.groups()[i].code != code)
            continue;
        const point_at old = read_point_at(groups, i, last);
        const AcGePoint3d changed = change(old.point);
        std::size_t behind = i;
        for (unsigned axis = 0; axis < 3; ++axis) {
            if (old.at[axis] != dxf::group_list::npos) {
                groups.set_real_at(old.at[axis], changed[axis]);
                behind = old.at[axis];
            } else if (changed[axis] != 0.0) {
                const dxf::group_list::fresh_group added[] = {
                    {code + 10 * static_cast<int>(axis), base::real_text(changed[axis])}};
                groups.splice(behind + 1, behind + 1, added);
                ++behind;
                ++last;
            }
        }
    }
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

void write_near(AcDbImpObject& object, const dxf::group_place& place, int code, double value,
                double missing) {
    const double before = read_real(object, place, code, missing);
    if (!(std::fabs(before - value) <= last_digits * std::max(1.0, std::fabs(before))))
        write_real(object, place, code, value, missing);
}

double radians(double degrees) {
    return degrees * std::numbers::pi / 180.0;
}

double degrees(double radians) {
    return radians * 180.0 / std::numbers::pi;
}

double in_one_turn(double angle) {
    constexpr double full = 2.0 * std::numbers::pi;
    const double turned = std::fmod(angle, full);
    return turned < 0.0 ? turned + full : turned;
}

void write_angle(AcDbImpObject& object, const dxf::group_place& place, int code, double angle) {
    const double before = radians(read_real(object, place, code));
    if (!(std::fabs(std::remainder(before - angle, 2.0 * std::numbers::pi)) <= last_digits))
        write_real(object, place, code, degrees(in_one_turn(angle)));
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
    return length != 0.0 && std::fabs(y.length() - length) <= slack * length &&
           std::fabs(x.dotProduct(y)) <= slack * length * length && change_any_plane(normal, matrix, change);
}

bool change_any_plane(const AcGeVector3d& normal, const AcGeMatrix3d& matrix, plane_change& change) {
    const AcGeMatrix3d from_plane = AcGeMatrix3d::planeToWorld(normal);
    const AcGeVector3d x = matrix * (from_plane * AcGeVector3d::kXAxis);
    const AcGeVector3d y = matrix * (from_plane * AcGeVector3d::kYAxis);
    const double area = x.crossProduct(y).length();
    if (!(area > 1e-12 * x.length() * y.length()))
        return false;
    // The normal keeps to the side on which the old one's image is; a mirror in the plane turns angles.
    change.normal = x.crossProduct(y) / area;
    const AcGeVector3d image = matrix * normal;
    change.mirrored = change.normal.dotProduct(image) < 0.0;
    if (change.mirrored)
        change.normal = -change.normal;
    change.scale = x.length();
    change.plane_to_plane = AcGeMatrix3d::worldToPlane(change.normal) * matrix * from_plane;
    return true;
}

} // namespace db
