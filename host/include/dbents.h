// The entities of drawings: lines, circles, arcs, points, texts, block references and the rest.
//
// A new one lies at the origin, on layer 0. Coordinates are those of the world unless a call says that they
// are those of the entity's plane (the plane through the origin with its normal).
#pragma once

#include "dbcurve.h"
#include "dbents_polylines.h"
#include "dbents_texts.h"
#include "dbmain.h"
#include "dbsymtb.h"
#include "gepnt2d.h"
#include "gescl3d.h"

class ACDB_PORT AcDbLine : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbLine);
    AcDbLine();
    AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end);

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

// A block where it is inserted: moved, turned, scaled, with attributes of its own.
class ACDB_PORT AcDbBlockReference : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockReference);
    AcDbBlockReference();
    AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block);

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
};

// What ends a block: it has a layer and draws nothing.
class ACDB_PORT AcDbBlockEnd : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockEnd);
    AcDbBlockEnd();
};

// What ends the vertices of a polyline and the attributes of a reference.
class ACDB_PORT AcDbSequenceEnd : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSequenceEnd);
    AcDbSequenceEnd();
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

// A shape of a file of shapes. What it looks like only that file tells: it covers a square of its size.
class ACDB_PORT AcDbShape : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbShape);
    AcDbShape();

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
