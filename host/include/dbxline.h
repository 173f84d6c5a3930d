// Lines without end to both sides.
#pragma once

#include "dbcurve.h"
#include "gevec3d.h"

// Through a point in a direction. The parameter is the length from the point; there are no ends, and no
// extents.
class ACDB_PORT AcDbXline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbXline);
    AcDbXline();

    AcGePoint3d basePoint() const;
    Acad::ErrorStatus setBasePoint(const AcGePoint3d& point);
    // Of length one. eInvalidInput for a direction without length.
    AcGeVector3d unitDir() const;
    Acad::ErrorStatus setUnitDir(const AcGeVector3d& direction);
    AcGePoint3d secondPoint() const;
    // The direction becomes that from the base to this point; eInvalidInput for the base itself.
    Acad::ErrorStatus setSecondPoint(const AcGePoint3d& point);

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
