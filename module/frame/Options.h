// The options of the add-on in their two stores: the registry key KOLConfig, from one start to the next, and
// a settings file ("setting.ini"), from one machine to another.
#pragma once

#include "module/frame/ModulePort.h"

// How labels of riser label style 4 are aligned. Kept in the registry only.
ZEF_PIPESYSTEM_PORT extern int g_nAlignTypeForVPipeDim4;

namespace OptionTool {

// Writes all options of the settings file, from their variables. What else the file holds stays as it is.
// False when it cannot be written, or is there and cannot be read.
ZEF_PIPESYSTEM_PORT bool WriteSettingsFile(LPCTSTR path);

// Reads the options that the settings file holds into their variables, the others stay; then writes those
// that the registry keeps there, all of them. False, and nothing changed, when the file cannot be read. What
// the registry does not take is passed over.
ZEF_PIPESYSTEM_PORT bool ReadSettingsFile(LPCTSTR path);

// Reads and writes g_nAlignTypeForVPipeDim4 from and to the registry. A missing value leaves the variable as
// it is.
void ReadAlignType();
void WriteAlignType();

} // namespace OptionTool
