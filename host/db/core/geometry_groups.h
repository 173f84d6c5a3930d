// Points, directions and plain numbers of entities in their groups.
#pragma once

#include "gemat3d.h"
#include "gepnt2d.h"
#include "host/db/core/imp_object.h"
#include "host/dxf/group_list.h"

#include <functional>
#include <vector>

namespace db {

// The point whose x stands in group `code`, y ten above and z twenty above; what is missing is nought.
AcGePoint3d read_point(const AcDbImpObject& object, const dxf::group_place& place, int code);
// Writes it: only what differs. A z that is missing stays missing when it is nought.
void write_point(AcDbImpObject& object, const dxf::group_place& place, int code, const AcGePoint3d& point);

// All points whose x stands in a group `code`, for classes that have it more than once; and the same with
// another point in the place of each, by what `change` makes of it.
std::vector<AcGePoint3d> read_points(const AcDbImpObject& object, const dxf::group_place& place, int code);
void change_points(AcDbImpObject& object, const dxf::group_place& place, int code,
                   const std::function<AcGePoint3d(const AcGePoint3d&)>& change);

// The normal in groups 210, 220, 230, the z axis when there is none.
AcGeVector3d read_normal(const AcDbImpObject& object, const dxf::group_place& place);
void write_normal(AcDbImpObject& object, const dxf::group_place& place, const AcGeVector3d& normal);

double read_real(const AcDbImpObject& object, const dxf::group_place& place, int code, double missing = 0.0);
// A value that is missing stays missing when it is what is meant then.
void write_real(AcDbImpObject& object, const dxf::group_place& place, int code, double value,
                double missing = 0.0);
int read_integer(const AcDbImpObject& object, const dxf::group_place& place, int code, int missing = 0);
void write_integer(AcDbImpObject& object, const dxf::group_place& place, int code, int value,
                   int missing = 0);

// The same for what was reckoned to and fro: a value that only differs by the last digits stays as it is
// written.
void write_near(AcDbImpObject& object, const dxf::group_place& place, int code, double value,
                double missing = 0.0);

// Angles stand in groups in degrees.
double radians(double degrees);
double degrees(double radians);
// From 0 to below a full turn.
double in_one_turn(double angle);
// Writes one, in the first turn; one that only differs by the last digits or by turns stays as it is written.
void write_angle(AcDbImpObject& object, const dxf::group_place& place, int code, double angle);

// What a transformation does to a plane figure with this normal: the new normal, how lengths in the plane
// grow, by what angle directions in it turn, and whether it is seen from behind. False when it does not keep
// circles in the plane round.
struct plane_change {
    AcGeVector3d normal;
    double scale = 1.0;
    AcGeMatrix3d plane_to_plane; // from the coordinates of the old plane to those of the new one
    bool mirrored = false;       // whether angles in the plane run the other way
    // What becomes of a direction in the plane, an angle from its x axis.
    double turned(double angle) const;
};
bool change_plane(const AcGeVector3d& normal, const AcGeMatrix3d& matrix, plane_change& change);
// The same for a figure that need not stay round (what `scale` says then holds for its x axis): false only
// when the plane becomes a line.
bool change_any_plane(const AcGeVector3d& normal, const AcGeMatrix3d& matrix, plane_change& change);

} // namespace db
