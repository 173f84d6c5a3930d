// Which versions know a variable of the header.
#pragma once

#include <string_view>

namespace version {

// Whether headers of a version hold a variable. Those that nobody knows are held by all from 2000 on, whose
// readers pass over them.
bool knows_variable(int version, std::string_view name);

} // namespace version
