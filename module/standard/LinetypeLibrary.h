// The linetypes that the module brings along: the table "linetype.dbf" of the system folder, with the columns
// NAME, DESCR and PATTERN, whose patterns are written as in files of linetypes
// (AcDbDatabase::loadLineTypeFile reads both). Its names are read when they are first asked for.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"
#include "dbid.h"

#include <vector>

// Reads the names of the table anew.
ZEF_PIPESYSTEM_PORT void ReloadLinetypes();
// Appends the names of the table, in its order.
ZEF_PIPESYSTEM_PORT void GetLinetypeNames(std::vector<CString>& names);

namespace KolTool {

// The linetype of that name, without case, in the working drawing; it is made from the table when it is
// missing, or as a linetype file (".lin") of the support path says. The drawing's style "Standard" stands in
// for a text style that it lacks. Null when none of them has it.
ZEF_PIPESYSTEM_PORT AcDbObjectId LoadVrLineType(LPCTSTR name);

} // namespace KolTool
