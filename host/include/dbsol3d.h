// Bodies whose geometry only their modeller reads.
#pragma once

#include "dbmain.h"

// It draws what was saved for programs without the modeller, which is mostly nothing.
class ACDB_PORT AcDb3dSolid : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDb3dSolid);
    AcDb3dSolid();

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
};
