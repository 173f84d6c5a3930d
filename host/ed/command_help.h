// What HELP says of commands: of the host's own by their table, of those of applications by the file help.txt
// in the program's share folder, since applications register names alone.
#pragma once

#include "accmd.h"

#include <string>

namespace ed {

struct command_help {
    std::wstring text; // empty: nothing is known
    bool built = true; // false: the command is there by name, and says that it is not finished
};

ACCORE_PORT command_help help_of(const AcEdCommand& command);

} // namespace ed
