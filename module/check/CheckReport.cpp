#include "module/check/CheckReport.h"

#include "aced.h"
#include "acedads.h"
#include "acutads.h"
#include "module/check/FindingPlace.h"
#include "module/standard/TextColumns.h"
#include "sys/atomic_file.h"

#include <algorithm>

namespace {

constexpr std::size_t placesInTable = 3;
constexpr std::size_t kindsInTable = 8; // of each rule

// "C01 (7650,6600)、C02 (...)、等"
CString FirstPlaces(const CFindings& findings, const FindingKind& kind) {
    CString text;
    for (std::size_t i = 0; i < std::min(placesInTable, kind.m_findings.size()); ++i)
        text += (i == 0 ? L"" : L"、") + GetPlaceText(GetPlace(findings.All()[kind.m_findings[i]]));
    return kind.m_findings.size() > placesInTable ? text + L"、等" : text;
}

void PrintLine(const FindingKind& kind, const wchar_t* severity, const CString& places) {
    CString count;
    count.Format(L"%d", static_cast<int>(kind.m_findings.size()));
    acutPrintf(L"\n%s%s%s%s%s%s", Padded(severity, 6).GetString(),
               Padded(GetRuleInfo(kind.m_rule).m_title, 12).GetString(), Padded(count, 8).GetString(),
               kind.CanMend() ? L"可修复  " : L"        ", kind.m_text.GetString(),
               places.IsEmpty() ? L"" : (L"：" + places).GetString());
}

} // namespace

CCheckReport::CCheckReport(const CFindings& findings, const CheckRules& rules)
    : m_findings(findings), m_rules(rules) {
    for (const FindingKind& kind : findings.Kinds())
        if (!kind.m_findings.empty())
            m_kinds.push_back(&kind);
    std::ranges::stable_sort(m_kinds, [&](const FindingKind* a, const FindingKind* b) {
        if (SeverityOf(*a) != SeverityOf(*b))
            return SeverityOf(*a) > SeverityOf(*b);
        return a->m_rule != b->m_rule ? a->m_rule < b->m_rule : a->m_findings.size() > b->m_findings.size();
    });
}

CString CCheckReport::Sum() const {
    std::size_t counts[] = {0, 0, 0, 0};
    std::size_t mendable = 0;
    for (const FindingKind* const kind : m_kinds) {
        counts[static_cast<std::size_t>(SeverityOf(*kind))] += kind->m_findings.size();
        mendable += kind->CanMend() ? kind->m_findings.size() : 0;
    }
    CString sum;
    sum.Format(L"发现问题 %d 处：错误 %d，警告 %d，提示 %d；可修复 %d 处。",
               static_cast<int>(m_findings.All().size()), static_cast<int>(counts[3]),
               static_cast<int>(counts[2]), static_cast<int>(counts[1]), static_cast<int>(mendable));
    return sum;
}

void CCheckReport::PrintTable() const {
    if (m_kinds.empty()) {
        acutPrintf(L"\n没有发现问题。");
        return;
    }
    acutPrintf(L"\n等级  规则        数量            说明：句柄和位置");
    std::size_t ofRule = 0;
    std::size_t left = 0;
    for (std::size_t i = 0; i < m_kinds.size(); ++i) {
        const FindingKind& kind = *m_kinds[i];
        ofRule = i != 0 && m_kinds[i - 1]->m_rule == kind.m_rule ? ofRule + 1 : 0;
        if (ofRule < kindsInTable)
            PrintLine(kind, GetSeverityText(SeverityOf(kind)), FirstPlaces(m_findings, kind));
        else
            left += kind.m_findings.size();
        const bool isLast = i + 1 == m_kinds.size() || m_kinds[i + 1]->m_rule != kind.m_rule;
        if (isLast && left != 0)
            acutPrintf(L"\n      %s另有 %d 种，共 %d 处",
                       Padded(GetRuleInfo(kind.m_rule).m_title, 12).GetString(),
                       static_cast<int>(ofRule + 1 - kindsInTable), static_cast<int>(left));
        left = isLast ? 0 : left;
    }
    acutPrintf(L"\n%s", Sum().GetString());
}

// False when the user stopped it.
bool CCheckReport::PrintEach(const FindingKind& kind) const {
    PrintLine(kind, GetSeverityText(SeverityOf(kind)), L"");
    for (const std::size_t finding : kind.m_findings) {
        if (acedUsrBrk() != 0)
            return false;
        acutPrintf(L"\n    %s", GetPlaceText(GetPlace(m_findings.All()[finding])).GetString());
    }
    return true;
}

void CCheckReport::PrintAll() const {
    for (const FindingKind* const kind : m_kinds)
        if (!PrintEach(*kind))
            return;
}

void CCheckReport::PrintAll(const std::set<CheckRule>& mendable) const {
    for (const FindingKind* const kind : m_kinds)
        if (kind->CanMend() && mendable.contains(kind->m_rule) && !PrintEach(*kind))
            return;
}

base::result<void> CCheckReport::Write(const std::filesystem::path& file) const {
    const std::filesystem::path end = file.extension();
    const bool isJson = end == ".json";
    if (!isJson && end != ".html" && end != ".htm")
        return base::failure{L"文件名应以 .json 或 .html 结尾"};
    auto written = sys::atomic_file::create(file);
    if (!written)
        return written.why();
    if (auto done = written->write(isJson ? Json() : Html()); !done)
        return done;
    return written->commit();
}

void PrintKinds(const std::vector<const FindingKind*>& kinds) {
    for (const FindingKind* const kind : kinds)
        PrintLine(*kind, L"", L"");
}
