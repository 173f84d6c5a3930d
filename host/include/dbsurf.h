// Surfaces whose geometry only their modeller reads.
#pragma once

#include "dbmain.h"

// They draw what was saved for programs without the modeller, which is mostly nothing.
class ACDB_PORT AcDbSurface : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSurface);
    AcDbSurface();

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
};
