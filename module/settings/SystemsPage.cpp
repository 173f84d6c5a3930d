// The pages of groups and systems.
#include "module/settings/DrawingUse.h"
#include "module/settings/SettingsPages.h"
#include "module/settings/SettingsQuestions.h"
#include "module/settings/StandardChanges.h"

#include <algorithm>

namespace {

using namespace Settings;

CString Quoted(const CString& text) {
    return L"\"" + text + L"\"";
}

// ---- what there is to choose from

std::optional<CString> AskSystem(const PipeStandard& standard, const CString& prompt) {
    std::vector<Choice> tree;
    for (const auto& group : standard.m_groups) {
        tree.push_back({group->GroupName(), {}, 0});
        for (const auto& system : group->Systems())
            tree.push_back({system->m_name, {system->m_dim, system->m_material}, 1});
    }
    return AskOneOf(prompt, L"管线系统", {L"系统", L"标注", L"管材"}, tree);
}

std::optional<CString> AskGroup(const PipeStandard& standard, const CString& prompt) {
    std::vector<Choice> list;
    for (const auto& group : standard.m_groups) {
        CString count;
        count.Format(L"%d", group->GetSystemNum());
        list.push_back({group->GroupName(), {count}, 0});
    }
    return AskOneOf(prompt, L"系统组", {L"系统组", L"系统数"}, list);
}

// Enter takes the first rule.
std::optional<CString> AskRule(const PipeStandard& standard) {
    if (standard.m_createRules.empty())
        return CString();
    std::vector<CString> names;
    for (const CreateSystemRule& rule : standard.m_createRules)
        names.push_back(rule.m_name);
    std::optional<CString> name =
        AskText(L"创建规则(" + JoinNames(names, L" ") + L") <" + names.front() + L">:");
    if (name && name->IsEmpty())
        name = names.front();
    return name;
}

// ---- what drawings see of it

void TellUse(const DrawingUse& use, const wchar_t* what) {
    if (!use.IsNone())
        Print(L"当前图形中的" + use.GetText() + what);
}

void TellNew(const PipeStandard& standard, const CString& name, const wchar_t* done) {
    const PipeNode* const system = StandardChanges::FindSystem(standard, name);
    if (system == nullptr)
        return;
    std::vector<CString> layers;
    system->GetAllLayerName(layers);
    CString line;
    line.Format(L"%s管线系统\"%s\"，图层 %d 个：", done, name.GetString(), static_cast<int>(layers.size()));
    Print(line + ListText(layers));
    Print(L"图形中的图层在第一次用到时创建。");
    TellUse(UseOfLayers(layers), L"已有这些图层名，特性保持不变。");
}

// ---- what can be done

void NewSystem(CStandardManager& manager) {
    const auto group = AskGroup(manager.Standard(), L"系统组");
    const auto name = group ? AskName(L"新系统名 <返回>:") : std::nullopt;
    const auto rule = name ? AskRule(manager.Standard()) : std::nullopt;
    if (!rule)
        return;
    const CString refusal = StandardChanges::AddSystem(manager, *group, *name, *rule);
    if (refusal.IsEmpty())
        TellNew(manager.Standard(), *name, L"已新建");
    else
        Tell(refusal, L"");
}

void CopySystem(CStandardManager& manager) {
    const auto name = AskSystem(manager.Standard(), L"要复制的系统");
    const auto copy = name ? AskName(L"新系统名 <返回>:") : std::nullopt;
    if (!copy)
        return;
    const CString refusal = StandardChanges::CopySystem(manager, *name, *copy);
    if (refusal.IsEmpty())
        TellNew(manager.Standard(), *copy, L"已复制为");
    else
        Tell(refusal, L"");
}

void RenameSystem(CStandardManager& manager) {
    const auto name = AskSystem(manager.Standard(), L"要改名的系统");
    const auto newName = name ? AskName(L"新系统名 <返回>:") : std::nullopt;
    if (!newName)
        return;
    const bool layersToo = AskYes(L"图层名中的系统名是否也改");
    const PipeNode* const system = StandardChanges::FindSystem(manager.Standard(), *name);
    const DrawingUse use = system != nullptr ? UseOfSystem(*system) : DrawingUse();
    const CString refusal = StandardChanges::RenameSystem(manager, *name, *newName, layersToo);
    Tell(refusal, L"管线系统" + Quoted(*name) + L"已改名为" + Quoted(*newName) +
                      (layersToo ? L"，图层名已随之修改。" : L"，图层名不变。"));
    if (!refusal.IsEmpty())
        return;
    if (layersToo)
        TellUse(use, L"保持原样：旧图层名不再属于标准，管线仍记着原系统名。");
    else
        TellUse(use, L"保持原样：图层仍属于该系统，管线仍记着原系统名。");
}

void MoveSystem(CStandardManager& manager) {
    const auto name = AskSystem(manager.Standard(), L"要移动的系统");
    if (!name)
        return;
    const wchar_t way = AskChoice(L"U D G", L"上移(U)/下移(D)/移到系统组(G)");
    if (way == L'G') {
        if (const auto group = AskGroup(manager.Standard(), L"移到系统组"))
            Tell(StandardChanges::MoveSystemTo(manager, *name, *group),
                 L"管线系统" + Quoted(*name) + L"已移到系统组" + Quoted(*group) + L"，图形不受影响。");
    } else if (way != L'\0') {
        Tell(StandardChanges::MoveSystem(manager, *name, way == L'U'),
             L"管线系统" + Quoted(*name) + (way == L'U' ? L"已上移一位" : L"已下移一位") +
                 L"，图形不受影响。");
    }
}

void DeleteSystem(CStandardManager& manager) {
    const auto name = AskSystem(manager.Standard(), L"要删除的系统");
    if (!name)
        return;
    if (const PipeNode* const system = StandardChanges::FindSystem(manager.Standard(), *name))
        TellUse(UseOfSystem(*system), L"将保持原样，但不再属于任何系统。");
    if (AskYes(L"是否删除管线系统" + Quoted(*name)))
        Tell(StandardChanges::DeleteSystem(manager, *name), L"已删除管线系统" + Quoted(*name) + L"。");
}

void EditSystem(CStandardManager& manager) {
    const auto name = AskSystem(manager.Standard(), L"要修改的系统");
    if (!name)
        return;
    const PipeNode* const system = StandardChanges::FindSystem(manager.Standard(), *name);
    PipeBasicNode values;
    if (system != nullptr)
        values = *system;
    if (system != nullptr && !EditFields(L"管线系统 " + *name, values))
        return;
    Tell(StandardChanges::SetSystem(manager, *name, values),
         L"已修改管线系统" + Quoted(*name) + L"，新画的管线按此绘制。");
}

} // namespace

