// Pipes without length, pipes drawn over each other, and ends that miss their neighbour by a hair. Pipes are
// the add-on's own and the lines and light polylines on pipe layers; those of one system in one space are
// compared.
#include "dbents.h"
#include "dbpl.h"
#include "module/check/DrawingCheck.h"
#include "module/check/SegmentMends.h"
#include "module/check/Segments.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_pipewire/TDbPipe.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>

namespace {

constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();

// The pieces of one system in one space, in the order of the drawing.
struct System {
    CString m_name;
    std::vector<Segment> m_pieces;
    std::vector<std::uint32_t> m_owners; // of each piece the place of its entity
    struct End {
        std::uint32_t entity;
        AcGePoint3d point;
    };
    std::vector<AcDbObjectId> m_entities;
    std::vector<End> m_ends; // of what is open
};

// Where an end goes that meets nothing.
struct Neighbour {
    std::uint32_t entity = none;
    AcGePoint3d point;
    double distance = std::numeric_limits<double>::infinity();
};

class Comparison {
public:
    Comparison(const System& system, const CheckTolerances& tolerances)
        : m_system(system), m_tolerances(tolerances),
          m_grid(system.m_pieces, std::max(tolerances.m_gap, tolerances.m_same)) {}

    // For each entity the earliest one that it lies on; `none` for most.
    std::vector<std::uint32_t> FindOverlaps() const {
        std::vector<std::uint32_t> others(m_system.m_entities.size(), none);
        const auto add = [&](std::uint32_t a, std::uint32_t b) {
            if (a != b)
                others[std::max(a, b)] = std::min(others[std::max(a, b)], std::min(a, b));
        };
        std::map<std::array<double, 6>, std::uint32_t> firsts; // so that a pile costs no more than its height
        for (std::uint32_t i = 0; i < m_system.m_pieces.size(); ++i) {
            const Segment& piece = m_system.m_pieces[i];
            if (piece.Length() <= m_tolerances.m_same)
                continue;
            const auto [first, isNew] = firsts.try_emplace({piece.m_start.x, piece.m_start.y, piece.m_start.z,
                                                            piece.m_end.x, piece.m_end.y, piece.m_end.z},
                                                           m_system.m_owners[i]);
            if (!isNew && first->second != m_system.m_owners[i]) {
                if (piece.Length() > m_tolerances.m_overlap)
                    add(first->second, m_system.m_owners[i]);
                continue;
            }
            for (const AcGePoint3d& end : {piece.m_start, piece.m_end})
                m_grid.ForNearInLine(end, piece, m_tolerances.m_same, [&](std::uint32_t j) {
                    if (m_system.m_owners[i] != m_system.m_owners[j] &&
                        SharedLength(piece, m_system.m_pieces[j], m_tolerances.m_same) >
                            m_tolerances.m_overlap)
                        add(m_system.m_owners[i], m_system.m_owners[j]);
                    return true;
                });
        }
        return others;
    }

    // For each end the neighbour that it misses; an end that meets something has none.
    std::vector<Neighbour> FindMissed() const {
        std::vector<Neighbour> missed;
        for (const System::End& end : m_system.m_ends)
            missed.push_back(Missed(end));
        return missed;
    }

private:
    Neighbour Missed(const System::End& end) const {
        Neighbour best;
        bool meets = false;
        m_grid.ForNear(end.point, [&](std::uint32_t i) {
            const Segment& piece = m_system.m_pieces[i];
            const AcGePoint3d nearest = piece.Nearest(end.point);
            const double distance = nearest.distanceTo(end.point);
            const std::uint32_t owner = m_system.m_owners[i];
            if (owner == end.entity)
                return true;
            meets = distance <= m_tolerances.m_same;
            const bool isEarlier = distance == best.distance && owner < best.entity;
            if (distance <= m_tolerances.m_gap && piece.Length() > m_tolerances.m_same &&
                (distance < best.distance || isEarlier))
                best = {owner, Goal(piece, end.point, nearest), distance};
            return !meets;
        });
        return meets ? Neighbour() : best;
    }

    // The neighbour's end rather than a point just beside it.
    AcGePoint3d Goal(const Segment& piece, const AcGePoint3d& point, const AcGePoint3d& nearest) const {
        const double toStart = point.distanceTo(piece.m_start);
        const double toEnd = point.distanceTo(piece.m_end);
        if (std::min(toStart, toEnd) > m_tolerances.m_gap)
            return nearest;
        return toStart <= toEnd ? piece.m_start : piece.m_end;
    }

    const System& m_system;
    const CheckTolerances& m_tolerances;
    CSegmentGrid m_grid;
};

class CSegmentRules : public CRuleFamily {
public:
    using CRuleFamily::CRuleFamily;

