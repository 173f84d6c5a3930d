// The user's settings taken along from one installation to another: the commands dcsz and drsz, and what they
// do when the user has been asked.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <array>

namespace SettingsTransfer {

// Which settings are exported, in the order of the dialog.
enum Group { kInitial, kAliases, kToolBars, kLinetypes, kLayers, kMaterials, kSymbols, kGroupCount };
using Groups = std::array<bool, kGroupCount>;

// Empties the folder, or makes it, and puts the files of the groups there that the add-on has. How many came
// there; -1, and nothing done, when the folder must not be emptied, which the user is told.
ZEF_PIPESYSTEM_PORT int Export(LPCTSTR folder, const Groups& groups);
// Takes over the settings and files that are in the folder; they count at once. How many.
ZEF_PIPESYSTEM_PORT int Import(LPCTSTR folder);

// The commands: dcsz shows the dialog, drsz asks for the folder.
void ExportCommand();
void ImportCommand();

} // namespace SettingsTransfer
