// The entities of drawings: lines, circles, arcs, points, texts, block references and the rest.
//
// A new one lies at the origin, on layer 0. Coordinates are those of the world unless a call says that they
// are those of the entity's plane (the plane through the origin with its normal).
#pragma once

#include "dbcurve.h"
#include "dbmain.h"
#include "dbsymtb.h"
#include "gedblar.h"
#include "gepnt2d.h"
#include "gept3dar.h"
#include "gescl3d.h"

class ACDB_PORT AcDbLine : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbLine);
    AcDbLine();
    AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end);
    ~AcDbLine() override;

    AcGePoint3d startPoint() const;
    Acad::ErrorStatus setStartPoint(const AcGePoint3d& point);
    AcGePoint3d endPoint() const;
    Acad::ErrorStatus setEndPoint(const AcGePoint3d& point);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    Acad::ErrorStatus reverseCurve() override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// A point.
class ACDB_PORT AcDbPoint : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPoint);
    AcDbPoint();
    explicit AcDbPoint(const AcGePoint3d& position);
    ~AcDbPoint() override;

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// A circle in a plane.
class ACDB_PORT AcDbCircle : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbCircle);
    AcDbCircle();
    AcDbCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius);
    ~AcDbCircle() override;

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const;
    // eInvalidInput below nought.
    Acad::ErrorStatus setRadius(double radius);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    bool isClosed() const override { return true; }
    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// Counter-clockwise about its normal, from one angle to the other.
class ACDB_PORT AcDbArc : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbArc);
    AcDbArc();
    AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle);
    AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
            double endAngle);
    ~AcDbArc() override;

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& center);
    double radius() const;
    Acad::ErrorStatus setRadius(double radius);
    // In the plane of the arc, 0 to 2 pi.
    double startAngle() const;
    Acad::ErrorStatus setStartAngle(double angle);
    double endAngle() const;
    Acad::ErrorStatus setEndAngle(double angle);
    double totalAngle() const;
    double length() const;
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// A window of a sheet through which model space is seen. The first one of a sheet is the sheet itself.
//
// Setters answer eNotOpenForWrite, and eInvalidInput for what is no size.
class ACDB_PORT AcDbViewport : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbViewport);
    AcDbViewport();
    ~AcDbViewport() override;

    // The frame, in the sheet's units.
    AcGePoint3d centerPoint() const;
    Acad::ErrorStatus setCenterPoint(const AcGePoint3d& center);
    double width() const;
    Acad::ErrorStatus setWidth(double width);
    double height() const;
    Acad::ErrorStatus setHeight(double height);

    // The view: what of the plane through the target, across the direction, is seen, in model units.
    AcGePoint2d viewCenter() const;
    Acad::ErrorStatus setViewCenter(const AcGePoint2d& center);
    double viewHeight() const;
    Acad::ErrorStatus setViewHeight(double height);
    AcGePoint3d viewTarget() const;
    Acad::ErrorStatus setViewTarget(const AcGePoint3d& target);
    AcGeVector3d viewDirection() const;
    Acad::ErrorStatus setViewDirection(const AcGeVector3d& direction);
    // In radians.
    double twistAngle() const;
    Acad::ErrorStatus setTwistAngle(double angle);
    // Sheet units for one model unit.
    double customScale() const;
    Acad::ErrorStatus setCustomScale(double scale);

    // As the system variable CVPORT has it: 1 for the sheet itself, -1 when its layout is not current.
    Adesk::Int16 number() const;
    // False also when its layout is not current.
    bool isOn() const;
    // eNotInDatabase, eNotInPaperspace with the Model tab current.
    Acad::ErrorStatus setOn();
    Acad::ErrorStatus setOff();
    // Whether its scale is protected. eNotApplicable in files before R2000, which can not hold it.
    bool isLocked() const;
    Acad::ErrorStatus setLocked();
    Acad::ErrorStatus setUnlocked();

    // Layers that are not shown here, whatever shows elsewhere. eWrongObjectType and eWrongDatabase for what
    // is no layer of this drawing; then nothing is changed.
    Acad::ErrorStatus freezeLayersInViewport(const AcDbObjectIdArray& layers);
    Acad::ErrorStatus thawLayersInViewport(const AcDbObjectIdArray& layers);
    Acad::ErrorStatus thawAllLayersInViewport();
    bool isLayerFrozenInViewport(const AcDbObjectId& layer) const;
    // Appends them to what the array holds.
    Acad::ErrorStatus getFrozenLayerList(AcDbObjectIdArray& layers) const;

    // That of the sheet itself stays: eCannotBeErasedByCaller.
    Acad::ErrorStatus subErase(bool erasing) override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

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
    ~AcDbText() override;

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
    ~AcDbAttributeDefinition() override;

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
    ~AcDbAttribute() override;

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

