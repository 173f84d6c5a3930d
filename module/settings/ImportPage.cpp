// The pages of import and of comparison.
#include "module/settings/SettingsPages.h"
#include "module/settings/SettingsQuestions.h"
#include "module/settings/StandardComparison.h"
#include "module/settings/StandardImport.h"
#include "module/standard/DefaultStandard.h"
#include "module/standard/StandardFile.h"
#include "sys/folders.h"
#include "ui/presenter.h"

#include "aced.h"
#include "dbapserv.h"

#include <algorithm>

namespace {

using namespace Settings;

// The proposals that the user checks; empty for Cancel.
std::vector<StandardProposal> Choose(const std::vector<StandardProposal>& proposals) {
    ui::dialog dialog;
    dialog.title = L"导入建议";
    ui::check_list& list = dialog.lists.emplace_back();
    list.columns = {{L"系统/图层类型", 160}, {L"图层名", 120}, {L"图元数", 60}, {L"建议", 240}};
    for (const StandardProposal& proposal : proposals)
        list.lines.push_back(
            {{(proposal.owner + L"/" + proposal.key).GetString(), proposal.layer.m_layerName.GetString(),
              SizeText(proposal.entities).GetString(), proposal.what.GetString()}});
    std::vector<StandardProposal> chosen;
    if (ui::run(dialog))
        for (std::size_t i = 0; i < proposals.size(); ++i)
            if (dialog.lists.front().lines[i].checked)
                chosen.push_back(proposals[i]);
    return chosen;
}

void TakeOver(CStandardManager& manager, const std::vector<ImportedLayer>& layers) {
    const std::vector<StandardProposal> proposals = Propose(manager.Standard(), layers);
    if (proposals.empty())
        return Print(L"图层 " + SizeText(static_cast<double>(layers.size())) +
                     L" 个，与标准一致，没有建议。");
    const std::vector<StandardProposal> chosen = Choose(proposals);
    CString group =
        manager.Standard().m_groups.empty() ? CString() : manager.Standard().m_groups.front()->GroupName();
    if (std::ranges::any_of(
            chosen, [](const StandardProposal& one) { return one.kind == StandardProposal::kNewSystem; })) {
        const auto typed = AskText(L"新系统所在的系统组 <" + group + L">:");
        if (!typed)
            return;
        if (!typed->IsEmpty())
            group = *typed;
    }
    int taken = 0;
    for (const StandardProposal& proposal : chosen) {
        const CString refusal = Accept(manager, proposal, group);
        if (refusal.IsEmpty())
            ++taken;
        else
            Print(proposal.owner + L"/" + proposal.key + L": " + refusal);
    }
    CString line;
    line.Format(L"建议 %d 条，采用 %d 条，未能采用 %d 条。", static_cast<int>(proposals.size()), taken,
                static_cast<int>(chosen.size()) - taken);
    Print(line);
}

void ImportDefinitions(CStandardManager& manager) {
    const std::filesystem::path own = sys::system_folder() / "LAYERDEF.DAT";
    const auto typed = AskText(L"图层定义文件 <" + CString(sys::from_path(own).c_str()) + L">:");
    if (!typed)
        return;
    int passedOver = 0;
    const auto layers = LayersDefinedIn(typed->IsEmpty() ? own : sys::to_path(ViewOf(*typed)), passedOver);
    if (!layers)
        return Tell(L"图层定义文件无法读取！", L"");
    if (passedOver != 0)
        Print(L"有 " + SizeText(passedOver) + L" 行不是图层定义，没有读取。");
    TakeOver(manager, *layers);
}

void ImportDrawing(CStandardManager& manager) {
    const auto typed = AskText(L"图形文件 <当前图形>:");
    if (!typed)
        return;
    if (typed->IsEmpty())
        return TakeOver(manager, LayersUsedIn(*acdbHostApplicationServices()->workingDatabase()));
    AcDbDatabase drawing(false, true);
    if (drawing.dxfIn(*typed) != Acad::eOk)
        return Tell(L"图形文件 " + *typed + L" 无法读取！", L"");
    TakeOver(manager, LayersUsedIn(drawing));
}

} // namespace

void Settings::ImportPage(CStandardManager& manager) {
    const wchar_t choice = AskChoice(L"L D", L"LAYERDEF.DAT(L)/图形(D)");
    if (choice == L'L')
        ImportDefinitions(manager);
    else if (choice == L'D')
        ImportDrawing(manager);
}

void Settings::ComparePage(const CStandardManager& manager) {
    const auto typed = AskText(L"与哪个标准文件比较(*: 内置标准) <当前文件>:");
    if (!typed)
        return;
    CString name = typed->IsEmpty() ? manager.FileName() : *typed;
    PipeStandard other;
    if (name.IsEmpty() || name == L"*") {
        name = L"内置标准";
        other = MakeDefaultStandard();
    } else {
        if (!typed->IsEmpty())
            name = FullStandardName(name);
        if (!ReadStandardFile(name, other))
            return Tell(L"标准文件 " + name + L" 无法读取！", L"");
    }
    const std::vector<StandardDifference> differences = CompareStandards(other, manager.Standard());
    for (const StandardDifference& difference : differences) {
        if (acedUsrBrk() != 0)
            return;
        Print(difference.GetText());
    }
    CString sum;
    sum.Format(L"内存中的标准与 %s 相比：%d 处不同。", name.GetString(),
               static_cast<int>(differences.size()));
    Print(sum);
}
