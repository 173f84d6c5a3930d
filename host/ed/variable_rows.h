// How rows of the table of system variables are written down.
#pragma once

#include "host/ed/variable_table.h"

#include <limits>
#include <string>
#include <string_view>

namespace ed::variable_rows {

using row = variable_row;
inline constexpr double no_end = std::numeric_limits<double>::infinity();

inline row whole(std::wstring_view name, kept where, int value, double least, double most, int code = 70) {
    return {name, where, value, least, most, code};
}
inline row flag(std::wstring_view name, kept where, int value, int code = 70) {
    return whole(name, where, value, 0, 1, code);
}
inline row real(std::wstring_view name, kept where, double value, double least = -no_end,
                double most = no_end) {
    return {name, where, value, least, most, 40};
}
inline row size(std::wstring_view name, kept where, double value) { // above nought
    row made = real(name, where, value, 0.0);
    made.above = true;
    return made;
}
inline row text(std::wstring_view name, kept where, std::wstring_view value, int code = 1) {
    row made{name, where, std::wstring(value)};
    made.code = code;
    return made;
}
inline row point(std::wstring_view name, kept where, const AcGePoint3d& value = {}) {
    row made{name, where, value};
    made.code = 10;
    return made;
}
inline row flat(std::wstring_view name, kept where, const AcGePoint3d& value = {}) {
    row made = point(name, where, value);
    made.flat = true;
    return made;
}
inline row fixed(row made) {
    made.read_only = true;
    return made;
}
inline row per_space(row made) {
    made.per_space = true;
    return made;
}

// Known variables that nothing here reads: how windows, grips, tips and plots look and behave. Scripts set
// them. Appends them.
void add_screen_variables(std::vector<variable_row>& table);

} // namespace ed::variable_rows
