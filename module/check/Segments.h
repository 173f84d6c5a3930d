// Straight pieces of lines, polylines and pipes, and which of them come near a point.
#pragma once

#include "dbmain.h"
#include "gepnt3d.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <unordered_map>
#include <vector>

struct Segment {
    AcGePoint3d m_start;
    AcGePoint3d m_end;

    double Length() const {
        const double x = m_end.x - m_start.x, y = m_end.y - m_start.y, z = m_end.z - m_start.z;
        return std::sqrt(x * x + y * y + z * z);
    }
    // The point of it that is nearest to another one.
    AcGePoint3d Nearest(const AcGePoint3d& to) const;
    // How far behind the start, along it, the foot of a point lies.
    double Along(const AcGePoint3d& point) const;
    // Whether a point lies at most this far from the line that it is a part of.
    bool IsInLine(const AcGePoint3d& point, double tolerance) const;
    bool Touches(const AcGePoint3d& point, double tolerance) const {
        return Nearest(point).distanceTo(point) <= tolerance;
    }
};

// How long two pieces run together that lie in one line, within the tolerance; 0 for others.
double SharedLength(const Segment& a, const Segment& b, double tolerance);

// What an entity is made of: of a line one piece, of a light polyline those without bulges, of a pipe its
// centre line. Where a bulge begins and ends, and at the ends of an arc, a piece without length. Nothing for
// other entities.
std::vector<Segment> PiecesOf(const AcDbEntity& entity);

// Looks for pieces near points: by cells about as large as the pieces are long, so that each piece lies in a
// few of them.
class CSegmentGrid {
public:
    // Finds what comes nearer than `reach`. The pieces stay the caller's.
    CSegmentGrid(std::span<const Segment> pieces, double reach);

    // Calls `take` with the place of each piece that may be near the point, until it says false.
    template<class Take>
    void ForNear(const AcGePoint3d& point, Take take) const {
        const auto found = m_cells.find(Key(Cell(point.x), Cell(point.y)));
        if (found != m_cells.end())
            for (const std::uint32_t piece :
                 std::span(m_entries).subspan(found->second.first, found->second.count))
                if (!take(piece))
                    return;
    }

    // The same, of those only that run so nearly as `piece` does that they can lie in one line with it,
    // within the tolerance. Where thousands meet in a point, few do.
    template<class Take>
    void ForNearInLine(const AcGePoint3d& point, const Segment& piece, double tolerance, Take take) const {
        const auto found = m_cells.find(Key(Cell(point.x), Cell(point.y)));
        if (found == m_cells.end())
            return;
        for (const auto& [from, to] : WaysInLine(piece, found->second.shortest, tolerance)) {
            const auto begin = m_ways.begin() + static_cast<std::ptrdiff_t>(found->second.first);
            const auto end = begin + static_cast<std::ptrdiff_t>(found->second.count);
            for (auto at = std::lower_bound(begin, end, from); at != end && *at <= to; ++at)
                if (!take(m_entries[static_cast<std::size_t>(at - m_ways.begin())]))
                    return;
        }
    }

private:
    struct Range {
        std::size_t first = 0;
        std::size_t count = 0;
        double shortest = std::numeric_limits<double>::infinity(); // in plan
    };
    struct Ways {
        double from;
        double to;
    };
    static std::vector<Ways> WaysInLine(const Segment& piece, double shortest, double tolerance);
    std::int64_t Cell(double coordinate) const;
    static std::uint64_t Key(std::int64_t column, std::int64_t row);

    double m_size = 1.0;
    std::unordered_map<std::uint64_t, Range> m_cells;
    std::vector<std::uint32_t> m_entries; // places of pieces, cell by cell, there by the way that they run
    std::vector<double> m_ways;           // of each entry, in plan, from 0 to pi
};
