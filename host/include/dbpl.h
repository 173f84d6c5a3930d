// Light polylines: vertices in one plane, with bulges and widths.
#pragma once

#include "dbcurve.h"
#include "gepnt2d.h"

#include <memory>

class AcDbImpPolyline;

// A row of lines and arcs in the plane with its normal, at an elevation above the origin. Points with two
// coordinates are those of the plane, points with three those of the world. The parameter of the curve counts
// the vertices. An index that no vertex has answers eInvalidIndex.
//
// Asking and setting vertex by vertex costs the same for each, however many there are.
class ACDB_PORT AcDbPolyline : public AcDbCurve {
public:
    ACRX_DECLARE_MEMBERS(AcDbPolyline);
    AcDbPolyline();
    explicit AcDbPolyline(unsigned int num_verts);
    ~AcDbPolyline() override;

    enum SegType {
        kLine,
        kArc,
        kCoincident, // both ends are one point
        kPoint,      // the only vertex
        kEmpty       // no segment: behind the last vertex of an open polyline
    };

    unsigned int numVerts() const;
    // In front of the vertex with the index, or behind the last one. Widths below nought are the polyline's
    // own; a vertex of another width gives each vertex its own.
    Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& pt, double bulge = 0.0,
                                  double startWidth = -1.0, double endWidth = -1.0,
                                  Adesk::Int32 vertexIdentifier = 0);
    Acad::ErrorStatus removeVertexAt(unsigned int index);
    // Without vertices, or with this many at the origin.
    void reset(Adesk::Boolean reuse, unsigned int numVerts);

    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& pt) const;
    Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& pt) const;
    Acad::ErrorStatus setPointAt(unsigned int index, const AcGePoint2d& pt);
    // The tangent of a quarter of the angle that the segment from this vertex turns through, positive to the
    // left.
    Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
    Acad::ErrorStatus setBulgeAt(unsigned int index, double bulge);
    // Of the segment from this vertex. eInvalidInput below nought.
    Acad::ErrorStatus getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const;
    Acad::ErrorStatus setWidthsAt(unsigned int index, double startWidth, double endWidth);
    SegType segType(unsigned int index) const;
    Adesk::Boolean isOnlyLines() const;
    Adesk::Boolean hasBulges() const;
    Adesk::Boolean hasWidth() const;

    bool isClosed() const override;
    void setClosed(Adesk::Boolean closed);
    // Whether a linetype goes on through the vertices.
    Adesk::Boolean hasPlinegen() const;
    void setPlinegen(Adesk::Boolean generated);
    double elevation() const;
    void setElevation(double elevation);
    double thickness() const;
    Acad::ErrorStatus setThickness(double thickness);
    // The width of all segments; eInvalidContext when they differ.
    Acad::ErrorStatus getConstantWidth(double& width) const;
    Acad::ErrorStatus setConstantWidth(double width);
    AcGeVector3d normal() const;
    // The coordinates in the plane stay.
    Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

    Acad::ErrorStatus reverseCurve() override;
    void getEcs(AcGeMatrix3d& matrix) const override;

protected:
    bool subMakePieces(AcDbImpCurve& pieces) const override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // Other scales along the axes only without bulges and widths.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    const AcDbImpPolyline& vertices() const;
    AcDbImpPolyline& editVertices();

    mutable std::unique_ptr<AcDbImpPolyline> m_vertices;
};
