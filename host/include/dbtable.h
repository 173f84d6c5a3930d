// Tables, which are drawn from blocks of their own that the editor made.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbTable : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbTable);
    AcDbTable();

    // The upper left corner.
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    // Of the rows.
    AcGeVector3d direction() const;
    AcGeVector3d normal() const;
    // Null when the drawing does not have its block.
    AcDbObjectId blockTableRecord() const;
    // Nought when the groups do not tell.
    Adesk::UInt32 numRows() const;
    Adesk::UInt32 numColumns() const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // Its lengths stay as they are: eCannotScaleNonUniformly for what scales.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
