// What is picked before a command, for commands that use it.
#pragma once

#include "dbid.h"
#include "host/ed/input.h"

#include <optional>
#include <string>
#include <vector>

namespace ed {

// What was picked before the command under way; nothing for a command that does not use it
// (ACRX_CMD_USEPICKSET), and where PICKFIRST is 0.
std::vector<AcDbObjectId> picked_first();

// Takes an answer at the command prompt as a pick, of which further ones add to it (PICKADD): a point, as a
// click there; (handent ...) and (ssget ...). Nothing when it is no pick; else why it is refused, empty when
// it was taken.
std::optional<std::wstring> pick_before_command(const answer& given);
// What was picked is not picked any more.
void drop_picks();

} // namespace ed