// A block where it is inserted: moved, turned, scaled, with attributes of its own.
class ACDB_PORT AcDbBlockReference : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockReference);
    AcDbBlockReference();
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block);
    ~AcDbBlockReference() override;

    // Null when the drawing has no block of its name.
    AcDbObjectId blockTableRecord() const;
    // eWrongObjectType, eWrongDatabase.
    virtual Acad::ErrorStatus setBlockTableRecord(AcDbObjectId block);
    // Where the block's base point stands in the world.
    AcGePoint3d position() const;
    virtual Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    AcGeScale3d scaleFactors() const;
    // eInvalidInput when one of them is nought.
    virtual Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
    // About the normal.
    double rotation() const;
    virtual Acad::ErrorStatus setRotation(double angle);
    // The position stays where it is in the world.
    AcGeVector3d normal() const;
    virtual Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    // From the block's coordinates to the world.
    AcGeMatrix3d blockTransform() const;
    // eCannotScaleNonUniformly for one that does not keep right angles right.
    virtual Acad::ErrorStatus setBlockTransform(const AcGeMatrix3d& transform);

    // Adds a new attribute, which belongs to the reference or, when that is resident, to its drawing; there
    // it stays open for write. eAlreadyInDb, eNotOpenForWrite.
    Acad::ErrorStatus appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute);
    Acad::ErrorStatus appendAttribute(AcDbAttribute* attribute);
    // eInvalidInput for an attribute of another reference.
    Acad::ErrorStatus openAttribute(AcDbAttribute*& attribute, AcDbObjectId id, AcDb::OpenMode mode,
                                    bool openErasedOne = false) const;
    // The caller deletes it.
    AcDbObjectIterator* attributeIterator() const;

    // The box of what it draws, transformed once more. eInvalidExtents when it draws nothing.
    Acad::ErrorStatus geomExtentsBestFit(AcDbExtents& extents,
                                         const AcGeMatrix3d& parent = AcGeMatrix3d::kIdentity) const;

    // Puts what explode gives into the block that the reference stands in; the reference stays. As explode,
    // and nothing is put there when it fails. eNoDatabase for a new one.
    virtual Acad::ErrorStatus explodeToOwnerSpace() const;

    void getEcs(AcGeMatrix3d& matrix) const override;
    // With copies of its attributes.
    AcRxObject* clone() const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // Copies of what stands in the block, with attribute definitions in place of the attributes; nested
    // references stay such. What can not be scaled unevenly is taken apart. eCannotExplodeEntity for external
    // references, blocks that do not allow it, and what holds entities that can not be copied or scaled.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    AcDbObjectId m_newBlock; // of a new reference
};

// A block inserted in rows and columns, which are parallel to the turned axes.
class ACDB_PORT AcDbMInsertBlock : public AcDbBlockReference {
public:
    ACRX_DECLARE_MEMBERS(AcDbMInsertBlock);
    AcDbMInsertBlock();
    AcDbMInsertBlock(const AcGePoint3d& position, AcDbObjectId block, Adesk::Int16 columns, Adesk::Int16 rows,
                     double columnSpacing, double rowSpacing);
    ~AcDbMInsertBlock() override;

