// Letters made of strokes, as the shape fonts of drawings have them.
//
// Source: A. V. Hershey's simplex Roman letters (1967), read from the file in which Linux systems keep them.
#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace picture {

struct stroke_point {
    double x; // capitals are 1 high, y upwards from the base line
    double y;
};

struct stroke_letter {
    double advance = 0.0;
    std::vector<std::vector<stroke_point>> strokes;
};

// The letters of ASCII from the blank on.
using stroke_letters = std::array<stroke_letter, 95>;

// The letters of a file: for each five columns of number, three of how many pairs of signs follow; a sign
// means its distance from R. The first pair are the letter's left and right ends, " R" lifts the pen, y grows
// downwards. Empty strokes for what is missing.
stroke_letters read_stroke_letters(std::string_view file);

// Those of this machine; null where they are not installed.
const stroke_letters* installed_stroke_letters();

} // namespace picture
