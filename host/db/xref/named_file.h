// Files that drawings name with the path that they had on some system.
#pragma once

#include "adesk.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace db {

// The names under which a file may be here, the likeliest first.
using names_of_file = std::function<std::vector<std::filesystem::path>(const std::filesystem::path&)>;

// The file that a path means, for a drawing in `folder`: as it stands, below the folder, or in it by its name
// alone; empty when there is none. Backslashes part names as slashes do, and the letter of another system's
// drive says nothing.
std::filesystem::path find_beside(const std::filesystem::path& folder, std::wstring path,
                                  const names_of_file& names_of);

} // namespace db
