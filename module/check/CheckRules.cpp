#include "module/check/CheckRules.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "module/check/LayerAliases.h"
#include "module/engines/VRbTree.h"
#include "module/engines/VRbTreeXml.h"
#include "module/standard/Names.h"
#include "module/standard/StandardManager.h"
#include "sys/folders.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

namespace {

constexpr std::array<CheckRuleInfo, checkRuleCount> rules{{
    {L"layer-near", L"图层名近似", Severity::Warning},
    {L"layer-alias", L"图层名别名", Severity::Note},
    {L"layer-color", L"图层颜色", Severity::Warning},
    {L"layer-linetype", L"图层线型", Severity::Warning},
    {L"layer-lineweight", L"图层线宽", Severity::Warning},
    {L"layer-plot", L"图层打印", Severity::Warning},
    {L"layer-empty", L"空图层", Severity::Note},
    {L"own-properties", L"特性不随层", Severity::Note},
    {L"pipe-system", L"管线系统", Severity::Error},
    {L"pipe-layer", L"管线图层", Severity::Error},
    {L"pipe-material", L"管材", Severity::Error},
    {L"pipe-diameter", L"管径", Severity::Error},
    {L"pipe-zero", L"零长管线", Severity::Error},
    {L"pipe-overlap", L"管线重叠", Severity::Error},
    {L"pipe-gap", L"管线未接上", Severity::Error},
    {L"text-style", L"文字样式", Severity::Note},
    {L"text-font", L"字体缺失", Severity::Warning},
    {L"mark", L"系统标记", Severity::Warning},
}};
static_assert(rules.back().m_key != nullptr);

constexpr const wchar_t* severityTexts[] = {L"关", L"提示", L"警告", L"错误"};
constexpr wchar_t rootName[] = L"CheckRules";
constexpr wchar_t fileEnd[] = L".check.xml";

// Why an element says nothing; empty when it does, or when it is another one.
CString Take(const CVRbTreeItem& item, CheckRules& to) {
    const CString kind = item.GetName();
    const CString name = item.GetAttrib(L"Name");
    CString fault;
    if (kind == L"Rule") {
        const auto rule = std::ranges::find_if(rules, [&](const auto& one) { return name == one.m_key; });
        const CString severity = item.GetAttrib(L"Severity");
        if (rule == rules.end())
            fault.Format(L"没有规则\"%s\"", name);
        else if (RuleSetting& setting = to.m_settings[static_cast<std::size_t>(rule - rules.begin())];
                 !ParseSeverity(severity, setting.m_severity))
            fault.Format(L"规则\"%s\"的等级\"%s\"不是错误、警告、提示或关", name, severity);
        else
            setting.m_layers = item.GetAttrib(L"Layers");
    } else if (kind == L"Tolerance") {
        const auto& infos = GetToleranceInfos();
        const auto info = std::ranges::find_if(infos, [&](const auto& one) { return name == one.m_key; });
        const CString text = item.GetAttrib(L"Value");
        const std::optional<double> value = base::parse_real(base::narrow(ViewOf(text)));
        if (info == infos.end())
            fault.Format(L"没有容差\"%s\"", name);
        else if (!value || *value < 0.0)
            fault.Format(L"容差\"%s\"的值\"%s\"不是数", name, text);
        else
            to.m_tolerances.*info->m_value = *value;
    } else if (kind == L"Alias") {
        to.m_aliases.push_back(
            {item.GetAttrib(L"Layers"), item.GetAttrib(L"System"), item.GetAttrib(L"LayerType")});
    }
    return fault;
}

} // namespace

const CheckRuleInfo& GetRuleInfo(CheckRule rule) {
    return rules[static_cast<std::size_t>(rule)];
}

const wchar_t* GetSeverityText(Severity severity) {
    return severityTexts[static_cast<std::size_t>(severity)];
}

