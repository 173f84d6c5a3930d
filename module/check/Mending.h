// Puts right what a check found.
#pragma once

#include "module/check/Findings.h"
#include "module/layertools/StayedEntities.h"

#include <array>
#include <set>

class CMending {
public:
    // The rules whose findings are mended.
    CMending(const CheckRules& rules, std::set<CheckRule> chosen)
        : m_rules(rules), m_chosen(std::move(chosen)) {}

    // Mends, and checks again, until nothing is left that can be mended: one thing that is put right may show
    // another, as layers that get the right name. The findings are those of the current drawing as it is. The
    // drawing is locked for writing.
    void Run(CFindings findings);

    // After Run: how many were mended, in all and of each rule, how many that can be mended were left, and
    // why.
    int GetMended() const { return m_mended; }
    int GetMended(CheckRule rule) const { return m_counts[static_cast<std::size_t>(rule)]; }
    int GetLeft() const { return m_left; }
    const CStayedEntities& GetStayed() const { return m_stayed; }

private:
    bool IsChosen(const FindingKind& kind) const { return kind.CanMend() && m_chosen.contains(kind.m_rule); }
    int MendOnce(const CFindings& findings);
    int RenameLayers(const CFindings& findings);

    const CheckRules& m_rules;
    std::set<CheckRule> m_chosen;
    std::array<int, checkRuleCount> m_counts{};
    int m_mended = 0;
    int m_left = 0;
    CStayedEntities m_stayed;
};
