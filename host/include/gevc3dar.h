// An array of vectors.
#pragma once

#include "acarray.h"
#include "gevec3d.h"

typedef AcArray<AcGeVector3d> AcGeVector3dArray;
