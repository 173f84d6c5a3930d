// Where things lie: the user's profile with its system and temporary folders, and the program's own folder.
// Paths become text and text becomes paths here.
#pragma once

#include "base/result.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace sys {

// The path that a text names, and back. from_path(to_path(t)) and to_path(from_path(p)) change nothing, also
// for names that are not in the system's encoding.
std::filesystem::path to_path(std::wstring_view text);
std::wstring from_path(const std::filesystem::path& path);

// The file or folder that `relative` names below `folder`, each of its names as it stands there or else
// without regard to case; ".." goes up. Empty when there is none.
std::filesystem::path find_without_case(const std::filesystem::path& folder,
                                        const std::filesystem::path& relative);

// Chooses the user's folder for this process; a relative path is taken from the current folder. To be called
// before anything else asks for the profile.
void set_profile_folder(const std::filesystem::path& folder);

// The user's folder, absolute; it need not exist.
const std::filesystem::path& profile_folder();

// What it is unless it was set: $ZEF_PROFILE, else `zef` below $XDG_CONFIG_HOME, else below .config in the
// user's home.
std::filesystem::path default_profile_folder();

// Creates the profile, and on first start its system folder as a copy of `share` that the user can write to.
// Safe when several programs start at once: each sees the whole copy or none. What is there already stays as
// it is, and `share` is not looked at then.
base::result<void> prepare_profile(const std::filesystem::path& share);

// The user's copy of the system folder: <profile>/sys.
std::filesystem::path system_folder();

// <profile>/temp, created when it is missing. When that fails, writing below it tells why.
std::filesystem::path temp_folder();

// The folder that the running program lies in; the current folder when the system does not tell.
std::filesystem::path executable_folder();

} // namespace sys
