// A dialog as data: what it shows and what the user may change in it, for whoever shows it.
//
// It has a title, fields to be filled in, lists whose lines can be checked, and the buttons OK and Cancel.
// Sizes are in the units of a window; who shows dialogs without one may leave them alone.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace ui {

struct column {
    std::wstring name;
    int width = 0;
};

struct line {
    std::vector<std::wstring> cells; // one for each column
    bool checked = false;
    int depth = 0; // in a tree: below how many of the lines above it stands
};

struct check_list {
    std::vector<column> columns;
    std::vector<line> lines;
    int height = 300;
};

struct field {
    std::wstring name;
    std::wstring value;
    // Why a value cannot be taken, for the user to read; empty when it can.
    std::function<std::wstring(const std::wstring& value)> refusal;
};

struct dialog {
    std::wstring title;
    std::vector<field> fields;
    std::vector<check_list> lists;
};

} // namespace ui
