// The pages of rules, text styles and object colours, and values set by one assignment.
#include "module/settings/SettingsPages.h"
#include "module/settings/SettingsQuestions.h"
#include "module/settings/StandardChanges.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/PipeSystemCreation.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>

namespace {

using namespace Settings;

CString Quoted(const CString& text) {
    return L"\"" + text + L"\"";
}

// The record of a key without case; null when there is none.
template<class Record>
const Record* Find(const std::vector<Record>& records, CString Record::*key, const CString& wanted) {
    const auto found =
        std::ranges::find_if(records, [&](const Record& one) { return IsSameName(one.*key, wanted); });
    return found != records.end() ? &*found : nullptr;
}

// A record to be edited, which is the key's or a new one.
template<class Record>
Record RecordOf(const std::vector<Record>& records, CString Record::*key, const CString& wanted) {
    const Record* const found = Find(records, key, wanted);
    Record record = found != nullptr ? *found : Record();
    if (found == nullptr)
        record.*key = wanted;
    return record;
}

// Its first fields stand beside the keys.
template<class Record>
std::optional<CString> AskRecord(const std::vector<Record>& records, CString Record::*key,
                                 const CString& prompt, const CString& title) {
    constexpr std::size_t most = 4;
    std::vector<CString> columns = {title};
    for (const StandardField<Record>& field : FieldsOf<Record>())
        if (columns.size() <= most)
            columns.push_back(field.name);
    std::vector<Choice> list;
    for (const Record& record : records) {
        Choice& choice = list.emplace_back(Choice{record.*key, {}, 0});
        for (const StandardField<Record>& field : FieldsOf<Record>())
            if (choice.cells.size() < most)
                choice.cells.push_back(field.get(record));
    }
    return AskOneOf(prompt, title, columns, list);
}

void UpdateDrawing(const TextStyleNode& style) {
    if (!ZefExport::GetTextStyleId(style.m_name).isNull() &&
        AskYes(L"当前图形中有文字样式" + Quoted(style.m_name) + L"，是否更新"))
        Tell(PipeSystemTool::UpdateTextStyle(style.m_name) ? CString() : L"文字样式无法更新！",
             L"已更新当前图形中的文字样式" + Quoted(style.m_name) + L"。");
}

// ---- assignments

// Puts a text into a field of a record and the record into the standard.
template<class Record, class Set>
CString SetField(Record record, const CString& field, const CString& value, Set set) {
    const StandardField<Record>* const found = FindField<Record>(field);
    if (found == nullptr) {
        std::vector<CString> names;
        for (const StandardField<Record>& one : FieldsOf<Record>())
            names.emplace_back(one.name);
        return L"没有属性" + Quoted(field) + L"！可用：" + JoinNames(names, L" ");
    }
    CString why = found->set(record, value);
    return why.IsEmpty() ? set(record) : why + L"！";
}

// The part in front of the first slash; the path becomes what stands behind it.
CString TakePart(CString& path) {
    const int slash = path.Find(L'/');
    const CString part = slash < 0 ? path : path.Left(slash);
    path = slash < 0 ? CString() : path.Mid(slash + 1);
    return part;
}

template<class Record>
CString SetInList(const std::vector<Record>& records, CString Record::*key, CString path,
                  const CString& value, CString (*put)(CStandardManager&, const Record&),
                  CStandardManager& manager) {
    const CString name = TakePart(path);
    const Record* const found = Find(records, key, name);
    if (found == nullptr)
        return L"标准中没有" + Quoted(name) + L"！";
    return SetField(*found, path, value, [&](const Record& record) { return put(manager, record); });
}

CString SetByPath(CStandardManager& manager, CString path, const CString& value) {
    const PipeStandard& standard = manager.Standard();
    const CString first = TakePart(path);
    if (path.IsEmpty())
        return L"应为 系统/属性=值、系统/图层类型/属性=值 或 文字样式/用途/属性=值！";
    // A system may be called as a list is.
    const LayerSet* const owner = StandardChanges::FindOwner(standard, first);
    if (owner == nullptr) {
        if (first == L"文字样式")
            return SetInList(standard.m_textStyles, &TextStyleNode::m_key, path, value,
                             StandardChanges::SetTextStyle, manager);
        if (first == L"命名规则")
            return SetInList(standard.m_nameRules, &LayerNameRule::m_layerType, path, value,
                             StandardChanges::SetNameRule, manager);
        if (first == L"创建规则")
            return SetInList(standard.m_createRules, &CreateSystemRule::m_name, path, value,
                             StandardChanges::SetCreateRule, manager);
        if (first == L"对象颜色")
            return SetInList(standard.m_objectColors, &ObjectColor::m_name, path, value,
                             StandardChanges::SetObjectColor, manager);
        return L"标准中没有管线系统或图层组" + Quoted(first) + L"！";
    }
    if (path.Find(L'/') < 0) {
        const PipeNode* const system = StandardChanges::FindSystem(standard, first);
        if (system == nullptr)
            return L"标准中没有管线系统" + Quoted(first) + L"！";
        return SetField(static_cast<PipeBasicNode>(*system), path, value, [&](const PipeBasicNode& values) {
            return StandardChanges::SetSystem(manager, first, values);
        });
    }
    const CString key = TakePart(path);
    const LayerNode* const layer = owner->FindLayerNode(key, false);
    if (layer == nullptr)
        return Quoted(first) + L"中没有图层" + Quoted(key) + L"！";
    return SetField(*layer, path, value, [&](const LayerNode& values) {
        return StandardChanges::SetLayer(manager, first, key, values);
    });
}

} // namespace

