// Bodies whose geometry only their modeller reads.
#pragma once

#include "dbmain.h"

// It draws what was saved for programs without the modeller, which is mostly nothing.
class ACDB_PORT AcDbBody : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBody);
    AcDbBody();

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
};
