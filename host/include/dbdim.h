// Dimensions of all kinds.
//
// What a dimension looks like stands in a block of its own, which the editor made; it is drawn from there.
// One without a block is drawn by its points, plainly.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbDimension : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbDimension);

    // The block record with its look; null when it has none.
    AcDbObjectId dimBlockId() const;
    Acad::ErrorStatus setDimBlockId(const AcDbObjectId& blockId);
    // By what the block's contents, which are in coordinates of the world, were moved since they were made.
    AcGePoint3d dimBlockPosition() const;
    Acad::ErrorStatus setDimBlockPosition(const AcGePoint3d& position);

    // The middle of the text.
    AcGePoint3d textPosition() const;
    Acad::ErrorStatus setTextPosition(const AcGePoint3d& position);
    bool isUsingDefaultTextPosition() const;
    Acad::ErrorStatus useSetTextPosition();
    Acad::ErrorStatus useDefaultTextPosition();

    AcGeVector3d normal() const;
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double elevation() const;
    // What is written instead of the measurement, which "<>" stands for in it; empty for the measurement
    // alone. The caller frees it (acutDelString).
    ACHAR* dimensionText() const;
    Acad::ErrorStatus setDimensionText(const ACHAR* text);
    // Of the text against the direction that the dimension's style gives it.
    double textRotation() const;
    Acad::ErrorStatus setTextRotation(double rotation);
    double horizontalRotation() const;
    // Null when the drawing has no such style.
    AcDbObjectId dimensionStyle() const;
    Acad::ErrorStatus setDimensionStyle(AcDbObjectId styleId);

    // What was measured when the dimension was saved, else what its points give: a length, or an angle in
    // radians.
    Acad::ErrorStatus measurement(double& measurement) const;
    // eNotImplementedYet: blocks of dimensions are not made here.
    virtual Acad::ErrorStatus recomputeDimBlock(bool forceUpdate = true);

protected:
    AcDbDimension();

    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // A block can be moved with its dimension; when it is turned, scaled or mirrored, it is left behind.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // What its block holds.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};

// Between two points, measured along a direction in the dimension's plane.
class ACDB_PORT AcDbRotatedDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbRotatedDimension);
    AcDbRotatedDimension();

    AcGePoint3d xLine1Point() const;
    Acad::ErrorStatus setXLine1Point(const AcGePoint3d& point);
    AcGePoint3d xLine2Point() const;
    Acad::ErrorStatus setXLine2Point(const AcGePoint3d& point);
    // Through which the dimension line runs.
    AcGePoint3d dimLinePoint() const;
    Acad::ErrorStatus setDimLinePoint(const AcGePoint3d& point);
    double rotation() const;
    Acad::ErrorStatus setRotation(double rotation);
    // The slant of the lines from the points; nought for upright ones.
    double oblique() const;
};

// Between two points, measured from one to the other.
class ACDB_PORT AcDbAlignedDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbAlignedDimension);
    AcDbAlignedDimension();

    AcGePoint3d xLine1Point() const;
    Acad::ErrorStatus setXLine1Point(const AcGePoint3d& point);
    AcGePoint3d xLine2Point() const;
    Acad::ErrorStatus setXLine2Point(const AcGePoint3d& point);
    AcGePoint3d dimLinePoint() const;
    Acad::ErrorStatus setDimLinePoint(const AcGePoint3d& point);
    double oblique() const;
};

// The angle at a point between the directions to two others.
class ACDB_PORT AcDb3PointAngularDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDb3PointAngularDimension);
    AcDb3PointAngularDimension();

    // Through which the arc runs.
    AcGePoint3d arcPoint() const;
    Acad::ErrorStatus setArcPoint(const AcGePoint3d& point);
    AcGePoint3d centerPoint() const;
    Acad::ErrorStatus setCenterPoint(const AcGePoint3d& point);
    AcGePoint3d xLine1Point() const;
    Acad::ErrorStatus setXLine1Point(const AcGePoint3d& point);
    AcGePoint3d xLine2Point() const;
    Acad::ErrorStatus setXLine2Point(const AcGePoint3d& point);
};

