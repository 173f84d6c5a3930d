// Wipeouts: areas that hide what lies under them.
#pragma once

#include "imgent.h"

class ACDB_PORT AcDbWipeout : public AcDbRasterImage {
public:
    ACRX_DECLARE_MEMBERS(AcDbWipeout);
    AcDbWipeout();
};
