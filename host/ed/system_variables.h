// System variables: values by name, of the session, of the user's profile or of the drawing.
#pragma once

#include "host/ed/variable_value.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ed {

// `value` gets it; its kind is that of the variable.
ACCORE_PORT variable_status get_variable(std::wstring_view name, variable_value& value);
// Whole numbers are taken where a variable is a real one. Reactors of the editor hear of it, also of the same
// value.
ACCORE_PORT variable_status set_variable(std::wstring_view name, const variable_value& value);
// Whether there is one of that name.
ACCORE_PORT bool has_variable(std::wstring_view name);
// Whether a known variable can not be set.
ACCORE_PORT bool is_read_only(std::wstring_view name);
// Whether a known variable is kept in the drawing.
ACCORE_PORT bool is_of_drawing(std::wstring_view name);
// Whether a known variable is a point of the plane.
bool is_flat_point(std::wstring_view name);
// In the order of their names.
ACCORE_PORT std::vector<std::wstring> variable_names();

// For the host itself, whose values nothing forbids: a value of the session, such as LASTPOINT. No one is
// told.
void put_variable(std::wstring_view name, variable_value value);
// The value of a variable that is known to be of a kind.
template<class Value>
Value variable(std::wstring_view name) {
    variable_value value = Value{};
    get_variable(name, value);
    const Value* const held = std::get_if<Value>(&value);
    return held != nullptr ? *held : Value{};
}

// Sets ERRNO.
void set_error_number(int number);

} // namespace ed
