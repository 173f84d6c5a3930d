// Writes what a drawing of 2000 and later must have and its source lacks: entries of symbol tables, classes,
// dictionaries and layouts; and the objects that it has.
#pragma once

#include "host/version/conversion.h"
#include "host/version/modern_plan.h"
#include "host/version/modern_records.h"

#include <string_view>

namespace version {

// An entry with the values that the editor gives to one of which nothing but the name (in the source's bytes)
// is known.
void put_entry(conversion& job, const modern_plan& plan, std::string_view table, std::string_view name);

void put_classes(conversion& job, const modern_plan& plan);
void put_objects(conversion& job, const modern_plan& plan, modern_records& records);

} // namespace version
