// Paragraph texts: several lines in a width of their own, with codes in them for how words are written.
#pragma once

#include "dbmain.h"

// Hangs from its location by one of nine points, along its direction, in the plane with its normal. All of
// them are the world's.
class ACDB_PORT AcDbMText : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbMText);

    enum AttachmentPoint {
        kTopLeft = 1,
        kTopCenter = 2,
        kTopRight = 3,
        kMiddleLeft = 4,
        kMiddleCenter = 5,
        kMiddleRight = 6,
        kBottomLeft = 7,
        kBottomCenter = 8,
        kBottomRight = 9,
    };
    enum FlowDirection { kLtoR = 1, kRtoL = 2, kTtoB = 3, kBtoT = 4, kByStyle = 5 };
    enum ColumnType { kNoColumns = 0, kStaticColumns = 1, kDynamicColumns = 2 };

    AcDbMText();

    AcGePoint3d location() const;
    Acad::ErrorStatus setLocation(const AcGePoint3d& location);
    AcGeVector3d normal() const;
    // The direction is turned into the new plane.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    AcGeVector3d direction() const;
    // eInvalidInput for one without a length.
    Acad::ErrorStatus setDirection(const AcGeVector3d& direction);
    // Of the direction, from the x axis of the plane.
    double rotation() const;
    Acad::ErrorStatus setRotation(double angle);

    // Where lines break; nought: nowhere. eInvalidInput below nought.
    double width() const;
    Acad::ErrorStatus setWidth(double width);
    // The height of its letters. eInvalidInput unless above nought.
    double textHeight() const;
    Acad::ErrorStatus setTextHeight(double height);
    AttachmentPoint attachment() const;
    // What stands there stays where it is.
    Acad::ErrorStatus setAttachmentMovingLocation(AttachmentPoint attachment);
    // Hangs it from the location by another point.
    Acad::ErrorStatus setAttachment(AttachmentPoint attachment);
    FlowDirection flowDirection() const;
    Acad::ErrorStatus setFlowDirection(FlowDirection direction);
    AcDb::LineSpacingStyle lineSpacingStyle() const;
    Acad::ErrorStatus setLineSpacingStyle(AcDb::LineSpacingStyle style);
    // 0.25 to 4.0; eInvalidInput for others.
    double lineSpacingFactor() const;
    Acad::ErrorStatus setLineSpacingFactor(double factor);

    // Null when the drawing has no style of that name.
    AcDbObjectId textStyle() const;
    // eWrongObjectType, eWrongDatabase.
    Acad::ErrorStatus setTextStyle(AcDbObjectId style);

    // With its codes. The first form is a copy that the caller frees.
    ACHAR* contents() const;
    Acad::ErrorStatus contents(AcString& contents) const;
    int setContents(const ACHAR* contents);
    // Without them; lines end with CR and LF. The first form is a copy that the caller frees.
    ACHAR* text() const;
    Acad::ErrorStatus text(AcString& text) const;

    // Of what stands there, by the widths of signs that the host knows.
    double actualHeight(AcGiWorldDraw* context = nullptr) const;
    double actualWidth() const;

    // Columns: the numbers of files of 2018 and later, which alone keep them in one object.
    Acad::ErrorStatus getColumnType(ColumnType& type) const;
    Acad::ErrorStatus getColumnCount(int& count) const;
    Acad::ErrorStatus getColumnWidth(double& width) const;
    Acad::ErrorStatus getColumnGutterWidth(double& gutter) const;
    Acad::ErrorStatus getColumnFlowReversed(bool& reversed) const;
    Acad::ErrorStatus getColumnAutoHeight(bool& automatic) const;

    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // Single lines of text.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};
