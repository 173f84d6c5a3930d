// The part of dbents.h, which programs include, that holds texts and attributes.
#pragma once

#include "dbmain.h"

// One line of text.
//
// It is tied down by its position when it is left-justified on its base line, else by its alignment point;
// aligned and fitted texts lie between the two. Position and alignment point are points of the world.
class ACDB_PORT AcDbText : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbText);
    AcDbText();
    // A height of nought: the style's, when it has one.
    AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style = AcDbObjectId::kNull,
             double height = 0, double rotation = 0);

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    // The origin for one that is left-justified on its base line.
    AcGePoint3d alignmentPoint() const;
    // eNotApplicable for one that is left-justified on its base line.
    Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& point);
    Adesk::Boolean isDefaultAlignment() const;
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    // The slant. eInvalidInput from 85 degrees on.
    double oblique() const;
    Acad::ErrorStatus setOblique(double angle);
    double rotation() const;
    Acad::ErrorStatus setRotation(double angle);
    // eInvalidInput unless above nought; the width factor too.
    double height() const;
    Acad::ErrorStatus setHeight(double height);
    double widthFactor() const;
    Acad::ErrorStatus setWidthFactor(double factor);

    // The text with its codes (%%d for the sign of degrees). The first form is a copy that the caller frees,
    // the second one looked on while the object is open.
    ACHAR* textString() const;
    const ACHAR* textStringConst() const;
    Acad::ErrorStatus textString(AcString& text) const;
    Acad::ErrorStatus setTextString(const ACHAR* text);

    // Null when the drawing has no style of that name.
    AcDbObjectId textStyle() const;
    // eWrongObjectType, eWrongDatabase.
    Acad::ErrorStatus setTextStyle(AcDbObjectId style);

    // Backwards, and standing on its head.
    Adesk::Boolean isMirroredInX() const;
    Acad::ErrorStatus mirrorInX(Adesk::Boolean mirrored);
    Adesk::Boolean isMirroredInY() const;
    Acad::ErrorStatus mirrorInY(Adesk::Boolean mirrored);

    AcDb::TextHorzMode horizontalMode() const;
    Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
    AcDb::TextVertMode verticalMode() const;
    Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);
    // Moves the position to where the text begins by its alignment, by the widths of signs that the host
    // knows; of an aligned text the height follows too, of a fitted one the width factor. Setters do so.
    Acad::ErrorStatus adjustAlignment(const AcDbDatabase* database = nullptr);

    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    mutable AcString m_textSeen;
};

class AcDbMText;

// What a block asks for when it is inserted: the attribute that each reference gets, its tag and the question
// for its value. In a block definition a constant one shows its text; elsewhere its tag is shown.
class ACDB_PORT AcDbAttributeDefinition : public AcDbText {
public:
    ACRX_DECLARE_MEMBERS(AcDbAttributeDefinition);
    AcDbAttributeDefinition();
    AcDbAttributeDefinition(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag,
                            const ACHAR* prompt, AcDbObjectId style = AcDbObjectId::kNull);

    // Copies that the caller frees.
    ACHAR* prompt() const;
    Acad::ErrorStatus setPrompt(const ACHAR* prompt);
    ACHAR* tag() const;
    // eInvalidInput for none, and for one with blanks.
    Acad::ErrorStatus setTag(const ACHAR* tag);

    Adesk::Boolean isInvisible() const;
    Acad::ErrorStatus setInvisible(Adesk::Boolean invisible);
    Adesk::Boolean isConstant() const;
    Acad::ErrorStatus setConstant(Adesk::Boolean constant);
    Adesk::Boolean isVerifiable() const;
    Acad::ErrorStatus setVerifiable(Adesk::Boolean verifiable);
    Adesk::Boolean isPreset() const;
    Acad::ErrorStatus setPreset(Adesk::Boolean preset);
    Adesk::UInt16 fieldLength() const;
    Acad::ErrorStatus setFieldLength(Adesk::UInt16 length);
    bool lockPositionInBlock() const;
    Acad::ErrorStatus setLockPositionInBlock(bool locked);

    // Of several lines: as a paragraph text, which the caller deletes; null for one of a single line.
    bool isMTextAttributeDefinition() const;
    AcDbMText* getMTextAttributeDefinition() const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Adesk::UInt32 subSetAttributes(AcGiDrawableTraits* traits) override;
};

// A text of a block reference, named by its tag.
class ACDB_PORT AcDbAttribute : public AcDbText {
public:
    ACRX_DECLARE_MEMBERS(AcDbAttribute);
    AcDbAttribute();
    AcDbAttribute(const AcGePoint3d& position, const ACHAR* text, const ACHAR* tag,
                  AcDbObjectId style = AcDbObjectId::kNull);

    // A copy that the caller frees.
    ACHAR* tag() const;
    // eInvalidInput for none, and for one with blanks.
    Acad::ErrorStatus setTag(const ACHAR* tag);
    // Invisible ones are drawn when the drawing's ATTMODE is 2, visible ones not when it is 0.
    Adesk::Boolean isInvisible() const;
    Acad::ErrorStatus setInvisible(Adesk::Boolean invisible);
    Adesk::Boolean isConstant() const;
    Adesk::Boolean isVerifiable() const;
    Adesk::Boolean isPreset() const;
    Adesk::UInt16 fieldLength() const;
    Acad::ErrorStatus setFieldLength(Adesk::UInt16 length);
    bool lockPositionInBlock() const;
    Acad::ErrorStatus setLockPositionInBlock(bool locked);

    // Becomes what a definition asks for, moved to where a reference with this transformation has it; tag and
    // text are the definition's.
    Acad::ErrorStatus setAttributeFromBlock(const AcDbAttributeDefinition* definition,
                                            const AcGeMatrix3d& blockTransform);

    // Of several lines: as a paragraph text, which the caller deletes; null for one of a single line.
    bool isMTextAttribute() const;
    AcDbMText* getMTextAttribute() const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Adesk::UInt32 subSetAttributes(AcGiDrawableTraits* traits) override;
};