// The angle between two lines.
class ACDB_PORT AcDb2LineAngularDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDb2LineAngularDimension);
    AcDb2LineAngularDimension();

    AcGePoint3d arcPoint() const;
    Acad::ErrorStatus setArcPoint(const AcGePoint3d& point);
    AcGePoint3d xLine1Start() const;
    Acad::ErrorStatus setXLine1Start(const AcGePoint3d& point);
    AcGePoint3d xLine1End() const;
    Acad::ErrorStatus setXLine1End(const AcGePoint3d& point);
    AcGePoint3d xLine2Start() const;
    Acad::ErrorStatus setXLine2Start(const AcGePoint3d& point);
    AcGePoint3d xLine2End() const;
    Acad::ErrorStatus setXLine2End(const AcGePoint3d& point);
};

// The radius of a circle or an arc.
class ACDB_PORT AcDbRadialDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbRadialDimension);
    AcDbRadialDimension();

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& point);
    // On the circle.
    AcGePoint3d chordPoint() const;
    Acad::ErrorStatus setChordPoint(const AcGePoint3d& point);
    double leaderLength() const;
};

// The diameter of a circle or an arc.
class ACDB_PORT AcDbDiametricDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbDiametricDimension);
    AcDbDiametricDimension();

    // On opposite sides of the circle.
    AcGePoint3d chordPoint() const;
    Acad::ErrorStatus setChordPoint(const AcGePoint3d& point);
    AcGePoint3d farChordPoint() const;
    Acad::ErrorStatus setFarChordPoint(const AcGePoint3d& point);
    double leaderLength() const;
};

// How far a point is from an origin, along one axis.
class ACDB_PORT AcDbOrdinateDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbOrdinateDimension);
    AcDbOrdinateDimension();

    AcGePoint3d origin() const;
    Acad::ErrorStatus setOrigin(const AcGePoint3d& point);
    AcGePoint3d definingPoint() const;
    Acad::ErrorStatus setDefiningPoint(const AcGePoint3d& point);
    AcGePoint3d leaderEndPoint() const;
    Acad::ErrorStatus setLeaderEndPoint(const AcGePoint3d& point);
    bool isUsingXAxis() const;
    bool isUsingYAxis() const { return !isUsingXAxis(); }
};

// The length of an arc.
class ACDB_PORT AcDbArcDimension : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbArcDimension);
    AcDbArcDimension();

    AcGePoint3d arcPoint() const;
    Acad::ErrorStatus setArcPoint(const AcGePoint3d& point);
    AcGePoint3d centerPoint() const;
    Acad::ErrorStatus setCenterPoint(const AcGePoint3d& point);
    AcGePoint3d xLine1Point() const;
    Acad::ErrorStatus setXLine1Point(const AcGePoint3d& point);
    AcGePoint3d xLine2Point() const;
    Acad::ErrorStatus setXLine2Point(const AcGePoint3d& point);
    AcGePoint3d leader1Point() const;
    AcGePoint3d leader2Point() const;
    bool isPartial() const;
    bool hasLeader() const;
    double arcStartParam() const;
    double arcEndParam() const;
};

// A radius whose dimension line does not reach the center.
class ACDB_PORT AcDbRadialDimensionLarge : public AcDbDimension {
public:
    ACRX_DECLARE_MEMBERS(AcDbRadialDimensionLarge);
    AcDbRadialDimensionLarge();

    AcGePoint3d center() const;
    Acad::ErrorStatus setCenter(const AcGePoint3d& point);
    AcGePoint3d chordPoint() const;
    Acad::ErrorStatus setChordPoint(const AcGePoint3d& point);
    AcGePoint3d overrideCenter() const;
    Acad::ErrorStatus setOverrideCenter(const AcGePoint3d& point);
    AcGePoint3d jogPoint() const;
    Acad::ErrorStatus setJogPoint(const AcGePoint3d& point);
};
