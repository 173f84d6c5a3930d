// Makes one of what was drawn in pieces or twice.
#pragma once

#include "dbid.h"
#include "module/check/Segments.h"
#include "module/layertools/StayedEntities.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

// Of the given entities, each with those of the same properties in the same block:
//
// - lines in one line that overlap or touch become one, the first of them; no point of what there was lies
//   farther from what becomes of it than the tolerance, and no gap that is wider is closed;
// - of lines, arcs, circles and light polylines that are the same within the tolerance the first stays;
// - lines without length go.
//
// What lies on locked layers stays.
class CLineJoin {
public:
    CLineJoin(const std::vector<AcDbObjectId>& entities, double tolerance);

    // Does it. The drawing is locked for writing.
    void Run();

    // How many there were of these kinds, and after Run how many are left, and of the others how many were
    // joined to another one, were there twice and had no length.
    std::size_t GetBefore() const { return m_before; }
    std::size_t GetAfter() const { return m_before - m_joined - m_doubles - m_zero; }
    std::size_t GetJoined() const { return m_joined; }
    std::size_t GetDoubles() const { return m_doubles; }
    std::size_t GetZero() const { return m_zero; }
    const CStayedEntities& GetStayed() const { return m_stayed; }

private:
    struct Line {
        AcDbObjectId m_id;
        Segment m_segment;
    };

    void Take(AcDbObjectId id);
    void Join(std::vector<Line>& lines);
    bool Erase(AcDbObjectId id);
    bool IsLocked(AcDbObjectId layer);

    double m_tolerance;
    std::map<AcDbObjectId, bool> m_locked;                  // layers that were asked for
    std::map<std::string, std::vector<Line>> m_lines;       // of the same properties
    std::unordered_map<std::string, AcDbObjectId> m_shapes; // other kinds, by all that they are
    std::vector<AcDbObjectId> m_same;                       // as one of these
    std::vector<AcDbObjectId> m_empty;
    std::size_t m_before = 0;
    std::size_t m_joined = 0;
    std::size_t m_doubles = 0;
    std::size_t m_zero = 0;
    CStayedEntities m_stayed;
};