    // At least 1; eInvalidInput below.
    Adesk::Int16 columns() const;
    Acad::ErrorStatus setColumns(Adesk::Int16 columns);
    Adesk::Int16 rows() const;
    Acad::ErrorStatus setRows(Adesk::Int16 rows);
    double columnSpacing() const;
    Acad::ErrorStatus setColumnSpacing(double spacing);
    double rowSpacing() const;
    Acad::ErrorStatus setRowSpacing(double spacing);

protected:
    // As in the editor it is not taken apart: eCannotExplodeEntity.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};

// The record that begins a block definition, the one that ends it, and the one that ends the attributes or
// vertices of an entity: they draw nothing.
class ACDB_PORT AcDbBlockBegin : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockBegin);
    AcDbBlockBegin();
    ~AcDbBlockBegin() override;
};

// What ends a block: it has a layer and draws nothing.
class ACDB_PORT AcDbBlockEnd : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockEnd);
    AcDbBlockEnd();
    ~AcDbBlockEnd() override;
};

// What ends the vertices of a polyline and the attributes of a reference.
class ACDB_PORT AcDbSequenceEnd : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSequenceEnd);
    AcDbSequenceEnd();
    ~AcDbSequenceEnd() override;
};

// A face of three or four corners in space, whose edges may be invisible. Indexes from 0 to 3, else
// eInvalidIndex; the edge with an index goes from that corner to the next one.
class ACDB_PORT AcDbFace : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbFace);
    AcDbFace();
    AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2, const AcGePoint3d& pt3,
             Adesk::Boolean e0vis = true, Adesk::Boolean e1vis = true, Adesk::Boolean e2vis = true,
             Adesk::Boolean e3vis = true);
    // With three corners: the fourth is where the third is.
    AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
             Adesk::Boolean e0vis = true, Adesk::Boolean e1vis = true, Adesk::Boolean e2vis = true,
             Adesk::Boolean e3vis = true);
    ~AcDbFace() override;

    Acad::ErrorStatus getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const;
    Acad::ErrorStatus setVertexAt(Adesk::UInt16 index, const AcGePoint3d& point);
    Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 index, Adesk::Boolean& visible) const;
    Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 index);
    Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 index);

protected:
    // The extents hold invisible edges too.
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// A filled figure of three or four corners in its plane. The corners stand as in two rows: 0 and 1, then 2
// below 0 and 3 below 1, so that its rim goes 0, 1, 3, 2. Points are those of the world; the plane is where
// the first one was put. eInvalidIndex above 3.
class ACDB_PORT AcDbSolid : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSolid);
    AcDbSolid();
    AcDbSolid(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2, const AcGePoint3d& pt3);
    AcDbSolid(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2);
    ~AcDbSolid() override;

    Acad::ErrorStatus getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const;
    Acad::ErrorStatus setPointAt(Adesk::UInt16 index, const AcGePoint3d& point);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    // The coordinates in the plane stay.
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // Any transformation that leaves it a plane.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// The same as a solid, drawn as a stroke with a width.
class ACDB_PORT AcDbTrace : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbTrace);
    AcDbTrace();
    AcDbTrace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2, const AcGePoint3d& pt3);
    ~AcDbTrace() override;

    Acad::ErrorStatus getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const;
    Acad::ErrorStatus setPointAt(Adesk::UInt16 index, const AcGePoint3d& point);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// ---- polylines and meshes of vertices that are objects of their own
//
// Vertices of a new polyline belong to it; those of a resident one are resident, and the iterator gives their
// ids. Of a fitted curve, a spline or a smooth mesh the vertices that were made are drawn, not those of its
// frame.

// A vertex of one of the older polylines.
class ACDB_PORT AcDbVertex : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbVertex);
    ~AcDbVertex() override;

protected:
    AcDbVertex();
    // Vertices are drawn by what they belong to, and transformed with it.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};

// Of a flat polyline: in the coordinates of its plane.
class ACDB_PORT AcDb2dVertex : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDb2dVertex);
    AcDb2dVertex();
    explicit AcDb2dVertex(const AcGePoint3d& position, double bulge = 0.0, double startWidth = 0.0,
                          double endWidth = 0.0, double tangent = 0.0, Adesk::Int32 vertexIdentifier = 0);
    ~AcDb2dVertex() override;

    // Control points of a spline are not on the curve; the fit vertices were made from others.
    AcDb::Vertex2dType vertexType() const;
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    // Of the segment from this vertex; see AcDbPolyline. Widths that the vertex does not have are the
    // polyline's: 0 here.
    double startWidth() const;
    Acad::ErrorStatus setStartWidth(double width);
    double endWidth() const;
    Acad::ErrorStatus setEndWidth(double width);
    double bulge() const;
    Acad::ErrorStatus setBulge(double bulge);
    // The direction of a fitted curve, an angle in the plane.
    Adesk::Boolean isTangentUsed() const;
    double tangent() const;
    Acad::ErrorStatus setTangent(double angle);
};

