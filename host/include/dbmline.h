// Multilines: parallel lines through one row of vertices.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"
#include "gevec3d.h"

class Mline {
public:
    enum MlineJustification { kTop = 0, kZero = 1, kBottom = 2 };
};

// Its lines lie beside the vertices along their miters, as far as it says itself; its style is not asked, and
// the caps at its ends, the lines at its joints and its filling, which are the style's, are not drawn.
class ACDB_PORT AcDbMline : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbMline);
    AcDbMline();

    // Null when the drawing has none of its handle.
    AcDbObjectId style() const;
    Mline::MlineJustification justification() const;
    double scale() const;
    AcGeVector3d normal() const;
    bool closedMline() const;
    int numVertices() const;
    // The origin and null vectors for an index that no vertex has. The axis is the direction of the segment
    // that begins at the vertex.
    AcGePoint3d vertexAt(int index) const;
    AcGeVector3d axisAt(int index) const;
    AcGeVector3d miterAt(int index) const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // Into lines.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
};
