// An array of vectors.
#pragma once

#include "acarray.h"
#include "gevec2d.h"

typedef AcArray<AcGeVector2d> AcGeVector2dArray;