bool ParseSeverity(const CString& text, Severity& severity) {
    for (std::size_t i = 0; i < std::size(severityTexts); ++i)
        if (text == severityTexts[i]) {
            severity = static_cast<Severity>(i);
            return true;
        }
    return false;
}

const std::array<ToleranceInfo, 3>& GetToleranceInfos() {
    static constexpr std::array<ToleranceInfo, 3> infos{{
        {L"same", L"同点容差", &CheckTolerances::m_same},
        {L"overlap", L"重叠长度", &CheckTolerances::m_overlap},
        {L"gap", L"未接上距离", &CheckTolerances::m_gap},
    }};
    return infos;
}

CheckRules::CheckRules() : m_aliases(GetUsualAliases()) {
    for (std::size_t i = 0; i < checkRuleCount; ++i)
        m_settings[i].m_severity = rules[i].m_severity;
}

CString GetCheckRulesFile() {
    const CStandardManager* const manager = CStandardManager::Loaded();
    std::filesystem::path path =
        manager != nullptr ? sys::to_path(ViewOf(manager->FileName())) : std::filesystem::path();
    if (path.empty())
        path = sys::system_folder() / "kol";
    path.replace_extension(sys::to_path(fileEnd));
    return sys::from_path(path).c_str();
}

bool ReadCheckRules(LPCTSTR path, CheckRules& into, CString& fault) {
    std::error_code ignored;
    if (!std::filesystem::exists(sys::to_path(path), ignored)) {
        into = CheckRules();
        return true;
    }
    CVRbTree tree;
    std::optional<MarkupFault> markup;
    CheckRules read;
    CString why;
    if (LoadTreeFromXml(path, tree, &markup) == 0)
        why = markup ? markup->GetText() : CString(L"不能读取");
    else if (tree.GetRootItem()->GetName() != rootName)
        why = L"不是检查规则文件";
    else if (tree.GetRootItem()->FindSubItem(L"Alias") != nullptr)
        read.m_aliases.clear();
    if (why.IsEmpty())
        for (const CVRbTreeItem* item = tree.GetRootItem()->GetChild(); item != nullptr && why.IsEmpty();
             item = item->GetNext())
            why = Take(*item, read);
    if (!why.IsEmpty()) {
        fault.Format(L"检查规则文件 %s：%s", path, why);
        return false;
    }
    into = std::move(read);
    return true;
}

bool WriteCheckRules(LPCTSTR path, const CheckRules& from) {
    CVRbTree tree;
    CVRbTreeItem* const root = tree.InsertItem(rootName);
    root->SetAttrib(L"Comment", L"图形检查规则：等级为 错误、警告、提示 或 关");
    for (std::size_t i = 0; i < checkRuleCount; ++i) {
        CVRbTreeItem* const item = tree.InsertItem(L"Rule", root);
        item->SetAttrib(L"Name", rules[i].m_key);
        item->SetAttrib(L"Comment", rules[i].m_title);
        item->SetAttrib(L"Severity", GetSeverityText(from.m_settings[i].m_severity));
        if (!from.m_settings[i].m_layers.IsEmpty())
            item->SetAttrib(L"Layers", from.m_settings[i].m_layers);
    }
    for (const ToleranceInfo& info : GetToleranceInfos()) {
        CVRbTreeItem* const item = tree.InsertItem(L"Tolerance", root);
        item->SetAttrib(L"Name", info.m_key);
        item->SetAttrib(L"Comment", info.m_title);
        item->SetAttrib(L"Value", base::widen(base::real_text(from.m_tolerances.*info.m_value)).c_str());
    }
    for (const LayerAlias& alias : from.m_aliases) {
        CVRbTreeItem* const item = tree.InsertItem(L"Alias", root);
        item->SetAttrib(L"Layers", alias.m_patterns);
        item->SetAttrib(L"System", alias.m_system);
        item->SetAttrib(L"LayerType", alias.m_layerType);
    }
    return SaveTreeToXml(tree, path, L"utf-8", false) != 0;
}
