// An array of plain pointers.
#pragma once

#include "acarray.h"

typedef AcArray<void*> AcDbVoidPtrArray;
