// An array of points.
#pragma once

#include "acarray.h"
#include "gepnt3d.h"

typedef AcArray<AcGePoint3d> AcGePoint3dArray;
