// Hatches: areas between loops of edges, filled evenly, with a gradient or with lines.
#pragma once

#include "dbidar.h"
#include "dbmain.h"
#include "gedblar.h"
#include "geintarr.h"
#include "gept2dar.h"
#include "gevptar.h"

// Loops and pattern lie in the plane with the hatch's normal, at its elevation; their coordinates are those
// of that plane. Angles are in radians.
class ACDB_PORT AcDbHatch : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbHatch);

    enum HatchEdgeType { kLine = 1, kCirArc = 2, kEllArc = 3, kSpline = 4 };
    enum HatchLoopType {
        kDefault = 0,
        kExternal = 1,
        kPolyline = 2,
        kDerived = 4,
        kTextbox = 8,
        kOutermost = 0x10,
        kNotClosed = 0x20,
        kSelfIntersecting = 0x40,
        kTextIsland = 0x80,
        kDuplicate = 0x100,
    };
    enum HatchStyle { kNormal = 0, kOuter = 1, kIgnore = 2 };
    enum HatchPatternType { kUserDefined = 0, kPreDefined = 1, kCustomDefined = 2 };
    enum HatchObjectType { kHatchObject = 0, kGradientObject = 1 };
    enum GradientPatternType { kPreDefinedGradient = 0, kUserDefinedGradient = 1 };

    // Solid, without loops.
    AcDbHatch();

    AcGeVector3d normal() const;
    // The loops keep their coordinates, which are then those of the other plane.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
    double elevation() const;
    Acad::ErrorStatus setElevation(double elevation);
    bool associative() const;
    Acad::ErrorStatus setAssociative(bool isAssociative);

    // The loops that are there, whatever number the drawing claims.
    int numLoops() const;
    // HatchLoopType together; kDefault when there is no such loop.
    Adesk::Int32 loopTypeAt(int loopIndex) const;
    // Of a polyline loop: its vertices, and the bulge behind each. eInvalidIndex; eInvalidInput for a loop of
    // edges.
    Acad::ErrorStatus getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGePoint2dArray& vertices,
                                AcGeDoubleArray& bulges) const;
    // Of a loop of edges. eInvalidIndex; eInvalidInput for a polyline loop; otherwise eNotImplementedYet,
    // since the edges would be objects of the geometry library that the host does not have.
    Acad::ErrorStatus getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGeVoidPointerArray& edgePtrs,
                                AcGeIntArray& edgeTypes) const;
    // Appends a closed polyline loop; bulges as many as vertices, or none. eInvalidInput for fewer than two
    // vertices, or numbers that are none.
    Acad::ErrorStatus appendLoop(Adesk::Int32 loopType, const AcGePoint2dArray& vertices,
                                 const AcGeDoubleArray& bulges);
    Acad::ErrorStatus removeLoopAt(int loopIndex);
    // The entities that a loop, or any loop, follows when the hatch is associative.
    Acad::ErrorStatus getAssocObjIdsAt(int loopIndex, AcDbObjectIdArray& ids) const;
    Acad::ErrorStatus getAssocObjIds(AcDbObjectIdArray& ids) const;

    HatchPatternType patternType() const;
    // Valid until the hatch is changed or closed.
    const ACHAR* patternName() const;
    // "SOLID" of the predefined ones, and of the user-defined ones lines at the hatch's angle and space (the
    // name does not matter). Other patterns stand in files of the editor: eNotImplementedYet.
    Acad::ErrorStatus setPattern(HatchPatternType patType, const ACHAR* patName);
    double patternAngle() const;
    Acad::ErrorStatus setPatternAngle(double angle);
    // The distance between lines of a user-defined pattern; of others see patternScale.
    double patternSpace() const;
    Acad::ErrorStatus setPatternSpace(double space);
    double patternScale() const;
    Acad::ErrorStatus setPatternScale(double scale);
    bool patternDouble() const;
    Acad::ErrorStatus setPatternDouble(bool isDouble);
    // The families of lines that the pattern is made of, as they are drawn: angle, a point of the first line,
    // the step to the next one, dashes (gaps below nought). eInvalidIndex.
    int numPatternDefinitions() const;
    Acad::ErrorStatus getPatternDefinitionAt(int index, double& angle, double& baseX, double& baseY,
                                             double& offsetX, double& offsetY, AcGeDoubleArray& dashes) const;

    HatchStyle hatchStyle() const;
    Acad::ErrorStatus setHatchStyle(HatchStyle hstyle);
    bool isSolidFill() const;

    bool isHatch() const { return hatchObjectType() == kHatchObject; }
    bool isGradient() const { return hatchObjectType() == kGradientObject; }
    HatchObjectType hatchObjectType() const;
    GradientPatternType gradientType() const;
    // Valid until the hatch is changed or closed.
    const ACHAR* gradientName() const;
    double gradientAngle() const;
    float gradientShift() const;
    bool getGradientOneColorMode() const;
    float getShadeTintValue() const;

    // eNotImplementedYet: the lines of a pattern are not drawn one by one.
    virtual Acad::ErrorStatus evaluateHatch(bool bUnderestimateNumLines = false);

    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    // The area, of a pattern of lines too: the editor finds a hatch anywhere inside.
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    mutable AcString m_name; // what patternName and gradientName gave
};
