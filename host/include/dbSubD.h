// Meshes that are smoothed by dividing their faces.
#pragma once

#include "dbmain.h"
#include "geintarr.h"
#include "gept3dar.h"

class ACDB_PORT AcDbSubDMesh : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbSubDMesh);
    AcDbSubDMesh();

    // How many times the faces are divided; the numbers below are of the mesh that is not.
    Acad::ErrorStatus subdLevel(Adesk::Int32& level) const;
    Acad::ErrorStatus numOfVertices(Adesk::Int32& count) const;
    Acad::ErrorStatus numOfFaces(Adesk::Int32& count) const;
    Acad::ErrorStatus getVertices(AcGePoint3dArray& vertices) const;
    // For each face the number of its vertices, and behind it theirs.
    Acad::ErrorStatus getFaceArray(AcArray<Adesk::Int32>& faces) const;

protected:
    // A mesh that is divided: what was saved for programs that can not divide it, else as if it were not.
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
