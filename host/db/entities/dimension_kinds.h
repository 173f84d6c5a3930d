// The kinds of dimensions: where the groups of each stand, what it measures.
#pragma once

#include "dbdim.h"
#include "host/db/core/fields.h"

#include <array>

namespace db {

inline constexpr field dimension_fields[] = {
    number(280), number(2),  point(10),  flat_point(11), flat_point(12), number(70), number(1),
    number(71),  number(72), number(41), number(42),     number(73),     number(74), number(75),
    angle(53),   angle(51),  angle(54),  normal(),       number(3),
};
inline constexpr auto dimension_place = section_of<dimension_fields>("AcDbDimension");

// What stands behind the marker of a kind.
inline constexpr field kind_fields[] = {
    point(13),  point(14),  point(15), point(16), number(70), number(40),
    number(41), number(71), point(17), angle(50), angle(52),
};
inline constexpr auto linear_place = section_of<kind_fields>("AcDbAlignedDimension");
inline constexpr auto three_point_place = section_of<kind_fields>("AcDb3PointAngularDimension");
inline constexpr auto two_line_place = section_of<kind_fields>("AcDb2LineAngularDimension");
inline constexpr auto radial_place = section_of<kind_fields>("AcDbRadialDimension");
inline constexpr auto diametric_place = section_of<kind_fields>("AcDbDiametricDimension");
inline constexpr auto ordinate_place = section_of<kind_fields>("AcDbOrdinateDimension");
inline constexpr auto arc_dimension_place = section_of<kind_fields>("AcDbArcDimension");
inline constexpr auto large_radial_place = section_of<kind_fields>("AcDbRadialDimensionLarge");

// A kind: where its points stand besides group 10, in coordinates of the world, and what it measures.
struct dimension_kind {
    AcRxClass* (*desc)();
    const section& place;
    std::array<int, 5> points;
    bool measures_angle;
};
const dimension_kind& kind_of(const AcDbDimension& dimension);

// The look of a dimension was made from what is changed now: it goes.
void leave_block(AcDbImpObject& imp);
// Writes a point, and the look goes if it is another one.
Acad::ErrorStatus set_dimension_point(AcDbImpObject& imp, const dxf::group_place& where, int code,
                                      const AcGePoint3d& point);

} // namespace db
