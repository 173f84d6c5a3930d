// Distances and angles as users type them, in the forms of the drawing's units.
#pragma once

#include "adesk.h"

#include <optional>
#include <string_view>

namespace ed {

// The drawing's units as LUNITS has them.
enum class length_form { scientific = 1, decimal, engineering, architectural, fractional };

// "12.5", "1.2e3", "3/4", "3-1/2"; with feet and inches, in engineering and architectural units only, also
// "5'", "5'6.5", "5'-6-1/2\"", "6\"": a length in inches. Nothing when the text is no length.
ACCORE_PORT std::optional<double> parse_length(std::wstring_view text, length_form form);

// As AUNITS has them.
enum class angle_form { degrees, degrees_minutes_seconds, grads, radians, surveyor };

// In radians: a number in the units of the form; in any of them "45d", "45d30'15\"", "50g", "1.5r" with their
// own; in surveyor's units "N 45d E" without its blanks, and "N", "E", "S", "W", which are directions.
// Nothing when the text is no angle.
struct typed_angle {
    double radians = 0.0;
    bool direction = false; // it says where it points to, whatever angles are measured from
};
ACCORE_PORT std::optional<typed_angle> parse_angle(std::wstring_view text, angle_form form);

// An angle within a full turn, from 0 up.
ACCORE_PORT double within_turn(double radians);

} // namespace ed
