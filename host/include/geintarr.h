// An array of integers.
#pragma once

#include "acarray.h"

typedef AcArray<int> AcGeIntArray;
