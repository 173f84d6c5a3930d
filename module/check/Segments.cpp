#include "module/check/Segments.h"

#include "dbents.h"
#include "dbpl.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

namespace {

constexpr double farthest = 1e12; // what lies farther out is no place in a building

bool IsPlace(const AcGePoint3d& point) {
    return std::abs(point.x) < farthest && std::abs(point.y) < farthest;
}

double LengthInPlan(const Segment& piece) {
    return std::hypot(piece.m_end.x - piece.m_start.x, piece.m_end.y - piece.m_start.y);
}

// The way that a piece runs in plan, whichever end it begins at; less than pi.
double WayOf(const Segment& piece) {
    const double angle = std::atan2(piece.m_end.y - piece.m_start.y, piece.m_end.x - piece.m_start.x);
    const double way = angle < 0.0 ? angle + std::numbers::pi : angle;
    return way < std::numbers::pi ? way : 0.0;
}

std::vector<Segment> PiecesOfPolyline(const AcDbPolyline& polyline) {
    std::vector<Segment> pieces;
    const unsigned count = polyline.numVerts();
    const unsigned segments = polyline.isClosed() ? count : count == 0 ? 0 : count - 1;
    for (unsigned i = 0; i < segments; ++i) {
        Segment piece;
        double bulge = 0.0;
        polyline.getPointAt(i, piece.m_start);
        polyline.getPointAt((i + 1) % count, piece.m_end);
        polyline.getBulgeAt(i, bulge);
        if (bulge == 0.0) {
            pieces.push_back(piece);
        } else {
            pieces.push_back({piece.m_start, piece.m_start});
            pieces.push_back({piece.m_end, piece.m_end});
        }
    }
    return pieces;
}

} // namespace

double Segment::Along(const AcGePoint3d& point) const {
    const double length = Length();
    return length > 0.0 ? (point - m_start).dotProduct(m_end - m_start) / length : 0.0;
}

AcGePoint3d Segment::Nearest(const AcGePoint3d& to) const {
    const double length = Length();
    if (length == 0.0)
        return m_start;
    return m_start + (m_end - m_start) * (std::clamp(Along(to), 0.0, length) / length);
}

bool Segment::IsInLine(const AcGePoint3d& point, double tolerance) const {
    const double length = Length();
    const AcGePoint3d foot = length > 0.0 ? m_start + (m_end - m_start) * (Along(point) / length) : m_start;
    return foot.distanceTo(point) <= tolerance;
}

double SharedLength(const Segment& a, const Segment& b, double tolerance) {
    const Segment& longer = a.Length() >= b.Length() ? a : b;
    const Segment& shorter = &longer == &a ? b : a;
    if (!longer.IsInLine(shorter.m_start, tolerance) || !longer.IsInLine(shorter.m_end, tolerance))
        return 0.0;
    const double first = longer.Along(shorter.m_start);
    const double second = longer.Along(shorter.m_end);
    return std::max(0.0, std::min(std::max(first, second), longer.Length()) -
                             std::max(std::min(first, second), 0.0));
}

std::vector<Segment> PiecesOf(const AcDbEntity& entity) {
    std::vector<Segment> pieces;
    if (const auto* const line = AcDbLine::cast(&entity))
        pieces.push_back({line->startPoint(), line->endPoint()});
    else if (const auto* const polyline = AcDbPolyline::cast(&entity))
        pieces = PiecesOfPolyline(*polyline);
    else if (const auto* const pipe = TDbPipe::cast(&entity))
        pieces.push_back({pipe->GetStartPoint(), pipe->GetEndPoint()});
    else if (const auto* const arc = AcDbArc::cast(&entity)) {
        AcGePoint3d end;
        for (const bool atStart : {true, false})
            if ((atStart ? arc->getStartPoint(end) : arc->getEndPoint(end)) == Acad::eOk)
                pieces.push_back({end, end});
    }
    std::erase_if(pieces, [](const Segment& one) { return !IsPlace(one.m_start) || !IsPlace(one.m_end); });
    return pieces;
}

std::int64_t CSegmentGrid::Cell(double coordinate) const {
    return static_cast<std::int64_t>(std::floor(coordinate / m_size));
}

std::uint64_t CSegmentGrid::Key(std::int64_t column, std::int64_t row) {
    constexpr unsigned half = 32; // farther cells share keys, which costs a look more
    return static_cast<std::uint64_t>(column) << half ^ (static_cast<std::uint64_t>(row) & 0xFFFFFFFFU);
}

CSegmentGrid::CSegmentGrid(std::span<const Segment> pieces, double reach) {
    if (pieces.empty())
        return;
    double length = 0.0;
    for (const Segment& one : pieces)
        length += LengthInPlan(one);
    constexpr double cellsForReach = 4.0;
    m_size = std::max({length / static_cast<double>(pieces.size()), reach * cellsForReach, 1e-6});
    std::vector<std::tuple<std::uint64_t, double, std::uint32_t>> entries; // cell, way, piece
    for (std::uint32_t i = 0; i < pieces.size(); ++i) {
        // Column by column, with as much of each as the piece has there.
        const bool isForward = pieces[i].m_start.x <= pieces[i].m_end.x;
        const AcGePoint3d& left = isForward ? pieces[i].m_start : pieces[i].m_end;
        const AcGePoint3d& right = isForward ? pieces[i].m_end : pieces[i].m_start;
        const double width = right.x - left.x;
        const double way = WayOf(pieces[i]);
        const auto heightAt = [&](double x) {
            return width > 0.0
                       ? left.y + (right.y - left.y) * (std::clamp(x, left.x, right.x) - left.x) / width
                       : left.y;
        };
        for (std::int64_t column = Cell(left.x - reach); column <= Cell(right.x + reach); ++column) {
            const double from = static_cast<double>(column) * m_size - reach;
            const double first = heightAt(from);
            const double second = width > 0.0 ? heightAt(from + m_size + 2 * reach) : right.y;
            for (std::int64_t row = Cell(std::min(first, second) - reach);
                 row <= Cell(std::max(first, second) + reach); ++row)
                entries.emplace_back(Key(column, row), way, i);
        }
    }
    std::sort(entries.begin(), entries.end());
    m_cells.reserve(entries.size());
    m_entries.reserve(entries.size());
    m_ways.reserve(entries.size());
    for (const auto& [key, way, piece] : entries) {
        Range& range = m_cells.try_emplace(key, Range{m_entries.size()}).first->second;
        ++range.count;
        if (pieces[piece].Length() > 0.0)
            range.shortest = std::min(range.shortest, LengthInPlan(pieces[piece]));
        m_entries.push_back(piece);
        m_ways.push_back(way);
    }
}

// Of two pieces in one line both ends of the shorter one lie within the tolerance of the line, so its way
// differs by no more than that on both sides of its length.
std::vector<CSegmentGrid::Ways> CSegmentGrid::WaysInLine(const Segment& piece, double shortest,
                                                         double tolerance) {
    constexpr double half = std::numbers::pi;
    constexpr double rounding = 1e-6;
    const double length = std::min(shortest, LengthInPlan(piece));
    if (2.0 * tolerance >= length)
        return {{0.0, half}};
    const double slack = std::asin(2.0 * tolerance / length) + rounding;
    const double way = WayOf(piece);
    std::vector<Ways> ways = {{way - slack, way + slack}};
    if (way < slack)
        ways.push_back({way - slack + half, half});
    if (way + slack > half)
        ways.push_back({0.0, way + slack - half});
    return ways;
}