    void Look(const AcDbEntity& entity, const CheckedLayer& layer, bool isInSpace) override {
        const auto* const pipe = isInSpace ? TDbPipe::cast(&entity) : nullptr;
        if (!isInSpace || (pipe == nullptr && !layer.m_isPipeLayer))
            return;
        const std::vector<Segment> pieces = PiecesOf(entity);
        if (pieces.empty())
            return;
        const CString name = pipe != nullptr ? PipeSystemTool::GetPipeSystemName(pipe) : layer.m_system;
        const bool isArc = AcDbArc::cast(&entity) != nullptr;
        if (!isArc && std::ranges::all_of(pieces, [&](const Segment& one) {
                return one.m_start.distanceTo(pieces[0].m_start) <= Same() && one.Length() <= Same();
            })) {
            AddZero(entity, pipe, name, pieces[0].m_start);
            return;
        }
        System& system = m_systems[{entity.blockId().asOldId(), name}];
        system.m_name = name;
        const auto place = static_cast<std::uint32_t>(system.m_entities.size());
        system.m_entities.push_back(entity.objectId());
        system.m_pieces.insert(system.m_pieces.end(), pieces.begin(), pieces.end());
        system.m_owners.resize(system.m_pieces.size(), place);
        const auto* const polyline = AcDbPolyline::cast(&entity);
        if (!isArc && (polyline == nullptr || !polyline->isClosed()))
            for (const AcGePoint3d& end : {pieces.front().m_start, pieces.back().m_end})
                system.m_ends.push_back({place, end});
    }

    void Finish() override {
        for (const auto& [key, system] : m_systems) {
            const Comparison comparison(system, m_context.m_rules.m_tolerances);
            std::vector<std::uint32_t> others(system.m_entities.size(), none);
            if (m_context.IsOn(CheckRule::PipeOverlap) || m_context.IsOn(CheckRule::PipeGap))
                others = comparison.FindOverlaps();
            if (m_context.IsOn(CheckRule::PipeOverlap))
                AddOverlaps(system, others);
            if (m_context.IsOn(CheckRule::PipeGap))
                AddGaps(system, comparison.FindMissed());
        }
    }

private:
    double Same() const { return m_context.m_rules.m_tolerances.m_same; }

    void AddZero(const AcDbEntity& entity, const TDbPipe* pipe, const CString& system,
                 const AcGePoint3d& at) {
        if (!m_context.IsOn(CheckRule::PipeZero))
            return;
        CString text;
        text.Format(L"系统\"%s\"的管线没有长度", system);
        const bool canErase = pipe == nullptr || pipe->GetAttachments().isEmpty();
        const int kind =
            m_context.m_findings.GetKind(CheckRule::PipeZero, text, canErase ? Mend(MendByErasing) : Mend());
        m_context.m_findings.Add({kind, entity.objectId(), {}, true, at, {}});
    }

    void AddOverlaps(const System& system, const std::vector<std::uint32_t>& others) {
        CString text;
        text.Format(L"系统\"%s\"的管线重叠", system.m_name);
        const CheckTolerances& tolerances = m_context.m_rules.m_tolerances;
        for (std::size_t i = 0; i < others.size(); ++i) {
            if (others[i] == none)
                continue;
            Finding finding;
            finding.m_object = system.m_entities[i];
            finding.m_other = system.m_entities[others[i]];
            Mend mend;
            if (MendOverlap(finding.m_object, finding.m_other, tolerances, true) == Acad::eOk)
                mend = [tolerances](const Finding& one) {
                    return MendOverlap(one.m_object, one.m_other, tolerances, false);
                };
            finding.m_kind = m_context.m_findings.GetKind(CheckRule::PipeOverlap, text, mend);
            m_context.m_findings.Add(finding);
        }
    }

    // Of two ends that miss each other the later one's is told.
    void AddGaps(const System& system, const std::vector<Neighbour>& missed) {
        CString text;
        text.Format(L"系统\"%s\"的管线端点没有接上", system.m_name);
        const CheckTolerances& tolerances = m_context.m_rules.m_tolerances;
        for (std::size_t i = 0; i < missed.size(); ++i) {
            const System::End& end = system.m_ends[i];
            if (missed[i].entity == none || IsToldByOther(system, missed, i))
                continue;
            Finding finding{0,
                            system.m_entities[end.entity],
                            system.m_entities[missed[i].entity],
                            true,
                            end.point,
                            missed[i].point};
            Mend mend;
            if (MendGap(finding, tolerances, true) == Acad::eOk)
                mend = [tolerances](const Finding& one) { return MendGap(one, tolerances, false); };
            finding.m_kind = m_context.m_findings.GetKind(CheckRule::PipeGap, text, mend);
            m_context.m_findings.Add(finding);
        }
    }

    // The ends of an entity stand together, and those of a later one later.
    static bool IsToldByOther(const System& system, const std::vector<Neighbour>& missed, std::size_t at) {
        const System::End& end = system.m_ends[at];
        if (missed[at].entity < end.entity)
            return false;
        const auto first = std::lower_bound(
            system.m_ends.begin(), system.m_ends.end(), missed[at].entity,
            [](const System::End& one, std::uint32_t entity) { return one.entity < entity; });
        for (auto i = first; i != system.m_ends.end() && i->entity == missed[at].entity; ++i) {
            const Neighbour& back = missed[static_cast<std::size_t>(i - system.m_ends.begin())];
            if (back.entity == end.entity && i->point == missed[at].point && back.point == end.point)
                return true;
        }
        return false;
    }

    std::map<std::pair<Adesk::LongPtr, CString>, System> m_systems;
};

} // namespace

std::unique_ptr<CRuleFamily> MakeSegmentRules(const CheckContext& context) {
    return std::make_unique<CSegmentRules>(context);
}
