// An array of reals.
#pragma once

#include "acarray.h"

typedef AcArray<double> AcGeDoubleArray;
