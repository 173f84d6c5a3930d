#include "host/db/entities/block_reference_groups.h"

#include "host/db/core/first_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <numbers>

namespace db {

const section& place_of(const AcDbImpObject& object) {
    for (const dxf::group& group : object.groups().groups())
        if (group.code == 100 && dxf::trimmed(group.value) == array_place.marker)
            return array_place;
    return plain_place;
}

reference_groups::reference_groups(const AcDbImpObject& object) {
    const first_groups groups(object.groups());
    name = groups.text(2);
    position = groups.point(10);
    scale = {groups.real(41, 1.0), groups.real(42, 1.0), groups.real(43, 1.0)};
    rotation = radians(groups.real(50));
    normal = groups.normal();
    constexpr int most = 32767;
    columns = std::clamp(groups.integer(70, 1), 1, most);
    rows = std::clamp(groups.integer(71, 1), 1, most);
    column_spacing = groups.real(44);
    row_spacing = groups.real(45);
}

void write_rotation(AcDbImpObject& object, double angle) {
    write_angle(object, place_of(object), 50, angle);
}

void write_position(AcDbImpObject& object, const AcGePoint3d& in_plane) {
    const AcGePoint3d before = reference_groups(object).position;
    constexpr double little = 1e-12;
    if ((before - in_plane).length() > little * std::max(1.0, before.asVector().length()))
        write_point(object, place_of(object), 10, in_plane);
}

bool write_placing(AcDbImpObject& object, const AcGeMatrix3d& placing) {
    AcGePoint3d origin;
    AcGeVector3d x;
    AcGeVector3d y;
    AcGeVector3d z;
    placing.getCoordSystem(origin, x, y, z);
    const auto skew = [](const AcGeVector3d& a, const AcGeVector3d& b) {
        constexpr double slack = 1e-6; // what numbers that were written with six digits leave
        return !(std::fabs(a.dotProduct(b)) <= slack * a.length() * b.length());
    };
    if (x.length() == 0.0 || y.length() == 0.0 || z.length() == 0.0 || skew(x, y) || skew(y, z) || skew(z, x))
        return false;
    const reference_groups before(object);
    const AcGeVector3d normal = (before.scale.sz < 0.0 ? -z : z) / z.length();
    const AcGeMatrix3d to_plane = AcGeMatrix3d::worldToPlane(normal);
    // One of the two other signs is free: of the two ways the one that turns less.
    const auto angle_of = [&](bool negative) {
        const AcGeVector3d flat = to_plane * (negative ? -x : x);
        return std::atan2(flat.y, flat.x);
    };
    const auto turn = [&](bool negative) {
        return std::fabs(std::remainder(angle_of(negative) - before.rotation, 2.0 * std::numbers::pi));
    };
    bool x_negative = before.scale.sx < 0.0;
    const bool mirrored = (x.crossProduct(y).dotProduct(z) < 0.0) !=
                          (before.scale.sx * before.scale.sy * before.scale.sz < 0.0);
    constexpr double little = 1e-9;
    if (mirrored && turn(!x_negative) + little < turn(x_negative))
        x_negative = !x_negative;
    const AcGeVector3d direction = (x_negative ? -x : x) / x.length();
    const bool y_negative = normal.crossProduct(direction).dotProduct(y) < 0.0;
    write_normal(object, place_of(object), normal);
    write_position(object, to_plane * origin);
    write_near(object, place_of(object), 41, x_negative ? -x.length() : x.length(), 1.0);
    write_near(object, place_of(object), 42, y_negative ? -y.length() : y.length(), 1.0);
    write_near(object, place_of(object), 43, before.scale.sz < 0.0 ? -z.length() : z.length(), 1.0);
    write_rotation(object, angle_of(x_negative));
    return true;
}

named_block block_of(const AcDbImpObject& object, std::string_view name, AcDbObjectId new_block) {
    named_block found;
    if (object.database == nullptr) {
        found.database = AcDbImpDatabase::find(new_block, found.record);
        return found;
    }
    found.database = object.database;
    // A changed name's bytes live no longer than the object.
    found.record = object.changed() ? object.database->blocks().find(object.decode(name))
                                    : object.database->blocks().find_bytes(name);
    return found;
}

} // namespace db
