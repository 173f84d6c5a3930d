// The folder by which settings travel: that it can be emptied without harm, and copies that are whole or not
// made.
#pragma once

#include "afx.h"
#include "module/frame/ModulePort.h"

#include <filesystem>

namespace SettingsFolder {

// "KolSetting" in the user's temporary folder; empty when the path of that has more than 255 characters.
ZEF_PIPESYSTEM_PORT std::filesystem::path Default();

// Why a folder must not be emptied, in words for the user: it is a link or no folder, a root, the home
// folder, the system folder, the program's or the temporary one, or holds one of these or an open drawing. ""
// when it may be, and when it is not there.
ZEF_PIPESYSTEM_PORT CString WhyNotEmptied(const std::filesystem::path& folder);

// Brings all that is in the folder into the user's trash, links themselves and not what they point to, or
// makes the folder. What can not be moved stays. False when there is no folder then.
bool Prepare(const std::filesystem::path& folder);

// The file of that name, told without case, in a folder; empty when there is none, and for a link.
std::filesystem::path FindFile(const std::filesystem::path& folder, const std::filesystem::path& name);

// Copies a file over another one, or makes that. False, and the target as it was, when that fails.
bool Copy(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace SettingsFolder
