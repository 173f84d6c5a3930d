// How the settings ask and tell: the prompts of the command gxsz, and its pages as dialogs.
#pragma once

#include "module/settings/StandardFields.h"
#include "ui/dialog.h"

#include <functional>
#include <optional>

namespace Settings {

// A line of output.
void Print(const CString& line);

// Forgets that a question was ended by Escape; and whether one was since then, which ends the command.
void Begin();
bool IsEnded();

// Asks for a text: a word, or what stands in quotation marks. Empty for Enter; nothing for Escape.
std::optional<CString> AskText(const CString& prompt);
// The same until there is one: nothing for Enter, too.
std::optional<CString> AskName(const CString& prompt);
// Asks for one of keywords ("N R D"), with `choices` in front of "<返回>:". 0 for Enter and Escape.
wchar_t AskChoice(const wchar_t* keywords, const wchar_t* choices);
// "PROMPT[是(Y)/否(N)] <否>:". False for Enter and Escape, too.
bool AskYes(const CString& prompt);

// One line of a tree or a list to choose from; the depth counts from 0.
struct Choice {
    CString name;
    std::vector<CString> cells; // further columns
    int depth = 0;
};
// Asks for one of the names: typed, or "?" for a dialog with all of them. What was typed need not be among
// them. Nothing for Enter, Escape and Cancel.
std::optional<CString> AskOneOf(const CString& prompt, const CString& title,
                                const std::vector<CString>& columns, const std::vector<Choice>& choices);

// Shows a record's values as a dialog. False for Cancel; else the record has what was filled in, each value
// as its field takes it.
template<class Record>
bool EditFields(const CString& title, Record& record);

// The dialog of EditFields, without the types of records: why a text can not be taken; and all texts as they
// are filled in, nothing for Cancel.
using Refusal = std::function<CString(std::size_t field, const CString& text)>;
std::optional<std::vector<CString>> EditTexts(const CString& title,
                                              const std::vector<std::pair<CString, CString>>& fields,
                                              const Refusal& refusal);

template<class Record>
bool EditFields(const CString& title, Record& record) {
    const std::span<const StandardField<Record>> fields = FieldsOf<Record>();
    std::vector<std::pair<CString, CString>> texts;
    for (const StandardField<Record>& field : fields)
        texts.emplace_back(field.name, field.get(record));
    const auto filled = EditTexts(title, texts, [&](std::size_t field, const CString& text) {
        Record tried = record;
        return fields[field].set(tried, text);
    });
    for (std::size_t i = 0; filled && i < fields.size(); ++i)
        fields[i].set(record, (*filled)[i]);
    return filled.has_value();
}

// A standard file's path as typed: a name without a folder lies in the system folder, one without the ending
// gets it.
CString FullStandardName(const CString& typed);

// Says that something was done, or prints why it was not: a script that counts on it ends there.
void Tell(const CString& refusal, const CString& done);

} // namespace Settings
