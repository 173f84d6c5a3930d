// Frames that hold documents of other programs.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbOle2Frame : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbOle2Frame);
    AcDbOle2Frame();

    // The upper left corner.
    void getLocation(AcGePoint3d& location) const;
    AcGePoint3d location() const;
    // Below nought never.
    double wcsWidth() const;
    double wcsHeight() const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // What keeps its sides upright; eCannotScaleNonUniformly otherwise.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
