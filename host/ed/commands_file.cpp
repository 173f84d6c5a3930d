// OPEN, QSAVE, SAVEAS, QUIT.
#include "acedads.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/system_variables.h"
#include "sys/folders.h"

#include <string>
#include <variant>

namespace ed {

namespace {

// A file name: the whole line, marks around it left out. Empty for Enter and Escape.
std::wstring ask_file(const std::wstring& prompt, int& answered) {
    std::wstring name;
    answered = ask_value(prompt.c_str(), {}, answer_rule::line, [&](const answer& given) {
        name = given.text;
        return std::wstring();
    });
    if (name.size() > 1 && name.front() == L'"' && name.back() == L'"')
        name = name.substr(1, name.size() - 2);
    return name;
}

void save(const std::wstring& path) {
    if (auto saved = ap::documents::instance().save(path); !saved)
        editor::instance().fail(run_status::not_saved, saved.error());
}

bool may_replace(const std::wstring& path) {
    std::error_code ignored;
    const auto target = sys::to_path(path);
    const auto own = sys::to_path(ap::documents::instance().current_database()->imp().file_name);
    if (!std::filesystem::exists(target, ignored) || std::filesystem::equivalent(target, own, ignored))
        return true;
    variable_value expert;
    get_variable(L"EXPERT", expert);
    constexpr int asks_no_more = 2;
    if (std::get<int>(expert) >= asks_no_more)
        return true;
    acedInitGet(0, L"Yes No");
    ACHAR word[8];
    return acedGetKword(
               L"\nA drawing with this name already exists.\nDo you want to replace it? [Yes/No] <N>: ", word,
               8) == RTNORM &&
           std::wstring_view(word) == L"Yes";
}

} // namespace

void open_command() {
    int answered = RTNORM;
    const std::wstring name = ask_file(L"\nEnter name of drawing to open: ", answered);
    if (name.empty())
        return;
    if (auto opened = ap::documents::instance().open(name, false); !opened)
        editor::instance().fail(run_status::unreadable, opened.error());
}

void qsave_command() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    if (database != nullptr && database->imp().file_name.empty())
        saveas_command();
    else
        save({});
}

void saveas_command() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    if (database == nullptr)
        return;
    const std::wstring& own = database->imp().file_name;
    int answered = RTNORM;
    std::wstring name =
        ask_file(L"\nSave drawing as <" + (own.empty() ? L"Drawing1.dxf" : own) + L">: ", answered);
    if (answered == RTCAN)
        return;
    if (name.empty())
        name = own.empty() ? L"Drawing1.dxf" : own;
    if (may_replace(name))
        save(name);
}

void quit_command() {
    editor& editor = editor::instance();
    if (editor.input.at_terminal()) {
        std::size_t unsaved = 0;
        for (AcDbDatabase* const database : ap::documents::instance().databases())
            unsaved += database->imp().records().unsaved();
        if (unsaved != 0 && !editor.saves_at_end) {
            acedInitGet(0, L"Yes No");
            ACHAR word[8] = L"No";
            if (acedGetKword(L"\nReally want to discard all changes to the drawing? [Yes/No] <N>: ", word,
                             8) != RTNORM ||
                std::wstring_view(word) != L"Yes")
                return;
        }
    }
    editor.quit();
}

} // namespace ed
