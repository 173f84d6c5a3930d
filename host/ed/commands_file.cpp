// NEW, OPEN, QSAVE, SAVEAS, CLOSE, QUIT.
#include "acedads.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"
#include "host/ed/system_variables.h"
#include "sys/folders.h"

#include <string>
#include <variant>

namespace ed {

namespace {

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
    return ask_yes(L"\nA drawing with this name already exists.\nDo you want to replace it? [Yes/No] <N>: ");
}

std::size_t unsaved_in(const AcDbDatabase& drawing) {
    return drawing.imp().records().unsaved();
}

void open(const std::wstring& file) {
    if (auto opened = ap::documents::instance().open(file, false); !opened)
        editor::instance().fail(run_status::unreadable, opened.error());
}

} // namespace

// A template is a drawing that becomes a new one, without a name.
void new_command() {
    std::wstring file;
    if (ask_file(L"\nEnter template file name or [. (for none)] <.>: ", L".dxf", file) == RTCAN)
        return;
    const bool from_template = !file.empty() && file != L".";
    const std::size_t before = ap::documents::instance().all().size();
    open(from_template ? file : std::wstring());
    if (from_template && ap::documents::instance().all().size() != before)
        current_drawing()->imp().file_name.clear();
}

void open_command() {
    std::wstring file;
    if (ask_file(L"\nEnter name of drawing to open: ", L".dxf", file) == RTNORM && !file.empty())
        open(file);
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
    std::wstring name = own.empty() ? L"Drawing1.dxf" : own;
    if (ask_file(L"\nSave drawing as <" + name + L">: ", L".dxf", name) == RTCAN)
        return;
    if (may_replace(name))
        save(name);
}

void close_command() {
    if (current_drawing() == nullptr ||
        (unsaved_in(*current_drawing()) != 0 &&
         !ask_yes(L"\nReally want to discard all changes to the drawing? [Yes/No] <N>: ")))
        return;
    ap::documents::instance().close_current();
    acutPrintf(current_drawing() != nullptr ? L"\nCurrent drawing: %ls\n" : L"\nNo drawing is open.\n",
               current_drawing() != nullptr ? ap::documents::instance().current_title().c_str() : L"");
}

void quit_command() {
    editor& editor = editor::instance();
    if (editor.input.at_terminal()) {
        std::size_t unsaved = 0;
        for (AcDbDatabase* const database : ap::documents::instance().databases())
            unsaved += unsaved_in(*database);
        if (unsaved != 0 && !editor.saves_at_end &&
            !ask_yes(L"\nReally want to discard all changes to the drawing? [Yes/No] <N>: "))
            return;
    }
    editor.quit();
}

} // namespace ed
