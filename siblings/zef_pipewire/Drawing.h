// What the entities of this folder share when they draw themselves, and when they are exploded.
#pragma once

#include "acgi.h"
#include "afx.h"
#include "dbptrar.h"

#include <vector>

class AcDbDatabase;
class AcDbEntity;

// Whether nothing is to be drawn of what belongs to a system: the drawing hides it, and somebody looks.
// Extents and pictures for other programs are drawn all the same.
bool IsSystemHiddenFor(const AcGiWorldDraw& draw, AcDbDatabase* database, LPCTSTR systemName);

// One line of a label, from where it begins on its base line.
struct TLabelLine {
    AcGePoint3d m_start;
    CString m_text;
};

// Text in the plane: lines one below the other, each centred.
struct TLabel {
    AcGePoint3d m_middle; // of all of it
    double m_angle = 0.0;
    double m_height = 0.0; // of a line, in the model
    AcDbObjectId m_style;  // the font txt when it names none
    std::vector<CString> m_lines;

    // The height of all lines together.
    double GetTotalHeight() const;
    AcGiTextStyle GetStyle() const;
    std::vector<TLabelLine> Place() const;
    void Draw(AcGiWorldDraw& draw) const;
    // Appends the lines as texts with the properties of an entity, on another layer unless that is null; they
    // are the caller's.
    void Explode(const AcDbEntity& from, AcDbObjectId layer, AcDbVoidPtrArray& parts) const;
};

// Appends a piece of an exploded entity, with its properties. The piece is the caller's.
void AppendPiece(AcDbEntity* piece, const AcDbEntity& from, AcDbVoidPtrArray& parts);

// Directs what is drawn next to a layer; a null one leaves it on that of the entity.
void SetLayerOf(AcGiWorldDraw& draw, AcDbObjectId layer);
