// The command that puts right what a check finds, and brings layers of other offices to their names here.
#include "acedads.h"
#include "acutads.h"
#include "dbapserv.h"
#include "module/check/CheckCommands.h"
#include "module/check/CheckReport.h"
#include "module/check/DrawingCheck.h"
#include "module/check/LayerMapping.h"
#include "module/check/LayerMoves.h"
#include "module/check/Mending.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/standard/Names.h"
#include "sys/folders.h"
#include "ui/presenter.h"

#include <algorithm>
#include <optional>
#include <system_error>

namespace {

// With L the user sees everything once more and is asked again.
template<class List>
bool IsConfirmed(List list) {
    for (;;) {
        acedInitGet(0, L"Y N L");
        ACHAR answer[8] = {};
        if (acedGetKword(L"\n是否修改[是(Y)/否(N)/逐条列出(L)]<N>:", answer) != RTNORM || answer[0] == L'N')
            return false;
        if (answer[0] == L'Y')
            return true;
        list();
    }
}

// ---- findings

std::vector<const FindingKind*> MendableKinds(const CFindings& findings, const std::set<CheckRule>& rules) {
    std::vector<const FindingKind*> kinds;
    for (const FindingKind& kind : findings.Kinds())
        if (kind.CanMend() && rules.contains(kind.m_rule))
            kinds.push_back(&kind);
    std::ranges::stable_sort(
        kinds, [](const FindingKind* a, const FindingKind* b) { return a->m_rule < b->m_rule; });
    return kinds;
}

// The rules of which something can be mended, with how much.
std::map<CheckRule, std::size_t> CountMendable(const CFindings& findings) {
    std::map<CheckRule, std::size_t> counts;
    for (const FindingKind& kind : findings.Kinds())
        if (kind.CanMend())
            counts[kind.m_rule] += kind.m_findings.size();
    return counts;
}

std::set<CheckRule> ChooseRules(const std::map<CheckRule, std::size_t>& counts) {
    ui::dialog dialog;
    dialog.title = L"选择要修复的种类";
    ui::check_list list;
    list.columns = {{L"规则", 120}, {L"可修复", 80}};
    for (const auto& [rule, count] : counts)
        list.lines.push_back({{GetRuleInfo(rule).m_title, std::to_wstring(count)}, false});
    dialog.lists.push_back(list);
    std::set<CheckRule> chosen;
    if (!ui::run(dialog))
        return chosen;
    auto line = dialog.lists[0].lines.begin();
    for (const auto& [rule, count] : counts)
        if ((line++)->checked)
            chosen.insert(rule);
    return chosen;
}

void TellMended(const CMending& mending) {
    CString line;
    line.Format(L"\n修复 %d 处", mending.GetMended());
    const wchar_t* between = L"（";
    for (std::size_t i = 0; i < checkRuleCount; ++i)
        if (const auto rule = static_cast<CheckRule>(i); mending.GetMended(rule) != 0) {
            line.AppendFormat(L"%s%s %d", between, GetRuleInfo(rule).m_title, mending.GetMended(rule));
            between = L"，";
        }
    line += mending.GetMended() != 0 ? L"），" : L"，";
    acutPrintf(L"%s复查还有可修复的 %d 处。", line.GetString(), mending.GetLeft());
    mending.GetStayed().Tell(L"没有修复");
}

enum class Wanted { All, AllUnasked, Chosen };

void MendFindings(Wanted wanted) {
    CheckRules rules;
    CString fault;
    if (!ReadCheckRules(GetCheckRulesFile(), rules, fault)) {
        acdbFail(L"\n" + fault);
        return;
    }
    std::optional<CFindings> findings = CheckDrawing(rules);
    if (!findings) {
        acutPrintf(L"\n检查已中断。");
        return;
    }
    const auto counts = CountMendable(*findings);
    if (counts.empty()) {
        acutPrintf(L"\n没有可修复的问题。");
        return;
    }
    std::set<CheckRule> chosen;
    if (wanted == Wanted::Chosen)
        chosen = ChooseRules(counts);
    else
        for (std::size_t i = 0; i < checkRuleCount; ++i)
            chosen.insert(static_cast<CheckRule>(i));
    if (chosen.empty())
        return;
    PrintKinds(MendableKinds(*findings, chosen));
    if (wanted != Wanted::AllUnasked &&
        !IsConfirmed([&] { CCheckReport(*findings, rules).PrintAll(chosen); }))
        return;
    CMending mending(rules, chosen);
    mending.Run(std::move(*findings));
    TellMended(mending);
    RegenerateDisplay();
}

// ---- mapping of layers

// A file that is not there by the name as it stands is that of the system folder, if it has one.
std::optional<std::filesystem::path> AskFile(const wchar_t* prompt) {
    AcString typed;
    if (acedGetString(1, prompt, typed) != RTNORM || typed.isEmpty())
        return std::nullopt;
    const std::filesystem::path path = sys::to_path(typed.kwszPtr());
    std::error_code ignored;
    const std::filesystem::path ofSystem = sys::system_folder() / path;
    return !path.has_parent_path() && !std::filesystem::exists(path, ignored) &&
                   std::filesystem::exists(ofSystem, ignored)
               ? ofSystem
               : path;
}

bool IsReplaced() {
    acedInitGet(0, L"Y N");
    ACHAR answer[8] = {};
    return acedGetKword(L"\n文件已存在，是否替换[是(Y)/否(N)] <N>:", answer) == RTNORM && answer[0] == L'Y';
}

void PrintSteps(const CLayerMoves& moves) {
    for (const CLayerMoves::Step& step : moves.GetSteps()) {
        if (step.m_obstacle.IsEmpty())
            acutPrintf(L"\n图层\"%s\" → \"%s\"%s", step.m_from.GetString(), step.m_to.GetString(),
                       step.m_isMerged ? L"（合并）" : L"");
        else
            acutPrintf(L"\n图层\"%s\"不处理：%s。", step.m_from.GetString(), step.m_obstacle.GetString());
    }
}

void ApplyMapping(bool reversed) {
    const auto file = AskFile(L"\n映射文件名 <退出>:");
    if (!file)
        return;
    auto mapping = CLayerMapping::Read(*file);
    if (!mapping) {
        acdbFail(CString(L"\n映射文件不能读取：") + mapping.error().c_str());
        return;
    }
    if (reversed) {
        *mapping = mapping->Reversed();
        if (mapping->GetLost() != 0)
            acutPrintf(L"\n%d 行不能反向，没有使用。", mapping->GetLost());
    }
    std::vector<LayerMove> wanted;
    for (const AcDbObjectId layer : GetAllLayerIds())
        if (const CString name = mapping->Map(GetLayerName(layer)); !name.IsEmpty())
            wanted.push_back({layer, name});
    CLayerMoves moves(wanted);
    if (moves.GetSteps().empty()) {
        acutPrintf(L"\n没有要映射的图层。");
        return;
    }
    PrintSteps(moves);
    if (!IsConfirmed([&] { PrintSteps(moves); }))
        return;
    moves.Run();
    acutPrintf(L"\n图层改名 %d 个，合并 %d 个。", moves.GetRenamed(), moves.GetMerged());
    moves.GetStayed().Tell(L"没有改变图层");
    RegenerateDisplay();
}

// What the current drawing's layers were called before someone mapped them by hand: another file tells.
void LearnMapping() {
    const auto before = AskFile(L"\n映射前的图形文件名 <退出>:");
    if (!before)
        return;
    AcDbDatabase original(false, true);
    if (original.dxfIn(sys::from_path(*before).c_str()) != Acad::eOk) {
        acdbFail(CString(L"\n图形 ") + sys::from_path(*before).c_str() + L" 不能读取！");
        return;
    }
    const CLayerMapping learnt =
        CLayerMapping::Learn(original, *acdbHostApplicationServices()->workingDatabase());
    if (learnt.GetRows().empty()) {
        acutPrintf(L"\n两个图形的图层没有不同。");
        return;
    }
    for (const LayerMapRow& row : learnt.GetRows())
        acutPrintf(L"\n%s=%s", row.m_from.GetString(), row.m_to.GetString());
    const auto file = AskFile(L"\n保存为映射文件 <退出>:");
    std::error_code ignored;
    if (!file || (std::filesystem::exists(*file, ignored) && !IsReplaced()))
        return;
    if (const auto written = learnt.Write(*file); !written)
        acdbFail(CString(L"\n映射文件不能写入：") + written.error().c_str());
    else
        acutPrintf(L"\n已保存 %d 行到 %s", static_cast<int>(learnt.GetRows().size()),
                   sys::from_path(*file).c_str());
}

} // namespace

void MendCurrentDrawing() {
    const CDocumentLock lock;
    acedInitGet(0, L"A Y K M T L");
    ACHAR answer[8] = {};
    if (acedGetKword(
            L"\n[全部修复(A)/不询问全部修复(Y)/选择种类(K)/图层映射(M)/反向映射(T)/学习映射(L)] <退出>:",
            answer) != RTNORM)
        return;
    switch (answer[0]) {
    case L'A':
        MendFindings(Wanted::All);
        break;
    case L'Y':
        MendFindings(Wanted::AllUnasked);
        break;
    case L'K':
        MendFindings(Wanted::Chosen);
        break;
    case L'M':
    case L'T':
        ApplyMapping(answer[0] == L'T');
        break;
    default:
        LearnMapping();
    }
}
