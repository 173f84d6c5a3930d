// Leaders: lines or a curve from an arrowhead to a note.
#pragma once

#include "dbcurve.h"

class ACDB_PORT AcDbLeader : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbLeader);

    enum AnnoType { kMText = 0, kFcf, kBlockRef, kNoAnno };

    // Straight, with an arrowhead, without vertices.
    AcDbLeader();

    AcGeVector3d normal() const;
    int numVertices() const;
    // The arrowhead is at the first one. The origin when there is no such vertex.
    AcGePoint3d vertexAt(int index) const;
    AcGePoint3d firstVertex() const { return vertexAt(0); }
    AcGePoint3d lastVertex() const { return vertexAt(numVertices() - 1); }
    // False when there is no such vertex.
    Adesk::Boolean setVertexAt(int index, const AcGePoint3d& point);
    Adesk::Boolean appendVertex(const AcGePoint3d& point);
    void removeLastVertex();

    bool hasArrowHead() const;
    void enableArrowHead();
    void disableArrowHead();
    bool hasHookLine() const;
    bool isSplined() const;
    void setToSplineLeader();
    void setToStraightLeader();

    AnnoType annoType() const;
    // Null when there is no note.
    AcDbObjectId annotationObjId() const;
    double annoHeight() const;
    double annoWidth() const;
    // From the last vertex to where the note is placed.
    AcGeVector3d annotationOffset() const;
    AcDbObjectId dimensionStyle() const;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
