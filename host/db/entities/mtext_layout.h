// Where the words of a paragraph text stand.
#pragma once

#include "host/db/entities/mtext_codes.h"

#include <string>
#include <vector>

namespace db {

// What decides how a paragraph text is set, besides its contents.
struct mtext_frame {
    double width = 0.0;  // lines break here; nought: nowhere
    double height = 1.0; // of its letters
    double spacing = 1.0;
    bool exact_spacing = false; // whether high letters make no more room
    int attachment = 1;         // 1 to 9: top left, top center, ... bottom right
    // Columns, none when there is one at most: how wide, how far apart, how high each, from which side.
    int columns = 0;
    double column_width = 0.0;
    double gutter = 0.0;
    std::vector<double> column_heights; // the last one goes for the others; nought: as high as is wanted
    bool from_right = false;
    // Lines run down, each to the left of the one before, as far as their fonts can.
    bool downwards = false;
};

// Words of one format, on one base line.
struct mtext_piece {
    AcGePoint2d start;
    std::wstring text;
    AcGiTextStyle style;
    Adesk::UInt32 color = 0; // as in mtext_format
};

// A line of a fraction, from end to end.
struct mtext_rule {
    AcGePoint2d start;
    AcGePoint2d end;
    Adesk::UInt32 color = 0;
};

// Measured from the point by which the text is attached, along its direction and across.
struct mtext_layout {
    std::vector<mtext_piece> pieces;
    std::vector<mtext_rule> rules;
    double width = 0.0; // of what stands there
    double height = 0.0;
};

mtext_layout lay_out(const mtext_codes& codes, const mtext_frame& frame);

} // namespace db
