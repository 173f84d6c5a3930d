// The user's trash: what is deleted for the user can be brought back from there.
#pragma once

#include "base/result.h"

#include <filesystem>

namespace sys {

// Puts a file, a folder with all that is in it, or a symbolic link itself into the trash; of a system without
// one, or where it can not take it, deletes it for good. Write protection of what goes does not matter.
// Fails, and what is there stays, when that can not be done either.
base::result<void> discard(const std::filesystem::path& path);

// The user's home folder; empty when the system knows none.
std::filesystem::path home_folder();

// Whether a folder is where a drive begins, or a file system that is mounted.
bool is_root(const std::filesystem::path& folder);

} // namespace sys
