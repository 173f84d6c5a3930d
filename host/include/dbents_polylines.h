// The part of dbents.h, which programs include, that holds polylines and meshes whose vertices are objects of
// their own.
//
// Vertices of a new polyline belong to it; those of a resident one are resident, and the iterator gives their
// ids. Of a fitted curve, a spline or a smooth mesh the vertices that were made are drawn, not those of its
// frame.
#pragma once

#include "dbcurve.h"
#include "dbmain.h"
#include "gedblar.h"
#include "gept3dar.h"

// A vertex of one of the older polylines.
class ACDB_PORT AcDbVertex : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbVertex);

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
