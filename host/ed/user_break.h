// Escape and Ctrl-C while something runs.
#pragma once

#include "adesk.h"

namespace ed {

// The user pressed one of them; may be called by a signal.
ACCORE_PORT void press_break();
// Whether nobody has looked at that yet.
ACCORE_PORT bool is_break_pending();
// Whether it was so: somebody has looked now.
bool take_break();

} // namespace ed
