// What a clipped reference shows of its block: what lies within a polygon.
#pragma once

#include "dbmain.h"
#include "gemat3d.h"
#include "gepnt2d.h"

#include <optional>
#include <utility>
#include <vector>

class AcDbBlockReference;

class CReferenceClip {
public:
    // The clip of a reference whose definition's coordinates become the drawing's by `placing`. Nothing when
    // it has none, or has it switched off. Planes that cut in front and behind are not looked at.
    static std::optional<CReferenceClip> Of(const AcDbBlockReference& reference, const AcGeMatrix3d& placing);

    enum class Sight { Outside, Across, Inside };
    // How a box lies that `placing` brings into the drawing. What is said to lie across may lie outside.
    Sight Look(AcDbExtents box, const AcGeMatrix3d& placing) const;

    // A part of a line from one point of the drawing to another; 0 is the one and 1 the other.
    using Part = std::pair<double, double>;
    // Those parts of a line that lie within, one behind the other.
    std::vector<Part> Cut(const AcGePoint3d& from, const AcGePoint3d& to) const;

private:
    bool Holds(const AcGePoint2d& point) const;
    // Where a line crosses the polygon's edges.
    std::vector<double> Crossings(const AcGePoint2d& from, const AcGePoint2d& to) const;

    AcGeMatrix3d m_toClip; // from the drawing
    std::vector<AcGePoint2d> m_corners;
};
