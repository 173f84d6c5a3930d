#include "module/check/LineJoin.h"

#include "dbents.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "module/check/SameProperties.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr double noLength = 1e-6;

// Numbers that lie nearer to each other than the tolerance mostly become the same.
void AddNumber(std::string& key, double value, double tolerance) {
    AddBytes(key, std::llround(value / std::max(tolerance, noLength)));
}

void AddPoint(std::string& key, const AcGePoint3d& point, double tolerance) {
    for (const double value : {point.x, point.y, point.z})
        AddNumber(key, value, tolerance);
}

void AddDirection(std::string& key, const AcGeVector3d& direction) {
    for (const double value : {direction.x, direction.y, direction.z})
        AddNumber(key, value, noLength);
}

// What an arc, a circle or a light polyline is; empty for others.
std::string ShapeKey(const AcDbEntity& entity, double tolerance) {
    std::string key;
    AcGePoint3d point;
    if (const auto* const arc = AcDbArc::cast(&entity)) {
        key = "A";
        AddPoint(key, arc->center(), tolerance);
        AddNumber(key, arc->radius(), tolerance);
        AddNumber(key, arc->startAngle() * arc->radius(), tolerance);
        AddNumber(key, arc->endAngle() * arc->radius(), tolerance);
        AddNumber(key, arc->thickness(), tolerance);
        AddDirection(key, arc->normal());
    } else if (const auto* const circle = AcDbCircle::cast(&entity)) {
        key = "C";
        AddPoint(key, circle->center(), tolerance);
        AddNumber(key, circle->radius(), tolerance);
        AddNumber(key, circle->thickness(), tolerance);
        AddDirection(key, circle->normal());
    } else if (const auto* const polyline = AcDbPolyline::cast(&entity)) {
        key = polyline->isClosed() ? "P" : "p";
        AddNumber(key, polyline->thickness(), tolerance);
        AddDirection(key, polyline->normal());
        for (unsigned i = 0; i < polyline->numVerts(); ++i) {
            double bulge = 0.0;
            double start = 0.0;
            double end = 0.0;
            polyline->getPointAt(i, point);
            polyline->getBulgeAt(i, bulge);
            polyline->getWidthsAt(i, start, end);
            AddPoint(key, point, tolerance);
            AddNumber(key, bulge, noLength);
            AddNumber(key, start, tolerance);
            AddNumber(key, end, tolerance);
        }
    }
    return key;
}

// Pieces in one line that hang together, as sets.
class Chains {
public:
    Chains(const std::vector<Segment>& pieces, double tolerance)
        : m_tolerance(tolerance), m_parents(pieces.size()) {
        std::iota(m_parents.begin(), m_parents.end(), std::size_t{0});
        const CSegmentGrid grid(pieces, tolerance);
        for (std::size_t i = 0; i < pieces.size(); ++i)
            for (const AcGePoint3d& end : {pieces[i].m_start, pieces[i].m_end})
                grid.ForNearInLine(end, pieces[i], m_tolerance, [&](std::uint32_t j) {
                    if (Root(i) != Root(j) && AreInLine(pieces[i], pieces[j]) &&
                        pieces[j].Touches(end, m_tolerance))
                        m_parents[Root(i)] = Root(j);
                    return true;
                });
    }

    std::map<std::size_t, std::vector<std::size_t>> Sets() {
        std::map<std::size_t, std::vector<std::size_t>> sets;
        for (std::size_t i = 0; i < m_parents.size(); ++i)
            sets[Root(i)].push_back(i);
        return sets;
    }

private:
    bool AreInLine(const Segment& a, const Segment& b) const {
        const Segment& longer = a.Length() >= b.Length() ? a : b;
        const Segment& shorter = &longer == &a ? b : a;
        return longer.IsInLine(shorter.m_start, m_tolerance) && longer.IsInLine(shorter.m_end, m_tolerance);
    }
    std::size_t Root(std::size_t at) {
        while (m_parents[at] != at)
            at = m_parents[at] = m_parents[m_parents[at]];
        return at;
    }

    double m_tolerance;
    std::vector<std::size_t> m_parents;
};

// A line that grows at its end as long as every point of its pieces stays near it: from its start each point
// leaves a fan of directions, and the end must lie in all of them.
class Growth {
public:
    Growth(const Segment& first, const AcGeVector3d& axis, double tolerance)
        : m_line(first), m_axis(axis), m_side(axis.perpVector()), m_height(axis.crossProduct(m_side)),
          m_tolerance(tolerance) {
        Narrow(m_fans, first.m_end);
    }

    // Whether the piece, which begins not before this one, was added.
    bool Add(const Segment& piece) {
        if (Along(piece.m_start) > Along(m_line.m_end) + m_tolerance)
            return false;
        Fans fans = m_fans;
        Narrow(fans, piece.m_start);
        Narrow(fans, piece.m_end);
        const AcGePoint3d& end = Along(piece.m_end) > Along(m_line.m_end) ? piece.m_end : m_line.m_end;
        if (!fans.Holds(Slopes(end)))
            return false;
        m_fans = fans;
        m_line.m_end = end;
        return true;
    }
    const Segment& Line() const { return m_line; }

private:
    struct Fans {
        double least[2] = {-std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity()};
        double most[2] = {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
        bool Holds(const std::pair<double, double>& slopes) const {
            return slopes.first >= least[0] && slopes.first <= most[0] && slopes.second >= least[1] &&
                   slopes.second <= most[1];
        }
    };
    double Along(const AcGePoint3d& point) const { return (point - m_line.m_start).dotProduct(m_axis); }
    std::pair<double, double> Slopes(const AcGePoint3d& point) const {
        const AcGeVector3d to = point - m_line.m_start;
        const double along = std::max(to.dotProduct(m_axis), noLength);
        return {to.dotProduct(m_side) / along, to.dotProduct(m_height) / along};
    }
    void Narrow(Fans& fans, const AcGePoint3d& point) const {
        const double along = Along(point);
        if (along <= m_tolerance) // as near to the start as it may be to the line
            return;
        const auto [side, height] = Slopes(point);
        const double slack = m_tolerance / along;
        fans.least[0] = std::max(fans.least[0], side - slack);
        fans.most[0] = std::min(fans.most[0], side + slack);
        fans.least[1] = std::max(fans.least[1], height - slack);
        fans.most[1] = std::min(fans.most[1], height + slack);
    }

