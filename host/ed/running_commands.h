// Which commands are under way.
#pragma once

#include "accmd.h"

#include <string>
#include <vector>

namespace ed {

// What runs as a command, and what became of it.
struct running_command {
    const AcEdCommand* command = nullptr; // null for a function that was to run as one
    std::wstring name;                    // as reactors are told
    std::wstring shown;
    Adesk::Int32 flags = 0;
    bool is_press = false;  // of a bar's button: nobody is told of a command
    bool cancelled = false; // the last answer was Escape, or none
    bool failed = false;
};

// The outermost first; the editor's, who runs them.
std::vector<running_command>& running_commands();

// The innermost command under way; null at the command prompt.
ACCORE_PORT const AcEdCommand* command_under_way();
// The names of all that are under way, the outermost first, with ' between them.
ACCORE_PORT std::wstring names_under_way();

} // namespace ed
