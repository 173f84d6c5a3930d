// Feature control frames: boxes with geometric tolerances.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbFcf : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbFcf);
    AcDbFcf();

    // With its codes: %%v between boxes, a line feed between rows. The caller frees it.
    ACHAR* text() const;
    Acad::ErrorStatus setText(const ACHAR* text);
    // The middle of the left side of the first row.
    AcGePoint3d location() const;
    Acad::ErrorStatus setLocation(const AcGePoint3d& location);
    AcGeVector3d direction() const;
    AcGeVector3d normal() const;
    AcDbObjectId dimensionStyle() const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
