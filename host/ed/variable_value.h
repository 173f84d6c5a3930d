// The values of system variables, and how they are typed and shown.
#pragma once

#include "adesk.h"
#include "gepnt3d.h"

#include <string>
#include <string_view>
#include <variant>

namespace ed {

// Points of the plane have 0 for z.
using variable_value = std::variant<int, double, std::wstring, AcGePoint3d>;

enum class variable_status { well, unknown, read_only, wrong_type, out_of_range };

// A value as the command line shows it: 1, 2.5, "text", 1.0,2.0,0.0.
ACCORE_PORT std::wstring shown_value(const variable_value& value);
// Reads a value of the same kind as `old` from what was typed; false when it is none.
ACCORE_PORT bool read_value(std::wstring_view typed, const variable_value& old, variable_value& value);

} // namespace ed
