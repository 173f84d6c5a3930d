// Underlays: pages of other documents.
#pragma once

#include "dbmain.h"
#include "gept2dar.h"
#include "gescl3d.h"

class ACDB_PORT AcDbUnderlayReference : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbUnderlayReference);

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGeScale3d scaleFactors() const;
    double rotation() const;
    AcGeVector3d normal() const;
    // From the page to the world.
    AcGeMatrix3d transform() const;
    // Null when there is none.
    AcDbObjectId definitionId() const;
    bool isClipped() const;
    bool isOn() const;
    // In the coordinates of the page; two corners are those of a rectangle.
    const AcGePoint2dArray& clipBoundary() const;

protected:
    AcDbUnderlayReference();
    // The rim of what is shown. How large a page is only its document tells: of one that is not clipped the
    // corner.
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    mutable AcGePoint2dArray m_boundary; // what clipBoundary gave
};

// A page of a PDF file that is shown below the drawing.
class ACDB_PORT AcDbPdfReference : public AcDbUnderlayReference {
public:
    ACRX_DECLARE_MEMBERS(AcDbPdfReference);
    AcDbPdfReference();
};

// The same of a DWF file.
class ACDB_PORT AcDbDwfReference : public AcDbUnderlayReference {
public:
    ACRX_DECLARE_MEMBERS(AcDbDwfReference);
    AcDbDwfReference();
};

// The same of a DGN file.
class ACDB_PORT AcDbDgnReference : public AcDbUnderlayReference {
public:
    ACRX_DECLARE_MEMBERS(AcDbDgnReference);
    AcDbDgnReference();
};
