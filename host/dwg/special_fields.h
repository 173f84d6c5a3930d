// Functions that read what no list of codes can say, by the names under which layouts call them.
#pragma once

#include <span>
#include <string_view>

namespace dwg {

class object_reader;

struct special_row {
    std::string_view name;
    void (*read)(object_reader&);
};

// The body of a region or a solid, as text.
void modeler_fields(object_reader& in);
// A table of 2000 to 2007, from its flags on.
void table_fields(object_reader& in);

std::span<const special_row> entity_fields();
std::span<const special_row> object_fields();

} // namespace dwg
