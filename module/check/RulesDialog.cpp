#include "module/check/RulesDialog.h"

#include "acutads.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "ui/presenter.h"

#include <optional>

namespace {

std::wstring WhyNoSeverity(const std::wstring& value) {
    Severity ignored{};
    return ParseSeverity(value.c_str(), ignored) ? L"" : L"请输入 错误、警告、提示 或 关。";
}

std::wstring WhyNoLength(const std::wstring& value) {
    const std::optional<double> number = base::parse_real(base::narrow(value));
    return number && *number >= 0.0 ? L"" : L"请输入不小于0的数。";
}

} // namespace

bool EditCheckRules(CheckRules& rules) {
    ui::dialog dialog;
    dialog.title = L"检查规则";
    for (std::size_t i = 0; i < checkRuleCount; ++i)
        dialog.fields.push_back({GetRuleInfo(static_cast<CheckRule>(i)).m_title,
                                 GetSeverityText(rules.m_settings[i].m_severity), WhyNoSeverity});
    for (const ToleranceInfo& info : GetToleranceInfos())
        dialog.fields.push_back(
            {info.m_title, base::widen(base::real_text(rules.m_tolerances.*info.m_value)), WhyNoLength});
    if (!ui::run(dialog))
        return false;
    CheckRules edited = rules;
    for (std::size_t i = 0; i < checkRuleCount; ++i)
        ParseSeverity(dialog.fields[i].value.c_str(), edited.m_settings[i].m_severity);
    std::size_t field = checkRuleCount;
    for (const ToleranceInfo& info : GetToleranceInfos())
        edited.m_tolerances.*info.m_value = *base::parse_real(base::narrow(dialog.fields[field++].value));
    const CString file = GetCheckRulesFile();
    if (!WriteCheckRules(file, edited)) {
        acdbFail(L"\n检查规则文件 " + file + L" 无法保存！");
        return false;
    }
    acutPrintf(L"\n检查规则已保存到 %s", file.GetString());
    rules = std::move(edited);
    return true;
}
