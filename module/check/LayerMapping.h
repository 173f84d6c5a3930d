// Which layers of other offices' drawings are which of ours: a text file that people write, with a line for
// each, "A-WALL*=建筑-墙*". In the name on the left "*" stands for any characters and "?" for one; on the
// right they stand for what they stood for on the left, in their order. Case does not count. Lines that begin
// with
// "#" or ";" are remarks. A name without wildcards comes before patterns, of patterns the first that fits.
#pragma once

#include "afx.h"
#include "base/result.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

class AcDbDatabase;

struct LayerMapRow {
    CString m_from;
    CString m_to;
    friend bool operator==(const LayerMapRow&, const LayerMapRow&) = default;
};

class CLayerMapping {
public:
    // Fails with the file and the line for a line that says nothing: without "=", without a name, or with
    // more wildcards on its right than on its left.
    static base::result<CLayerMapping> Read(const std::filesystem::path& file);
    base::result<void> Write(const std::filesystem::path& file) const;

    // From the layers that things had in the drawing as it was to those that they have now: an object is the
    // same when its handle is. What is on most of a layer's things decides; a remark tells of the others.
    static CLayerMapping Learn(AcDbDatabase& before, AcDbDatabase& after);

    // The other way round. Rows that can not be turned (several layers that become one, but for the first,
    // and patterns that lose something) become remarks; GetLost tells how many.
    CLayerMapping Reversed() const;

    // The name that a layer gets; empty when no row is about it.
    CString Map(const CString& name) const;

    const std::vector<LayerMapRow>& GetRows() const { return m_rows; }
    int GetLost() const { return m_lost; }

private:
    void Add(const LayerMapRow& row);

    std::vector<LayerMapRow> m_rows;
    std::vector<CString> m_remarks;
    std::map<std::wstring, std::size_t> m_exact; // rows without wildcards by folded name
    std::vector<std::size_t> m_patterns;
    int m_lost = 0;
};
