// QSAVE, SAVEAS, SAVE, DXFOUT.
#include "acedads.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "host/ap/documents.h"
#include "host/ap/file_name.h"
#include "host/db/core/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/expected.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"
#include "host/ed/system_variables.h"
#include "host/version/saving.h"
#include "sys/folders.h"

#include <string>

namespace ed {

namespace {

const std::wstring& own_file() {
    return current_drawing()->imp().file_name;
}

// A drawing that came from a DWG file has no file of its own that it could be saved to.
bool has_no_own_file() {
    return own_file().empty() ||
           base::equal_no_case(sys::from_path(sys::to_path(own_file()).extension()), L".dwg");
}

// What is proposed for it.
std::wstring proposed_file() {
    if (own_file().empty())
        return L"Drawing1.dxf";
    return has_no_own_file() ? sys::from_path(sys::to_path(own_file()).replace_extension(".dxf"))
                             : own_file();
}

bool is_own_file(const std::wstring& name) {
    std::error_code ignored;
    return name == own_file() ||
           std::filesystem::equivalent(sys::to_path(name), sys::to_path(own_file()), ignored);
}

// Whether the user wants a file to be replaced that is there, and not the drawing's own.
bool may_replace(const std::wstring& name) {
    constexpr int asks_no_more = 2;
    std::error_code ignored;
    return !std::filesystem::exists(sys::to_path(name), ignored) || is_own_file(name) ||
           variable<int>(L"EXPERT") >= asks_no_more ||
           ask_yes(L"\nA drawing with this name already exists.\nDo you want to replace it?").value_or(false);
}

// A run without a person can not know the question: it fails.
void save(const std::wstring& name, int version) {
    ap::documents& documents = ap::documents::instance();
    auto changed = ap::documents::if_changed::refuse;
    if (documents.was_changed_on_disk(name) && editor::instance().input.at_terminal()) {
        if (!ask_yes(L"\nThe file was changed on the disk by another program since it was opened.\nDo you "
                     L"want to "
                     L"replace it?")
                 .value_or(false))
            return;
        changed = ap::documents::if_changed::replace;
    }
    if (auto saved = documents.save(name, version, changed); !saved)
        editor::instance().fail(run_status::not_saved, saved.error());
}

// The drawing's own file is saved, another one gets a copy.
void save_copy(const std::wstring& name, int version) {
    if (is_own_file(name) || own_file().empty())
        save(name, version);
    else if (auto saved = ap::documents::instance().save_copy(name, version); !saved)
        editor::instance().fail(run_status::not_saved, saved.error());
}

// Asks for the name of a file to write; Enter means the drawing's own. False when the user ended it.
bool ask_target(const std::wstring& prompt, std::wstring& name) {
    name = proposed_file();
    const expecting hint({{}, L".dxf"});
    // In scripts a blank ends the name, as in the editor; a person need not put it into quotation marks.
    const answer_rule rule = editor::instance().input.at_terminal() ? answer_rule::line : answer_rule::word;
    const int answered = ask_value((prompt + L" <" + name + L">: ").c_str(), {}, rule,
                                   [&](const answer& given) -> std::wstring {
                                       const std::wstring typed = file_of(given.text);
                                       if (is_own_file(typed)) {
                                           name = typed;
                                           return {};
                                       }
                                       auto file = ap::drawing_file_name(typed);
                                       if (!file)
                                           return file.error();
                                       name = *file;
                                       return {};
                                   });
    return answered == RTNORM || answered == RTNONE;
}

// ---- formats

// "R12 2000 ... 2018", oldest first.
std::wstring version_names(wchar_t between) {
    std::wstring names;
    for (auto version = std::rbegin(version::saved_versions); version != std::rend(version::saved_versions);
         ++version)
        names += (names.empty() ? L"" : std::wstring(1, between)) + version->name;
    return names;
}

// The names of the lighter editors of the time, which scripts use for versions.
constexpr std::wstring_view other_names = L" LT2 LT2000 LT2004 LT2007";

int version_of(const std::wstring& keyword) {
    return keyword == L"LT2"
               ? version::version_by_name(L"R12")
               : version::version_by_name(keyword.starts_with(L"LT") ? keyword.substr(2) : keyword);
}

std::wstring format_wanted(const answer& given) {
    return given.text.find_first_of(L"./\\") != given.text.npos
               ? L"Invalid option keyword. The format comes before the name: SAVEAS 2018 plan.dxf"
               : L"Invalid option keyword. Drawings are saved as " + version_names(L'/') + L" or DXF.";
}

int ask_format(const std::wstring& prompt, const std::wstring& more) {
    const std::wstring keywords = version_names(L' ') + more + std::wstring(other_names);
    acedInitGet(0, keywords.c_str());
    return ask_value(prompt.c_str(), take_input_rules(), answer_rule::word, format_wanted);
}

// What DXF asks: numbers always keep all their places. False when the user ended it.
bool ask_accuracy(int& version, const std::wstring& current) {
    for (;;) {
        acedInitGet(0, L"Version");
        const int answered =
            ask_value(L"\nEnter decimal places of accuracy (0 to 16) or [Version] <16>: ", take_input_rules(),
                      answer_rule::word, [](const answer& given) -> std::wstring {
                          constexpr int most = 16;
                          const auto places = base::parse_integer(base::narrow(given.text));
                          if (!places || *places < 0 || *places > most)
                              return L"Requires an integer between 0 and 16, or Version; the whole drawing "
                                     L"is written, as text.";
                          if (*places != most)
                              acutPrintf(L"\nNumbers are written with all their places.");
                          return {};
                      });
        if (answered != RTKWORD)
            return answered != RTCAN;
        switch (ask_format(L"\nEnter version [" + version_names(L'/') + L"] <" + current + L">: ", L"")) {
        case RTKWORD:
            version = version_of(taken_keyword());
            break;
        case RTCAN:
            return false;
        default:
            break;
        }
    }
}

std::wstring current_format() {
    const AcDbImpDatabase& drawing = current_drawing()->imp();
    return version::version_name(drawing.file_version != 0 ? drawing.file_version
                                                           : drawing.drawing().version());
}

} // namespace

void qsave_command() {
    if (current_drawing() == nullptr)
        return;
    if (has_no_own_file())
        saveas_command();
    else
        save({}, 0);
}

void saveas_command() {
    if (current_drawing() == nullptr)
        return;
    const std::wstring current = current_format();
    acutPrintf(L"\nCurrent file format:  %ls", current.c_str());
    int version = 0; // as it is
    switch (
        ask_format(L"\nEnter file format [" + version_names(L'/') + L"/DXF] <" + current + L">: ", L" DXF")) {
    case RTKWORD:
        if (const std::wstring word = taken_keyword(); word != L"DXF")
            version = version_of(word);
        else if (!ask_accuracy(version, current))
            return;
        break;
    case RTCAN:
        return;
    default:
        break;
    }
    std::wstring name;
    if (ask_target(L"\nSave drawing as", name) && may_replace(name))
        save(name, version);
}

void save_command() {
    std::wstring name;
    if (current_drawing() != nullptr && ask_target(L"\nSave drawing as", name) && may_replace(name))
        save_copy(name, 0);
}

void dxfout_command() {
    std::wstring name;
    int version = 0;
    if (current_drawing() != nullptr && ask_target(L"\nEnter name of DXF file", name) && may_replace(name) &&
        ask_accuracy(version, current_format()))
        save_copy(name, version);
}

} // namespace ed
