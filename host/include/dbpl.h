// Light polylines: vertices in one plane, with bulges and widths.
#pragma once

#include "dbcurve.h"

class ACDB_PORT AcDbPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyline);
    AcDbPolyline();
    ~AcDbPolyline() override;
};
