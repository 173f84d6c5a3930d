// A line of text in its groups, and how it is drawn: what texts and attributes share.
#pragma once

#include "acdb.h"
#include "acgi.h"
#include "host/db/core/fields.h"

#include <string>
#include <string_view>

namespace db {

// The groups of a text, and behind their own marker those that attributes have besides.
inline constexpr field text_fields[] = {
    number(39), point(10, "0.0"), number(40, "1.0"), number(1, ""), number(50), number(41),
    number(51), number(7),        number(71),        number(72),    point(11),  normal(),
};
inline constexpr auto text_place = section_of<text_fields>("AcDbText");
inline constexpr field definition_fields[] = {number(3, ""), number(2, ""), number(70, "0"), number(73),
                                              number(74)};
inline constexpr auto definition_place = section_of<definition_fields>("AcDbAttributeDefinition");
inline constexpr field attribute_fields[] = {number(2, ""), number(70, "0"), number(73), number(74)};
inline constexpr auto attribute_place = section_of<attribute_fields>("AcDbAttribute");

// What the groups of a text say, in the coordinates of its plane, angles in radians.
struct text_line {
    explicit text_line(const AcDbImpObject& object);

    AcGePoint3d position;
    AcGePoint3d alignment; // the position when there is none
    AcGePoint3d start;     // of its base line, once it is aligned
    AcGeVector3d normal;
    double height;
    double rotation;
    double width_factor;
    double oblique;
    double thickness;
    bool backward;
    bool upside_down;
    int horizontal; // AcDb::TextHorzMode
    int vertical;   // AcDb::TextVertMode
    std::string_view text;
    AcGiTextStyle style; // of the record, with all of the above

    bool is_default_alignment() const { return horizontal == 0 && vertical == 0; }
    // Aligned or fitted.
    bool lies_between_points() const {
        return horizontal == AcDb::kTextAlign || horizontal == AcDb::kTextFit;
    }
    // Finds the start, and the rotation, height or width factor that the alignment wants for what is shown.
    void align(std::wstring_view shown);
};

// Draws a message as the line of an object.
void draw_text(const AcDbImpObject& object, std::wstring_view message, AcGiWorldDraw& draw);

} // namespace db
