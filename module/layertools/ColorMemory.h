// The colours that layers had before they were painted in one colour.
#pragma once

#include "afx.h"
#include "dbcolor.h"
#include "dbid.h"

#include <map>
#include <optional>

struct resbuf;

// Layers by name, each with its colour. The drawing keeps one such memory in its named-objects dictionary, as
// an xrecord of pairs (1: layer name, 90: colour index) in the order of names. What the pairs cannot tell
// stands in an xrecord of its own beside that: for each layer its name (1), the index of its pair (90), the
// index that it was painted in (90) and, of a colour that is more than its index, the groups (62, 420, 430).
class CColorMemory {
public:
    // Remembers the colour that a layer has now, unless one of its is remembered already.
    void Remember(AcDbObjectId layer);
    bool IsEmpty() const { return m_colors.empty(); }
    bool HasSameLayers(const CColorMemory& other) const;

    // What the current drawing keeps; empty when that is nothing.
    static CColorMemory Load();
    // Makes the drawing keep this, with the index that the layers are to be painted in. Of what it kept
    // before, layers that still are as they were painted stay, with the colours that were remembered first,
    // also those that are painted once more. False when it cannot, as drawings of R12 and before: they have
    // no dictionaries.
    bool Save(int painted, const CColorMemory& before) const;
    // Makes the drawing keep nothing.
    static void Remove();

    // Gives the layers one colour, by its index.
    void Paint(int index) const;
    // Gives the layers their colours back: the index, or all of the colour when the layer still is as it was
    // painted. A layer that is not there, or cannot be opened, is passed over.
    void Restore() const;

private:
    // A colour of which an index is not all, as groups have it.
    struct ExactColor {
        int index = 0; // which need not be the nearest
        int rgb = 0;
        CString names; // of a colour book; empty for none
    };
    struct Color {
        int index = 0;
        std::optional<int> painted; // none when an older program has remembered it
        std::optional<ExactColor> exact;
    };
    struct LessNoCase {
        bool operator()(const CString& left, const CString& right) const {
            return left.CompareNoCase(right) < 0;
        }
    };

    static bool IsAsPainted(const AcCmColor& now, const Color& color);
    static std::optional<ExactColor> GetExactColor(AcDbObjectId layer);
    // `sign` is -1 for a layer that is off.
    static void RestoreExactColor(AcDbObjectId layer, const ExactColor& color, int sign);
    void ReadPairs(const resbuf* chain);
    void ReadExactColors(const resbuf* chain);

    std::map<CString, Color, LessNoCase> m_colors;
};
