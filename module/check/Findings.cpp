#include "module/check/Findings.h"

int CFindings::Kind(Key key, FindingKind made) {
    const auto [place, isNew] = m_places.try_emplace(std::move(key), static_cast<int>(m_kinds.size()));
    if (isNew)
        m_kinds.push_back(std::move(made));
    return place->second;
}

int CFindings::GetKind(CheckRule rule, const CString& text, const Mend& mend) {
    return Kind({rule, mend != nullptr, text}, {rule, text, mend, {}, {}});
}

int CFindings::GetRenaming(CheckRule rule, const CString& text, const CString& newName) {
    return Kind({rule, true, text}, {rule, text, nullptr, newName, {}});
}

void CFindings::Add(const Finding& finding) {
    m_kinds[static_cast<std::size_t>(finding.m_kind)].m_findings.push_back(m_findings.size());
    m_findings.push_back(finding);
}
