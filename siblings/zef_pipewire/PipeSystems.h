// The codes that older drawings tell pipe systems by, and the names that they stand for. Systems that a user
// added have a name alone.
#pragma once

#include "afx.h"
#include "siblings/zef_pipewire/PipewirePort.h"

// The code of a system without one.
constexpr int kCustomSystemType = -1;

// The code of a system, by its exact name; kCustomSystemType for a name that has none.
ZEF_PIPEWIRE_PORT int GetSysType(LPCTSTR systemName);
// The name that a code stands for; "" for a number that is none.
ZEF_PIPEWIRE_PORT CString GetSystypeName(int systemType);
