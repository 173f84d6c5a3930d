#include "dbpl.h"
ACRX_DXF_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, LWPOLYLINE,
                        "ObjectDBX Classes")
AcDbPolyline::AcDbPolyline() = default;
AcDbPolyline::~AcDbPolyline() = default;
