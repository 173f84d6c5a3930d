// What the add-on's modules share about options and the kernel module owns: where they are kept, and one of
// them.
#pragma once

#include "afx.h"
#include "siblings/zef_kernal/KernalPort.h"

// The add-on's registry location, below HKEY_CURRENT_USER: "Software\ZEF\KOL". Each group of options is a key
// of its own below it, the modules' shared ones "KOLConfig".
ZEF_KERNAL_PORT CString GetRegLocation();

// The add-on's system folder, with a separator at the end. Set when zef_kernal is loaded.
ZEF_KERNAL_PORT extern CString g_csSysPath;

// Whether linetypes are scaled automatically when the drawing's scale changes.
ZEF_KERNAL_PORT extern BOOL g_bAutoLTScale;
