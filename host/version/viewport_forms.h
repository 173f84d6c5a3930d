// The view of a VIEWPORT in both of the forms that files have had: groups of its own since 2000, before that
// a list in its extended data (see host/db/tables/viewport_groups.h).
#pragma once

#include "host/version/conversion.h"
#include "host/version/record_groups.h"

#include <functional>

namespace version {

// Writes the view that the list of a viewport holds as groups, and its extended data without the list.
void put_viewport_groups(conversion& job, const record_groups& viewport);

// Writes the view that the groups of a viewport hold as a list, with its other extended data behind. `layer`
// gives the name of a layer that is frozen in it, as the file's bytes; empty for one that is not there.
void put_viewport_list(conversion& job, const record_groups& viewport,
                       const std::function<std::string(std::uint64_t)>& layer);

} // namespace version
