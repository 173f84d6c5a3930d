// Short names of commands, from the file "acad.pgp" of the user's system folder:
//
//     ; a comment
//     L,        *LINE
//
// Lines in which no * stands before the second name are programs of the system, which are not run. The file
// is read anew when it was changed, in whatever encoding editors write it (sys/plain_text.h).
#pragma once

#include "adesk.h"

#include <string>
#include <string_view>

namespace ed {

// The command that an alias, told without case, stands for; empty when there is none. Of two of one name the
// last one counts.
ACCORE_PORT std::wstring command_of_alias(std::wstring_view alias);

} // namespace ed
