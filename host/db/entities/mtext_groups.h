// How a paragraph text is written into its groups.
#pragma once

#include "host/db/core/fields.h"
#include "host/db/entities/mtext.h"

#include <string>
#include <string_view>

namespace db {

inline constexpr field mtext_fields[] = {
    point(10, "0.0"), number(40, "1.0"), number(41, "0.0"),
    number(46),       number(71, "1"),   number(72, "1").or_else(AcDbMText::kLtoR),
    number(3),        number(1, ""),     number(7),
    normal(),         point(11),         number(42),
    number(43),       number(50),        number(73),
    number(44),       number(90),        number(63),
    number(45),       number(441),
};
inline constexpr auto mtext_place = section_of<mtext_fields>("AcDbMText");

// What it says, in pieces put together, in the drawing's encoding.
std::string bytes_of_contents(const dxf::group_list& groups);
void write_contents(AcDbImpObject& object, std::wstring_view contents);
// The new text with every absolute height (\H2.5;) by a factor.
std::wstring with_heights_scaled(std::wstring_view contents, double factor);

// The direction alone tells how the text is turned: what an angle said goes.
void write_direction(AcDbImpObject& object, const AcGeVector3d& direction);
// A text that also tells where it stands in the object with its columns: keeps that one true. What it has of
// the old place and direction becomes the new one, and lengths grow.
void follow_in_embedded(AcDbImpObject& object, const mtext_values& before, double factor);

} // namespace db
