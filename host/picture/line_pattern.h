// The pattern of a linetype, and lines drawn with it.
#pragma once

#include "gepnt3d.h"
#include "gevec3d.h"
#include "host/gi/font.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

class AcDbLinetypeTableRecord;

namespace picture {

// What stands in a line behind a dash: a text, or a shape of a file.
struct line_sign {
    std::size_t behind = 0; // the number of the dash
    std::wstring text;
    std::shared_ptr<const gi::font> font; // of the text
    std::wstring shape_file;
    std::shared_ptr<const gi::shape_font> shapes; // null where the file is not here: its room stays empty
    int shape_number = 0;
    double height = 1.0; // of its capitals
    double width_factor = 1.0;
    double angle = 0.0; // against the line, radians; against the drawing where it is oriented
    bool oriented = false;
    double x = 0.0; // from the end of the dash
    double y = 0.0;
};

struct line_pattern {
    std::vector<double>
        dashes; // above nought drawn, below nought gaps, nought dots; empty for a continuous line
    std::vector<line_sign> signs;
    double length = 0.0; // until it repeats
};

// The pattern of a linetype; continuous for one that has no dashes, or gaps alone.
line_pattern pattern_of(const AcDbLinetypeTableRecord& linetype);

// Where a sign stands: its place and the direction of the line.
struct placed_sign {
    const line_sign* sign;
    AcGePoint3d place;
    AcGeVector3d along;
};

struct patterned_line {
    std::vector<std::vector<AcGePoint3d>> dashes; // one point: a dot
    std::vector<placed_sign> signs;
};

// A line (its corners one after the other) drawn with a pattern, whose lengths are `scale` times as long. It
// begins and ends with a dash. All of it in one piece when it is too short for the pattern, or would have
// more dashes than anybody sees.
patterned_line patterned(std::span<const AcGePoint3d> line, const line_pattern& pattern, double scale);

} // namespace picture
