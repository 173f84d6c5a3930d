#include "module/settings/SettingsQuestions.h"

#include "sys/folders.h"
#include "ui/presenter.h"

#include "acedads.h"
#include "acutads.h"

#include <filesystem>

namespace {

bool g_isEnded = false;

// What a question gave, which is noted when it was Escape.
int Noted(int given) {
    g_isEnded = g_isEnded || given == RTCAN;
    return given;
}

} // namespace

namespace Settings {

void Begin() {
    g_isEnded = false;
}

bool IsEnded() {
    return g_isEnded;
}

void Print(const CString& line) {
    acutPrintf(L"\n%s", line.GetString());
}

std::optional<CString> AskText(const CString& prompt) {
    AcString typed;
    if (Noted(acedGetString(0, L"\n" + prompt, typed)) != RTNORM)
        return std::nullopt;
    return CString(typed.kwszPtr()).Trim();
}

std::optional<CString> AskName(const CString& prompt) {
    std::optional<CString> name = AskText(prompt);
    return name && !name->IsEmpty() ? name : std::nullopt;
}

wchar_t AskChoice(const wchar_t* keywords, const wchar_t* choices) {
    acedInitGet(0, keywords);
    ACHAR answer[8] = {};
    CString prompt;
    prompt.Format(L"\n[%s] <返回>:", choices);
    return Noted(acedGetKword(prompt, answer)) == RTNORM ? answer[0] : L'\0';
}

bool AskYes(const CString& prompt) {
    acedInitGet(0, L"Y N");
    ACHAR answer[8] = {};
    const int given = Noted(acedGetKword(L"\n" + prompt + L"[是(Y)/否(N)] <否>:", answer));
    return given == RTNORM && answer[0] == L'Y';
}

std::optional<CString> AskOneOf(const CString& prompt, const CString& title,
                                const std::vector<CString>& columns, const std::vector<Choice>& choices) {
    const std::optional<CString> typed = AskName(prompt + L"[列表(?)] <返回>:");
    if (!typed || *typed != L"?")
        return typed;
    ui::dialog dialog;
    dialog.title = title;
    ui::check_list& list = dialog.lists.emplace_back();
    for (const CString& column : columns)
        list.columns.push_back({column.GetString(), 120});
    for (const Choice& choice : choices) {
        ui::line& line = list.lines.emplace_back();
        line.depth = choice.depth;
        line.cells.emplace_back(choice.name.GetString());
        for (const CString& cell : choice.cells)
            line.cells.emplace_back(cell.GetString());
    }
    if (!ui::run(dialog))
        return std::nullopt;
    for (std::size_t i = 0; i < choices.size(); ++i)
        if (dialog.lists.front().lines[i].checked)
            return choices[i].name;
    return std::nullopt;
}

std::optional<std::vector<CString>> EditTexts(const CString& title,
                                              const std::vector<std::pair<CString, CString>>& fields,
                                              const Refusal& refusal) {
    ui::dialog dialog;
    dialog.title = title;
    for (std::size_t i = 0; i < fields.size(); ++i)
        dialog.fields.push_back({fields[i].first.GetString(), fields[i].second.GetString(),
                                 [&refusal, i](const std::wstring& value) -> std::wstring {
                                     return refusal(i, value.c_str()).GetString();
                                 }});
    if (!ui::run(dialog))
        return std::nullopt;
    std::vector<CString> texts;
    for (const ui::field& field : dialog.fields)
        texts.emplace_back(field.value.c_str());
    return texts;
}

CString FullStandardName(const CString& typed) {
    CString name = typed;
    if (name.Right(5).CompareNoCase(L".vrsl") != 0)
        name += L".vrsl";
    const std::filesystem::path path = sys::to_path(ViewOf(name));
    return name.FindOneOf(L"\\/") < 0 ? CString(sys::from_path(sys::system_folder() / path).c_str()) : name;
}

void Tell(const CString& refusal, const CString& done) {
    if (refusal.IsEmpty())
        Print(done);
    else
        acdbFail(L"\n" + refusal);
}

} // namespace Settings
