// How drawables draw: the geometry that takes lines, arcs, areas and texts, and the traits that say how they
// look.
//
// Coordinates are those of the model; pushModelTransform puts a transformation between what is drawn from
// then on and the world. Pictures, extents, picking and exploding all come from this one drawing.
#pragma once

#include "PAL/api/FontFamily.h"
#include "PAL/api/FontPitch.h"
#include "PAL/api/charset.h"
#include "acdb.h"
#include "dbcolor.h"
#include "dbid.h"
#include "drawable.h"
#include "gemat3d.h"
#include "gept2dar.h"
#include "gept3dar.h"
#include "rxboiler.h"

#include <memory>

class AcDbPolyline;
class AcGiWorldDraw;

namespace gi {
struct font;
}

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

// The traits that a drawable gives to all that it draws.
class ACGI_PORT AcGiDrawableTraits : public AcGiSubEntityTraits {
public:
    ACRX_DECLARE_MEMBERS(AcGiDrawableTraits);
};

// How a line of text is written: its font, height, width and slant.
class ACGI_PORT AcGiTextStyle : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcGiTextStyle);
    // The font txt, one unit high.
    AcGiTextStyle();
    AcGiTextStyle(const ACHAR* fontName, const ACHAR* bigFontName, double textSize, double xScale,
                  double obliqueAngle, double trackingPercent, Adesk::Boolean isBackward,
                  Adesk::Boolean isUpsideDown, Adesk::Boolean isVertical, Adesk::Boolean isOverlined,
                  Adesk::Boolean isUnderlined);
    ~AcGiTextStyle() override;

    void setTextSize(double size) { m_size = size; }
    void setXScale(double scale) { m_scale = scale; }
    void setObliquingAngle(double angle) { m_slant = angle; }
    // By what the steps between letters grow: 1.0 for those of the font.
    void setTrackingPercent(double tracking) { m_tracking = tracking; }
    // Mirrored about where the text begins, from right to left and from top to bottom.
    void setBackward(Adesk::Boolean backward) { m_backward = backward; }
    void setUpsideDown(Adesk::Boolean upsideDown) { m_upsideDown = upsideDown; }
    // Letters of fonts that are drawn by strokes stand below each other; others run along their direction all
    // the same.
    void setVertical(Adesk::Boolean vertical) { m_vertical = vertical; }
    void setUnderlined(Adesk::Boolean underlined) { m_underlined = underlined; }
    void setOverlined(Adesk::Boolean overlined) { m_overlined = overlined; }
    void setStrikethrough(Adesk::Boolean struck) { m_struck = struck; }
    void setFileName(const ACHAR* fontName);
    void setBigFontFileName(const ACHAR* bigFontName);
    // A font of the system. A typeface without a name: the font of the file again.
    Acad::ErrorStatus setFont(const ACHAR* typeface, Adesk::Boolean bold, Adesk::Boolean italic,
                              Charset charset, Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch,
                              Autodesk::AutoCAD::PAL::FontUtils::FontFamily family);

    double textSize() const { return m_size; }
    double xScale() const { return m_scale; }
    double obliquingAngle() const { return m_slant; }
    double trackingPercent() const { return m_tracking; }
    Adesk::Boolean isBackward() const { return m_backward; }
    Adesk::Boolean isUpsideDown() const { return m_upsideDown; }
    Adesk::Boolean isVertical() const { return m_vertical; }
    Adesk::Boolean isUnderlined() const { return m_underlined; }
    Adesk::Boolean isOverlined() const { return m_overlined; }
    Adesk::Boolean isStrikethrough() const { return m_struck; }
    // Valid until the style is changed.
    const ACHAR* fileName() const;
    const ACHAR* bigFontFileName() const;
    // The typeface is a text that the caller frees.
    Acad::ErrorStatus font(ACHAR*& typeface, Adesk::Boolean& bold, Adesk::Boolean& italic, Charset& charset,
                           Autodesk::AutoCAD::PAL::FontUtils::FontPitch& pitch,
                           Autodesk::AutoCAD::PAL::FontUtils::FontFamily& family) const;

    // Width and height of a text's box, by the widths of signs that stand for those of its font. Codes like
    // %%c count as what they mean unless `raw`; all of the text when `len` is below nought.
    AcGePoint2d extents(const ACHAR* text, Adesk::Boolean penups, int len, Adesk::Boolean raw,
                        AcGiWorldDraw* context = nullptr) const;

    // The host's side of the font; no concern of programs.
    const gi::font& imp() const { return *m_font; }
    void setImp(std::shared_ptr<const gi::font> font) { m_font = std::move(font); }

