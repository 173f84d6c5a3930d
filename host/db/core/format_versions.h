// What drawing files of a version can hold. Versions are the numbers in $ACADVER.
#pragma once

#include "host/dxf/releases.h"

#include <string_view>
#include <vector>

namespace db {

using namespace dxf::releases;

// The first version whose files can hold an entity of a type.
int first_version_of(std::string_view type);

// Whether files of a version know a group in a record of a type; for groups of codes below 1000.
bool knows_group(int version, std::string_view type, int code);
// The codes that it does not know of those that came after R12, or after their types; sorted.
std::vector<int> unknown_groups(int version, std::string_view type);

} // namespace db
