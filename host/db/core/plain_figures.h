// The fields of figures that are known well below their classes: for them boxes are found from the groups.
#pragma once

#include "host/db/core/fields.h"

namespace db {

inline constexpr field line_fields[] = {number(39), point(10, "0.0"), point(11, "0.0"), normal()};
inline constexpr auto line_place = section_of<line_fields>("AcDbLine");

inline constexpr field point_fields[] = {point(10, "0.0"), number(39), normal(), angle(50)};
inline constexpr auto point_place = section_of<point_fields>("AcDbPoint");

// An arc has these too.
inline constexpr field circle_fields[] = {number(39), flat_point(10, "0.0"),
                                          number(40, "0.0").not_negative().around(), normal()};
inline constexpr auto circle_place = section_of<circle_fields>("AcDbCircle");

} // namespace db