// A vertex of a polyline in space.
class ACDB_PORT AcDb3dPolylineVertex : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolylineVertex);
    AcDb3dPolylineVertex();
    explicit AcDb3dPolylineVertex(const AcGePoint3d& position);
    ~AcDb3dPolylineVertex() override;

    AcDb::Vertex3dType vertexType() const;
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
};

// A vertex of a mesh of rows and columns.
class ACDB_PORT AcDbPolygonMeshVertex : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolygonMeshVertex);
    AcDbPolygonMeshVertex();
    explicit AcDbPolygonMeshVertex(const AcGePoint3d& position);
    ~AcDbPolygonMeshVertex() override;

    AcDb::Vertex3dType vertexType() const;
    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
};

// A vertex of a mesh of faces.
class ACDB_PORT AcDbPolyFaceMeshVertex : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyFaceMeshVertex);
    AcDbPolyFaceMeshVertex();
    explicit AcDbPolyFaceMeshVertex(const AcGePoint3d& position);
    ~AcDbPolyFaceMeshVertex() override;

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
};

// A face of a polyface mesh: up to four vertices, counted from 1 in the order of the mesh; 0 is none, and the
// edge from a negative one is invisible. Indexes of corners from 0 to 3, else eInvalidIndex.
class ACDB_PORT AcDbFaceRecord : public AcDbVertex {
public:
    ACRX_DECLARE_MEMBERS(AcDbFaceRecord);
    AcDbFaceRecord();
    AcDbFaceRecord(Adesk::Int16 vtx0, Adesk::Int16 vtx1, Adesk::Int16 vtx2, Adesk::Int16 vtx3);
    ~AcDbFaceRecord() override;

    Acad::ErrorStatus getVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16& vtxIdx) const;
    Acad::ErrorStatus setVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16 vtxIdx);
    Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 faceIndex, Adesk::Boolean& visible) const;
    Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 faceIndex);
    Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 faceIndex);
};

// The parameter counts the vertices that are drawn.
class ACDB_PORT AcDb2dPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDb2dPolyline);
    AcDb2dPolyline();
    // Points of the plane; bulges may be fewer. A curve or a spline is said to be one, not made.
    AcDb2dPolyline(AcDb::Poly2dType type, const AcGePoint3dArray& vertices, double elevation = 0.0,
                   Adesk::Boolean closed = false, double dfltStartWidth = 0.0, double dfltEndWidth = 0.0,
                   const AcGeDoubleArray* bulges = nullptr);
    ~AcDb2dPolyline() override;

    AcDb::Poly2dType polyType() const;
    bool isClosed() const override;
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus makeOpen();
    // Of vertices that have no widths of their own.
    double defaultStartWidth() const;
    Acad::ErrorStatus setDefaultStartWidth(double width);
    double defaultEndWidth() const;
    Acad::ErrorStatus setDefaultEndWidth(double width);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double elevation() const;
    Acad::ErrorStatus setElevation(double elevation);
    bool isLinetypeGenerationOn() const;
    Acad::ErrorStatus setLinetypeGenerationOn();
    Acad::ErrorStatus setLinetypeGenerationOff();
    Acad::ErrorStatus length(double& length) const;

    // At the end; the second form gives the id, null in a new polyline. eAlreadyInDb, eNotOpenForWrite.
    Acad::ErrorStatus appendVertex(AcDb2dVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb2dVertex* vertex);
    Acad::ErrorStatus openVertex(AcDb2dVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErasedOne = false) const;
    // The caller deletes it.
    AcDbObjectIterator* vertexIterator() const;
    // In the world.
    AcGePoint3d vertexPosition(const AcDb2dVertex& vertex) const;

    void getEcs(AcGeMatrix3d& matrix) const override;
    AcRxObject* clone() const override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // As AcDbPolyline; and what opening a vertex for write answers.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};

