// What is picked before a command, for commands that use it.
#pragma once

#include "dbid.h"

#include <vector>

namespace ed {

// What was picked before the command under way; nothing for a command that does not use it
// (ACRX_CMD_USEPICKSET), and where PICKFIRST is 0.
std::vector<AcDbObjectId> picked_first();

} // namespace ed
