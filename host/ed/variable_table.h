// The table of system variables: kind, where each is kept, what it is to begin with, and what it may be.
#pragma once

#include "host/ed/variable_value.h"

#include <limits>
#include <string_view>
#include <vector>

namespace ed {

enum class kept {
    session, // forgotten when the program ends
    profile, // in the user's registry
    drawing, // in the header of the drawing
    asked    // reckoned when someone asks
};

struct variable_row {
    std::wstring_view name;
    kept where = kept::session;
    variable_value value; // of the session; of a profile or a drawing that does not hold it
    double least = -std::numeric_limits<double>::infinity(); // of numbers
    double most = std::numeric_limits<double>::infinity();
    int code = 0; // the group code in the header; of points that of x
    bool read_only = false;
    bool above = false;     // `least` itself is too small
    bool flat = false;      // a point of the plane
    bool per_space = false; // paper space has one of its own, with a P in front of the name
};

// In the order of their names.
std::vector<variable_row>& variable_table();

// What reckons the variables that are asked for, and sets them: their values come from everywhere above this
// table (host/ed/asked_variables.cpp).
struct asked_functions {
    variable_value (*get)(const variable_row& row) = nullptr;
    bool (*set)(const variable_row& row, const variable_value& value) = nullptr;
};
asked_functions& asked_variables();

} // namespace ed