// The parameter counts the vertices that are drawn.
class ACDB_PORT AcDb3dPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDb3dPolyline);
    AcDb3dPolyline();
    AcDb3dPolyline(AcDb::Poly3dType type, const AcGePoint3dArray& vertices, Adesk::Boolean closed = false);
    ~AcDb3dPolyline() override;

    AcDb::Poly3dType polyType() const;
    bool isClosed() const override;
    Acad::ErrorStatus makeClosed();
    Acad::ErrorStatus makeOpen();
    Acad::ErrorStatus length(double& length) const;

    Acad::ErrorStatus appendVertex(AcDb3dPolylineVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDb3dPolylineVertex* vertex);
    Acad::ErrorStatus openVertex(AcDb3dPolylineVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErasedOne = false) const;
    AcDbObjectIterator* vertexIterator() const;

    AcRxObject* clone() const override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};

// Rows (M) and columns (N) of vertices, row by row; of a smooth one as many as the densities say. Rows for
// which there are not enough vertices are left out.
class ACDB_PORT AcDbPolygonMesh : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolygonMesh);
    AcDbPolygonMesh();
    AcDbPolygonMesh(AcDb::PolyMeshType type, Adesk::Int16 mSize, Adesk::Int16 nSize,
                    const AcGePoint3dArray& vertices, Adesk::Boolean mClosed = true,
                    Adesk::Boolean nClosed = true);
    ~AcDbPolygonMesh() override;

    AcDb::PolyMeshType polyMeshType() const;
    Adesk::Int16 mSize() const;
    Acad::ErrorStatus setMSize(Adesk::Int16 size);
    Adesk::Int16 nSize() const;
    Acad::ErrorStatus setNSize(Adesk::Int16 size);
    Adesk::Int16 mSurfaceDensity() const;
    Adesk::Int16 nSurfaceDensity() const;
    bool isMClosed() const;
    Acad::ErrorStatus makeMClosed();
    Acad::ErrorStatus makeMOpen();
    bool isNClosed() const;
    Acad::ErrorStatus makeNClosed();
    Acad::ErrorStatus makeNOpen();

    Acad::ErrorStatus appendVertex(AcDbPolygonMeshVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDbPolygonMeshVertex* vertex);
    Acad::ErrorStatus openVertex(AcDbPolygonMeshVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErasedOne = false) const;
    AcDbObjectIterator* vertexIterator() const;

    AcRxObject* clone() const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // Into faces.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};

// Vertices, then faces between them.
class ACDB_PORT AcDbPolyFaceMesh : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyFaceMesh);
    AcDbPolyFaceMesh();
    ~AcDbPolyFaceMesh() override;

    Adesk::Int16 numVertices() const;
    Adesk::Int16 numFaces() const;
    Acad::ErrorStatus appendVertex(AcDbPolyFaceMeshVertex* vertex);
    Acad::ErrorStatus appendVertex(AcDbObjectId& id, AcDbPolyFaceMeshVertex* vertex);
    Acad::ErrorStatus appendFaceRecord(AcDbFaceRecord* face);
    Acad::ErrorStatus appendFaceRecord(AcDbObjectId& id, AcDbFaceRecord* face);
    Acad::ErrorStatus openVertex(AcDbVertex*& vertex, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErasedOne = false) const;
    // Over vertices and faces.
    AcDbObjectIterator* vertexIterator() const;

    AcRxObject* clone() const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // Into faces of three or four corners, lines and points.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};

// A shape of a file of shapes. What it looks like only that file tells: it covers a square of its size.
class ACDB_PORT AcDbShape : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbShape);
    AcDbShape();
    ~AcDbShape() override;

    AcGePoint3d position() const;
    Acad::ErrorStatus setPosition(const AcGePoint3d& position);
    double size() const;
    Acad::ErrorStatus setSize(double size);
    // The caller frees it.
    ACHAR* name() const;
    double rotation() const;
    Acad::ErrorStatus setRotation(double rotation);
    double widthFactor() const;
    double oblique() const;
    double thickness() const;
    AcGeVector3d normal() const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
