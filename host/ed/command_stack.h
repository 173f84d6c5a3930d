// The command stack behind the interface.
#pragma once

#include "accmd.h"

#include <string>
#include <vector>

namespace ed {

// Puts the stack into the system registry, once.
void register_command_stack();

// Every command, group by group in the order in which the groups were made, for lists and completion.
ACCORE_PORT std::vector<std::pair<std::wstring, const AcEdCommand*>> all_commands();

} // namespace ed
