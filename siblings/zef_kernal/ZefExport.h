// The kernel's small tools for the current drawing: the working database. Layer names are compared without
// case.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "siblings/zef_kernal/KernalPort.h"

namespace ZefExport {

// The layer of that name; null when there is none.
ZEF_KERNAL_PORT AcDbObjectId GetLayerIdFromString(LPCTSTR layerName);

} // namespace ZefExport
