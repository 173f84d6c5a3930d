// How drawables draw: the geometry that takes lines, arcs, areas and texts, and the traits that say how they
// look.
//
// Coordinates are those of the model; pushModelTransform puts a transformation between what is drawn from
// then on and the world. Pictures, extents, picking and exploding all come from this one drawing.
#pragma once

#include "acdb.h"
#include "dbcolor.h"
#include "dbid.h"
#include "drawable.h"
#include "gemat3d.h"
#include "gept2dar.h"
#include "gept3dar.h"
#include "rxboiler.h"

class AcDbPolyline;

enum AcGiRegenType {
    eAcGiRegenTypeInvalid = 0,
    kAcGiStandardDisplay = 2,
    kAcGiHideOrShadeCommand,
    kAcGiShadedDisplay,
    kAcGiForExplode,
    kAcGiSaveWorldDrawForProxy,
    kAcGiForExtents
};

enum AcGiFillType { kAcGiFillAlways = 1, kAcGiFillNever };

enum AcGiArcType { kAcGiArcSimple = 0, kAcGiArcSector, kAcGiArcChord };

enum AcGiDeviationType {
    kAcGiMaxDevForCircle = 0,
    kAcGiMaxDevForCurve,
    kAcGiMaxDevForBoundary,
    kAcGiMaxDevForIsoline,
    kAcGiMaxDevForFacet
};

// How the geometry drawn next looks.
class ACGI_PORT AcGiSubEntityTraits : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcGiSubEntityTraits);

    virtual void setColor(const Adesk::UInt16 color) = 0;
    virtual void setTrueColor(const AcCmEntityColor& color) = 0;
    virtual void setLayer(const AcDbObjectId layerId) = 0;
    virtual void setLineType(const AcDbObjectId linetypeId) = 0;
    virtual void setLineTypeScale(double scale = 1.0) = 0;
    virtual void setLineWeight(const AcDb::LineWeight weight) = 0;
    virtual void setFillType(const AcGiFillType type) = 0;
    virtual void setThickness(double thickness) = 0;
    // Tells the parts of an entity apart when one is picked.
    virtual void setSelectionMarker(const Adesk::LongPtr marker) = 0;

    virtual Adesk::UInt16 color() const = 0;
    virtual AcCmEntityColor trueColor() const = 0;
    virtual AcDbObjectId layerId() const = 0;
    virtual AcDbObjectId lineTypeId() const = 0;
    virtual double lineTypeScale() const = 0;
    virtual AcDb::LineWeight lineWeight() const = 0;
    virtual AcGiFillType fillType() const = 0;
    virtual double thickness() const = 0;
};

class ACGI_PORT AcGiDrawableTraits : public AcGiSubEntityTraits {
public:
    ACRX_DECLARE_MEMBERS(AcGiDrawableTraits);
};

// What takes the drawing. The calls give false to go on, true when the drawing may stop.
class ACGI_PORT AcGiGeometry : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcGiGeometry);

    virtual void getModelToWorldTransform(AcGeMatrix3d& matrix) const = 0;
    virtual void getWorldToModelTransform(AcGeMatrix3d& matrix) const = 0;
    // From the plane with this normal to the model; the matrix is applied first to what is drawn next.
    virtual Adesk::Boolean pushModelTransform(const AcGeVector3d& normal) = 0;
    virtual Adesk::Boolean pushModelTransform(const AcGeMatrix3d& matrix) = 0;
    virtual Adesk::Boolean popModelTransform() = 0;

    virtual Adesk::Boolean circle(const AcGePoint3d& center, const double radius,
                                  const AcGeVector3d& normal) const = 0;
    // Through three points.
    virtual Adesk::Boolean circle(const AcGePoint3d& first, const AcGePoint3d& second,
                                  const AcGePoint3d& third) const = 0;
    // From the direction of `startVector`, counter-clockwise about the normal.
    virtual Adesk::Boolean circularArc(const AcGePoint3d& center, const double radius,
                                       const AcGeVector3d& normal, const AcGeVector3d& startVector,
                                       const double sweepAngle,
                                       const AcGiArcType arcType = kAcGiArcSimple) const = 0;
    virtual Adesk::Boolean circularArc(const AcGePoint3d& start, const AcGePoint3d& point,
                                       const AcGePoint3d& end,
                                       const AcGiArcType arcType = kAcGiArcSimple) const = 0;
    virtual Adesk::Boolean polyline(const Adesk::UInt32 nbPoints, const AcGePoint3d* points,
                                    const AcGeVector3d* normal = nullptr,
                                    Adesk::LongPtr baseSubEntMarker = -1) const = 0;
    // Closed; filled unless the fill type forbids it.
    virtual Adesk::Boolean polygon(const Adesk::UInt32 nbPoints, const AcGePoint3d* points) const = 0;
    // Rows and columns of points joined to a net.
    virtual Adesk::Boolean mesh(const Adesk::UInt32 rows, const Adesk::UInt32 columns,
                                const AcGePoint3d* points) const = 0;
    // Faces over a list of points: each a count and that many indexes; a negative count is a hole.
    virtual Adesk::Boolean shell(const Adesk::UInt32 nbVertex, const AcGePoint3d* vertices,
                                 const Adesk::UInt32 faceListSize, const Adesk::Int32* faces) const = 0;
    // The width is a factor, the slant an angle.
    virtual Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                                const AcGeVector3d& direction, const double height, const double width,
                                const double oblique, const ACHAR* message) const = 0;
    // Without end to both sides, and to one.
    virtual Adesk::Boolean xline(const AcGePoint3d& first, const AcGePoint3d& second) const = 0;
    virtual Adesk::Boolean ray(const AcGePoint3d& first, const AcGePoint3d& second) const = 0;
    // A polyline with its arcs and widths.
    virtual Adesk::Boolean pline(const AcDbPolyline& polyline, Adesk::UInt32 fromIndex = 0,
                                 Adesk::UInt32 numSegs = 0) const = 0;
    // Another drawable, with attributes of its own.
    virtual Adesk::Boolean draw(AcGiDrawable* drawable) const = 0;
};

class ACGI_PORT AcGiWorldGeometry : public AcGiGeometry {
public:
    ACRX_DECLARE_MEMBERS(AcGiWorldGeometry);
    // Two points between which everything lies, instead of what is drawn.
    virtual void setExtents(AcGePoint3d* extents) const = 0;
};

class ACGI_PORT AcGiCommonDraw : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcGiCommonDraw);
    virtual AcGiRegenType regenType() const = 0;
    virtual bool regenAbort() const = 0;
    virtual AcGiSubEntityTraits& subEntityTraits() const = 0;
    virtual AcGiGeometry* rawGeometry() const = 0;
    virtual bool isDragging() const = 0;
    // How far a chord may be from its curve near a point.
    virtual double deviation(const AcGiDeviationType type, const AcGePoint3d& point) const = 0;
};

class ACGI_PORT AcGiWorldDraw : public AcGiCommonDraw {
public:
    ACRX_DECLARE_MEMBERS(AcGiWorldDraw);
    virtual AcGiWorldGeometry& geometry() const = 0;
};
