// The space that the user works in, as system variables tell it.
#pragma once

#include "host/ed/system_variables.h"

namespace ed {

// CTAB, the name of the current tab, and CVPORT, the number of the current viewport. What they are when no
// drawing is open: "Model" and 2.
variable_value tab_variable();
variable_value viewport_variable();
variable_status set_tab(const variable_value& value);
variable_status set_viewport(const variable_value& value);

} // namespace ed
