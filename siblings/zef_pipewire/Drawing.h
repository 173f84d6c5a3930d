// What the entities of this folder share when they draw themselves.
#pragma once

#include "acgi.h"
#include "afx.h"

#include <vector>

class AcDbDatabase;
class TPen;

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
    std::vector<TLabelLine> Place(const AcGiTextStyle& style) const;
    void Draw(TPen& pen) const;
};
