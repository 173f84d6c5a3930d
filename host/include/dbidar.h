// An array of object ids.
#pragma once

#include "acarray.h"
#include "dbid.h"

typedef AcArray<AcDbObjectId> AcDbObjectIdArray;
