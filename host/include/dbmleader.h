// Multileaders: notes with any number of leaders.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"

class AcDbMText;

// Leader lines are counted through all leaders, in the order in which they stand.
class ACDB_PORT AcDbMLeader : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbMLeader);

    enum ContentType { kNoneContent = 0, kBlockContent = 1, kMTextContent = 2, kToleranceContent = 3 };

    AcDbMLeader();

    ContentType contentType() const;
    int numLeaders() const;
    int numLeaderLines() const;
    // eInvalidIndex. The first vertex is the arrowhead's; the last one lies at the landing.
    Acad::ErrorStatus numVertices(int leaderLineIndex, int& count) const;
    Acad::ErrorStatus getVertex(int leaderLineIndex, int index, AcGePoint3d& point) const;
    Acad::ErrorStatus getFirstVertex(int leaderLineIndex, AcGePoint3d& point) const;
    Acad::ErrorStatus getLastVertex(int leaderLineIndex, AcGePoint3d& point) const;

    // A new text, which the caller owns; null for other contents.
    AcDbMText* mtext() const;
    // eNotApplicable for other contents.
    Acad::ErrorStatus getTextLocation(AcGePoint3d& location) const;
    Acad::ErrorStatus getBlockPosition(AcGePoint3d& position) const;
    // Null for other contents.
    AcDbObjectId blockContentId() const;
    double scale() const;
    double textHeight() const;
    double arrowSize() const;

protected:
    // As it was saved for programs that do not know it, which is how the editor drew it; without that, by its
    // own groups.
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
};
