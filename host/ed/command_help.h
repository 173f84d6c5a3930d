// What HELP says of commands: of the host's own by their table, of those of applications by the file help.txt
// in the program's share folder, since applications register names alone.
#pragma once

#include "accmd.h"

#include <string>

namespace ed {

// Empty when nothing is known.
ACCORE_PORT std::wstring help_of(const AcEdCommand& command);

} // namespace ed
