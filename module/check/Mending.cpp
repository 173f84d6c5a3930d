#include "module/check/Mending.h"

#include "module/check/DrawingCheck.h"
#include "module/check/LayerMoves.h"

#include <algorithm>

namespace {

constexpr int mostRounds = 20; // each makes one of two pieces that overlap: a million of them in a row

// Layers first: what is on them, and is asked of it, follows from their names. Those that are empty last.
constexpr CheckRule order[] = {
    CheckRule::Mark,          CheckRule::PipeSystem,  CheckRule::PipeLayer,       CheckRule::LayerColor,
    CheckRule::LayerLinetype, CheckRule::LayerPlot,   CheckRule::LayerLineWeight, CheckRule::OwnProperties,
    CheckRule::PipeZero,      CheckRule::PipeOverlap, CheckRule::PipeGap,         CheckRule::LayerEmpty,
};

} // namespace

void CMending::Run(CFindings findings) {
    for (int round = 0; round < mostRounds; ++round) {
        m_stayed = CStayedEntities();
        const int mended = MendOnce(findings);
        m_mended += mended;
        if (mended == 0)
            break;
        auto next = CheckDrawing(m_rules);
        if (!next) // the user stopped it; what was mended stays
            return;
        findings = std::move(*next);
    }
    m_left = 0;
    for (const FindingKind& kind : findings.Kinds())
        if (IsChosen(kind))
            m_left += static_cast<int>(kind.m_findings.size());
}

int CMending::MendOnce(const CFindings& findings) {
    int mended = RenameLayers(findings);
    for (const CheckRule rule : order)
        for (const FindingKind& kind : findings.Kinds()) {
            if (kind.m_rule != rule || !IsChosen(kind))
                continue;
            for (const std::size_t at : kind.m_findings) {
                const Acad::ErrorStatus status = kind.m_mend(findings.All()[at]);
                if (status == Acad::eOk) {
                    ++mended;
                    ++m_counts[static_cast<std::size_t>(rule)];
                } else if (status != Acad::eNotApplicable && status != Acad::eWasErased) {
                    m_stayed.Add(status);
                }
            }
        }
    return mended;
}

int CMending::RenameLayers(const CFindings& findings) {
    std::vector<LayerMove> moves;
    std::vector<CheckRule> rules;
    for (const FindingKind& kind : findings.Kinds())
        if (IsChosen(kind) && !kind.m_newName.IsEmpty())
            for (const std::size_t at : kind.m_findings) {
                moves.push_back({findings.All()[at].m_object, kind.m_newName});
                rules.push_back(kind.m_rule);
            }
    if (moves.empty())
        return 0;
    CLayerMoves layers(moves);
    layers.Run();
    m_stayed.Add(layers.GetStayed());
    for (std::size_t i = 0; i < moves.size(); ++i)
        if (const auto& step = layers.GetSteps()[i]; step.m_obstacle.IsEmpty())
            ++m_counts[static_cast<std::size_t>(rules[i])];
    return layers.GetRenamed() + layers.GetMerged();
}