void Settings::SystemsPage(CStandardManager& manager) {
    switch (AskChoice(L"N C R M D E", L"新建(N)/复制(C)/改名(R)/移动(M)/删除(D)/属性(E)")) {
    case L'N':
        return NewSystem(manager);
    case L'C':
        return CopySystem(manager);
    case L'R':
        return RenameSystem(manager);
    case L'M':
        return MoveSystem(manager);
    case L'D':
        return DeleteSystem(manager);
    case L'E':
        return EditSystem(manager);
    default:
        return;
    }
}

void Settings::GroupsPage(CStandardManager& manager) {
    const wchar_t choice = AskChoice(L"N R M D", L"新建(N)/改名(R)/移动(M)/删除(D)");
    if (choice == L'\0')
        return;
    const auto name =
        choice == L'N' ? AskName(L"新系统组名 <返回>:") : AskGroup(manager.Standard(), L"系统组");
    if (!name)
        return;
    if (choice == L'N') {
        Tell(StandardChanges::AddGroup(manager, *name), L"已新建系统组" + Quoted(*name) + L"。");
    } else if (choice == L'R') {
        if (const auto newName = AskName(L"新系统组名 <返回>:"))
            Tell(StandardChanges::RenameGroup(manager, *name, *newName),
                 L"系统组" + Quoted(*name) + L"已改名为" + Quoted(*newName) +
                     L"；图形中按组分的图层过滤器保留原名。");
    } else if (choice == L'M') {
        if (const wchar_t way = AskChoice(L"U D", L"上移(U)/下移(D)"); way != L'\0')
            Tell(StandardChanges::MoveGroup(manager, *name, way == L'U'),
                 L"系统组" + Quoted(*name) + (way == L'U' ? L"已上移一位。" : L"已下移一位。"));
    } else if (AskYes(L"是否删除系统组" + Quoted(*name))) {
        Tell(StandardChanges::DeleteGroup(manager, *name), L"已删除系统组" + Quoted(*name) + L"。");
    }
}
