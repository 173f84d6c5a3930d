// How alignments place a line of text.
#pragma once

#include "acdb.h"
#include "host/gi/text_metrics.h"

namespace gi {

// From the point that the alignment ties down to where the line begins on its base line: along it, and the
// way its letters rise.
struct text_shift {
    double along = 0.0;
    double up = 0.0;
};

// For a line that lies in `box` with capitals of a height; by AcDb::TextHorzMode and AcDb::TextVertMode, but
// for lines between two points.
inline text_shift shift_of_alignment(int horizontal, int vertical, const text_box& box, double height) {
    text_shift shift;
    if (horizontal == AcDb::kTextCenter || horizontal == AcDb::kTextMid)
        shift.along = -box.width / 2.0;
    else if (horizontal == AcDb::kTextRight)
        shift.along = -box.width;
    if (horizontal == AcDb::kTextMid)
        shift.up = -(box.bottom + box.top) / 2.0;
    else if (vertical == AcDb::kTextBottom)
        shift.up = tail_depth * height;
    else if (vertical == AcDb::kTextVertMid)
        shift.up = -height / 2.0;
    else if (vertical == AcDb::kTextTop)
        shift.up = -height;
    return shift;
}

} // namespace gi
