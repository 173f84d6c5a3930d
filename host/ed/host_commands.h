// The host's own commands: which there are, and a line on each.
#pragma once

#include "accmd.h"

#include <string_view>

namespace ed {

struct host_command {
    const wchar_t* name;
    AcRxFunctionPtr function;
    Adesk::Int32 flags;
    const wchar_t* help; // empty: another name of the command above
};

// Registers them in the group "ACAD".
void register_host_commands();
// The line on a command; empty when it is none of the host's.
std::wstring_view help_of(std::wstring_view command);

void open_command();
void qsave_command();
void saveas_command();
void quit_command();
void u_command();
void redo_command();
void setvar_command();
void regen_command();
void layer_command();
void list_command();
void arx_command();
void help_command();

} // namespace ed
