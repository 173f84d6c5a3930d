// Records of symbol tables that stand in the current drawing for those of another one: found by name, and
// made when they are missing.
#pragma once

#include "dbid.h"

namespace RecordCopies {

// A linetype, one of a reference ("plan|DASHED") too. Null for one that is not there and has texts or shapes
// in it.
AcDbObjectId Linetype(AcDbObjectId source);
// A text style.
AcDbObjectId TextStyle(AcDbObjectId source);

} // namespace RecordCopies