    Segment m_line;
    AcGeVector3d m_axis;
    AcGeVector3d m_side;
    AcGeVector3d m_height;
    double m_tolerance;
    Fans m_fans;
};

} // namespace

CLineJoin::CLineJoin(const std::vector<AcDbObjectId>& entities, double tolerance) : m_tolerance(tolerance) {
    for (const AcDbObjectId id : entities)
        Take(id);
}

void CLineJoin::Take(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    if (entity.openStatus() != Acad::eOk)
        return;
    const auto* const line = AcDbLine::cast(entity.object());
    const std::string shape = line == nullptr ? ShapeKey(*entity.object(), m_tolerance) : std::string();
    if (line == nullptr && shape.empty())
        return;
    ++m_before;
    if (IsLocked(entity->layerId())) {
        m_stayed.Add(Acad::eOnLockedLayer);
        return;
    }
    std::string key = PropertyKey(*entity.object());
    AddBytes(key, entity->blockId().asOldId());
    if (line == nullptr) {
        if (!m_shapes.try_emplace(key + shape, id).second)
            m_same.push_back(id);
        return;
    }
    const Segment segment{line->startPoint(), line->endPoint()};
    if (segment.Length() <= noLength) {
        m_empty.push_back(id);
        return;
    }
    AddNumber(key, line->thickness(), noLength);
    if (line->thickness() != 0.0)
        AddDirection(key, line->normal());
    m_lines[key].push_back({id, segment});
}

bool CLineJoin::IsLocked(AcDbObjectId layer) {
    const auto [known, isNew] = m_locked.try_emplace(layer, false);
    if (isNew) {
        const AcDbObjectPointer<AcDbLayerTableRecord> record(layer, AcDb::kForRead);
        known->second = record.openStatus() == Acad::eOk && record->isLocked();
    }
    return known->second;
}

bool CLineJoin::Erase(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    const Acad::ErrorStatus status = entity.openStatus() == Acad::eOk ? entity->erase() : entity.openStatus();
    if (status != Acad::eOk)
        m_stayed.Add(status);
    return status == Acad::eOk;
}

void CLineJoin::Run() {
    for (const AcDbObjectId id : m_empty)
        m_zero += Erase(id) ? 1 : 0;
    for (const AcDbObjectId id : m_same)
        m_doubles += Erase(id) ? 1 : 0;
    for (auto& [key, lines] : m_lines)
        Join(lines);
}

void CLineJoin::Join(std::vector<Line>& lines) {
    // The first in the drawing stays, however they were picked.
    std::ranges::sort(lines, {}, &Line::m_id);
    std::vector<Segment> pieces;
    pieces.reserve(lines.size());
    for (const Line& line : lines)
        pieces.push_back(line.m_segment);
    for (auto& [root, set] : Chains(pieces, m_tolerance).Sets()) {
        if (set.size() == 1)
            continue;
        const Segment& longest = pieces[*std::ranges::max_element(
            set, [&](std::size_t a, std::size_t b) { return pieces[a].Length() < pieces[b].Length(); })];
        const AcGeVector3d axis = (longest.m_end - longest.m_start) / longest.Length();
        const AcGePoint3d origin = longest.m_start;
        const auto along = [&](const AcGePoint3d& point) { return (point - origin).dotProduct(axis); };
        for (const std::size_t i : set)
            if (along(pieces[i].m_start) > along(pieces[i].m_end))
                std::swap(pieces[i].m_start, pieces[i].m_end);
        std::ranges::stable_sort(set, [&](std::size_t a, std::size_t b) {
            return along(pieces[a].m_start) < along(pieces[b].m_start);
        });
        for (std::size_t first = 0; first < set.size();) {
            Growth line(pieces[set[first]], axis, m_tolerance);
            std::size_t end = first + 1;
            while (end < set.size() && line.Add(pieces[set[end]]))
                ++end;
            const std::size_t kept = *std::min_element(set.begin() + static_cast<std::ptrdiff_t>(first),
                                                       set.begin() + static_cast<std::ptrdiff_t>(end));
            if (end - first > 1) {
                const AcDbObjectPointer<AcDbLine> open(lines[kept].m_id, AcDb::kForWrite);
                if (open.openStatus() == Acad::eOk) {
                    open->setStartPoint(line.Line().m_start);
                    open->setEndPoint(line.Line().m_end);
                    for (std::size_t i = first; i < end; ++i)
                        if (set[i] != kept && Erase(lines[set[i]].m_id)) {
                            const Segment& gone = pieces[set[i]];
                            const bool isDouble = pieces[kept].Touches(gone.m_start, m_tolerance) &&
                                                  pieces[kept].Touches(gone.m_end, m_tolerance);
                            m_joined += isDouble ? 0 : 1;
                            m_doubles += isDouble ? 1 : 0;
                        }
                } else {
                    m_stayed.Add(open.openStatus());
                }
            }
            first = end;
        }
    }
}
