// System variables: values by name, of the session or of the drawing.
#pragma once

#include "adesk.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ed {

using variable_value = std::variant<int, double, std::wstring>;

enum class variable_status { well, unknown, read_only, wrong_type, out_of_range };

// `value` gets it; its kind is that of the variable.
variable_status get_variable(std::wstring_view name, variable_value& value);
variable_status set_variable(std::wstring_view name, const variable_value& value);
// Whether a known variable can not be set.
bool is_read_only(std::wstring_view name);
// In the order of their names.
std::vector<std::wstring> variable_names();

// Sets ERRNO.
void set_error_number(int number);

} // namespace ed
