// What the names mean that users type at a prompt.
#pragma once

#include "accmd.h"

#include <string>
#include <string_view>

namespace ed {

// "_" the global name, "." the host's own command, "'" transparent: in front of a name they change nothing
// here.
std::wstring_view without_prefixes(std::wstring_view typed);

// The command by the name that users type, or by the global one; when there is none of that name, by an
// alias.
const AcEdCommand* find_command(const std::wstring& name);

// Whether a name that is no command's means a system variable. The editor has commands of some of their
// names, which are not here: who calls one is to learn that.
bool is_typed_variable(const std::wstring& name);

// A prompt or a message on one line, blanks around it left out.
std::wstring as_one_line(std::wstring_view text);

} // namespace ed