void Settings::RulesPage(CStandardManager& manager) {
    const PipeStandard& standard = manager.Standard();
    const wchar_t choice = AskChoice(L"N C D", L"图层命名规则(N)/系统创建规则(C)/删除创建规则(D)");
    if (choice == L'N') {
        const auto type =
            AskRecord(standard.m_nameRules, &LayerNameRule::m_layerType, L"图层类型", L"命名规则");
        LayerNameRule rule;
        if (!type)
            return;
        rule = RecordOf(standard.m_nameRules, &LayerNameRule::m_layerType, *type);
        if (EditFields(L"命名规则 " + *type, rule))
            Tell(StandardChanges::SetNameRule(manager, rule),
                 L"\"" + *type + L"\"的图层今后命名为" + Quoted(rule.m_prefix + L"系统名" + rule.m_suffix) +
                     L"，已有的图层名不变。");
    } else if (choice != L'\0') {
        const auto name =
            AskRecord(standard.m_createRules, &CreateSystemRule::m_name, L"创建规则", L"创建规则");
        if (!name)
            return;
        if (choice == L'D') {
            if (AskYes(L"是否删除创建规则" + Quoted(*name)))
                Tell(StandardChanges::DeleteCreateRule(manager, *name),
                     L"已删除创建规则" + Quoted(*name) + L"。");
            return;
        }
        CreateSystemRule rule = RecordOf(standard.m_createRules, &CreateSystemRule::m_name, *name);
        if (EditFields(L"创建规则 " + *name, rule))
            Tell(StandardChanges::SetCreateRule(manager, rule),
                 L"创建规则" + Quoted(*name) + L"：" + ListText(rule.m_layerTypes) + L"。");
    }
}

void Settings::TextStylesPage(CStandardManager& manager) {
    const auto use =
        AskRecord(manager.Standard().m_textStyles, &TextStyleNode::m_key, L"文字样式的用途", L"文字样式");
    if (!use)
        return;
    const TextStyleNode* const kept = Find(manager.Standard().m_textStyles, &TextStyleNode::m_key, *use);
    if (kept == nullptr)
        return Tell(L"标准中没有用途" + Quoted(*use) + L"！", L"");
    TextStyleNode style = *kept;
    if (!EditFields(L"文字样式 " + *use, style))
        return;
    if (!PipeSystemTool::IsModified(style)) {
        Print(L"文字样式没有修改。");
    } else {
        const CString refusal = StandardChanges::SetTextStyle(manager, style);
        Tell(refusal, L"已修改文字样式" + Quoted(*use) + L"。");
        if (!refusal.IsEmpty())
            return;
    }
    UpdateDrawing(style);
}

void Settings::ObjectColorsPage(CStandardManager& manager) {
    const auto name =
        AskRecord(manager.Standard().m_objectColors, &ObjectColor::m_name, L"对象名", L"对象颜色");
    if (!name)
        return;
    ObjectColor color = RecordOf(manager.Standard().m_objectColors, &ObjectColor::m_name, *name);
    if (EditFields(L"对象颜色 " + *name, color))
        Tell(StandardChanges::SetObjectColor(manager, color),
             L"对象" + Quoted(*name) + L"的颜色为" + GetColorText(color.m_color) + L"。");
}

void Settings::Assign(CStandardManager& manager, const CString& assignment) {
    const int equals = assignment.Find(L'=');
    const CString path = equals < 0 ? assignment : assignment.Left(equals);
    const CString value = equals < 0 ? CString() : assignment.Mid(equals + 1);
    Tell(equals < 0 ? L"没有选项" + Quoted(assignment) + L"！" : SetByPath(manager, path, value),
         L"已设置 " + assignment);
}
