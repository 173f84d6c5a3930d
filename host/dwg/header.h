// The header of a DWG file: the drawing's variables.
#pragma once

#include "host/dwg/object_reader.h"
#include "host/dwg/record_writer.h"

#include <span>
#include <string_view>
#include <unordered_map>

namespace dwg {

struct variable_row {
    std::string_view name; // with $ as DXF has it, or by what is stored else; empty: unknown
    field_code code;
    int from, to; // versions
    int group;    // 0: not in DXF
};

std::span<const variable_row> variable_rows();
// The names of all variables of DXF, without $, in the editor's order.
std::string_view variable_order();

class header {
public:
    // Reads the section; what is wrong with it comes to `damage`.
    void read(const container& file, const object_source& source, std::vector<std::wstring>& damage);
    // The handle that a variable holds; 0: none.
    std::uint64_t handle(std::string_view name) const;
    // Writes the section HEADER.
    void write(record_writer& to, const container& file, const object_source& source) const;

private:
    mutable values held_;
    std::unordered_map<std::string_view, std::size_t> at_; // of variables in held_
};

// The value of $DWGCODEPAGE for a code page as DWG files number it.
std::string_view code_page_name(int number);

} // namespace dwg
