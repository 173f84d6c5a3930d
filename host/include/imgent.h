// Images from files, which stand in a frame.
#pragma once

#include "dbmain.h"
#include "gept2dar.h"
#include "gept3dar.h"
#include "gevec2d.h"

class ACDB_PORT AcDbRasterImage : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbRasterImage);

    enum ClipBoundaryType { kInvalid, kRect, kPoly };
    enum ImageDisplayOpt { kShow = 1, kShowUnAligned = 2, kClip = 4, kTransparent = 8 };

    AcDbRasterImage();

    // The lower left corner, and the sides of the whole image.
    void getOrientation(AcGePoint3d& origin, AcGeVector3d& u, AcGeVector3d& v) const;
    Acad::ErrorStatus setOrientation(const AcGePoint3d& origin, const AcGeVector3d& u, const AcGeVector3d& v);
    // In pixels.
    AcGeVector2d imageSize(bool bGetCachedValue = false) const;
    // Null when there is none.
    AcDbObjectId imageDefId() const;
    bool isSetDisplayOpt(ImageDisplayOpt option) const;

    bool isClipped() const;
    ClipBoundaryType clipBoundaryType() const;
    // In pixels from the middle of the upper left one, y downwards. A rectangle has two corners.
    const AcGePoint2dArray& clipBoundary() const;
    // From pixels to the world.
    Acad::ErrorStatus getPixelToModelTransform(AcGeMatrix3d& transform) const;
    // The corners of what is shown, in the world; the first one is not repeated.
    Acad::ErrorStatus getVertices(AcGePoint3dArray& vertices) const;

protected:
    // The frame: there the editor finds it.
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    mutable AcGePoint2dArray m_boundary; // what clipBoundary gave
};
