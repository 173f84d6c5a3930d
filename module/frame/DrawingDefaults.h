// The defaults that new drawings begin with.
#pragma once

#include "module/frame/ModulePort.h"

// What the command configuration says to the module itself.
ZEF_PIPESYSTEM_PORT extern bool
    g_bLayerAutoGroup; // layers that a command touched are sorted into their groups
ZEF_PIPESYSTEM_PORT extern bool g_bResetFlangeGap; // the gap of flanges is set anew
ZEF_PIPESYSTEM_PORT extern int g_iFlangeStyle;     // 0 the first style

// Reads the section "DWG默认数据" of "CmdConfig.xml" into the pipe entities' defaults and the variables
// above; what is missing there stays as it was. Then takes the current drawing's settings over into the
// shared variables.
ZEF_PIPESYSTEM_PORT void LoadDrawingDefaults();
