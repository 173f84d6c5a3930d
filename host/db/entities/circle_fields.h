// The groups of a circle, which an arc has too.
#pragma once

#include "host/db/core/fields.h"

namespace db {

inline constexpr field circle_fields[] = {number(39), flat_point(10, "0.0"), number(40, "0.0").not_negative(),
                                          normal()};
inline constexpr auto circle_place = section_of<circle_fields>("AcDbCircle");

} // namespace db
