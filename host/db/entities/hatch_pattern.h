// The fields of a hatch, and the lines of its pattern.
#pragma once

#include "gepnt2d.h"
#include "host/db/core/fields.h"

#include <utility>
#include <vector>

namespace db {

// Without an order: most codes stand in several places of a hatch. 70: a filled area; 71: associative; 91:
// loops; 75: style; 76: kind of pattern; 98: seed points.
inline constexpr field hatch_fields[] = {
    point(10, "0.0"),   normal("0.0 0.0 1.0").direction(),
    number(2, "SOLID"), number(70, "1"),
    number(71, "0"),    number(91, "0"),
    number(75, "0"),    number(76, "1"),
    number(98, "0"),    number(30),
    angle(52),          number(41).or_else(1.0),
    number(77),         number(452),
    number(460),
};
inline constexpr section hatch_place{{"AcDbHatch"}, hatch_fields};

// A family of parallel lines of a pattern.
struct line_family {
    double angle = 0.0; // degrees
    AcGePoint2d base;
    AcGeVector2d offset;
    std::vector<double> dashes;
};

struct hatch_pattern {
    double angle = 0.0; // degrees
    double scale = 1.0;
    bool is_double = false;
    std::vector<line_family> families;
};

hatch_pattern read_pattern(const AcDbImpObject& hatch);
void write_pattern(AcDbImpObject& hatch, const hatch_pattern& pattern);
std::vector<line_family> read_families(const dxf::group_list& groups);
// The groups that tell of the pattern behind its type: angle, scale, doubling and the families of lines.
std::pair<std::size_t, std::size_t> range_of_pattern(const dxf::group_list& groups);

// The lines of a pattern without a definition: at an angle and a distance, and across them when doubled.
void define_by_user(hatch_pattern& pattern);
// Turns and scales a pattern about the first line's point.
void turn_and_scale(hatch_pattern& pattern, double turn, double factor);

} // namespace db
