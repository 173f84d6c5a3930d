#pragma once

#include "acarray.h"

typedef AcArray<void*> AcGeVoidPointerArray;