private:
    std::shared_ptr<const gi::font> m_font; // styles of one font share it
    double m_size = 1.0;
    double m_scale = 1.0;
    double m_slant = 0.0;
    double m_tracking = 1.0;
    bool m_backward = false;
    bool m_upsideDown = false;
    bool m_vertical = false;
    bool m_underlined = false;
    bool m_overlined = false;
    bool m_struck = false;
};

// What limits a drawing: a polygon that stands upright in a space of its own. Two points are the corners of a
// box. What is drawn comes into that space by undoing m_xInverseBlockRefXForm (which leads from the space in
// which the clip was made to what is drawn), then by m_xToClipSpace.
struct AcGiClipBoundary {
    AcGeVector3d m_vNormal;
    AcGePoint3d m_ptPoint;
    AcGePoint2dArray m_aptPoints;
    AcGeMatrix3d m_xToClipSpace;
    AcGeMatrix3d m_xInverseBlockRefXForm;
    // Along the clip space's z axis: nothing in front of the one and behind the other, where wanted.
    double m_dFrontClipZ = 0.0;
    double m_dBackClipZ = 0.0;
    Adesk::Boolean m_bClippingFront = false;
    Adesk::Boolean m_bClippingBack = false;
    Adesk::Boolean m_bDrawBoundary = false;
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
    // Limits what is drawn next, inside of the limits that there are. False, and nothing pushed, for a
    // boundary that is none: fewer than two points, or a space without room.
    virtual Adesk::Boolean pushClipBoundary(AcGiClipBoundary* boundary) = 0;
    virtual void popClipBoundary() = 0;

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
    // From where it begins on its base line; `length` of -1 for all of the message, `raw` when codes like %%c
    // are to be shown as they stand.
    virtual Adesk::Boolean text(const AcGePoint3d& position, const AcGeVector3d& normal,
                                const AcGeVector3d& direction, const ACHAR* message,
                                const Adesk::Int32 length, const Adesk::Boolean raw,
                                const AcGiTextStyle& style) const = 0;
    // Without end to both sides, and to one.
    virtual Adesk::Boolean xline(const AcGePoint3d& first, const AcGePoint3d& second) const = 0;
    virtual Adesk::Boolean ray(const AcGePoint3d& first, const AcGePoint3d& second) const = 0;
    // A polyline with its arcs and widths.
    virtual Adesk::Boolean pline(const AcDbPolyline& polyline, Adesk::UInt32 fromIndex = 0,
                                 Adesk::UInt32 numSegs = 0) const = 0;
    // Another drawable, with attributes of its own.
    virtual Adesk::Boolean draw(AcGiDrawable* drawable) const = 0;
};

// The geometry that drawables draw by, in coordinates of the model.
class ACGI_PORT AcGiWorldGeometry : public AcGiGeometry {
public:
    ACRX_DECLARE_MEMBERS(AcGiWorldGeometry);
    // Two points between which everything lies, instead of what is drawn.
    virtual void setExtents(AcGePoint3d* extents) const = 0;
};

// What a drawable is handed to draw with: what the drawing is for, and its fineness.
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

// The same with its traits and its geometry.
class ACGI_PORT AcGiWorldDraw : public AcGiCommonDraw {
public:
    ACRX_DECLARE_MEMBERS(AcGiWorldDraw);
    virtual AcGiWorldGeometry& geometry() const = 0;
};
