// NEW, OPEN, CLOSE, QUIT.
#include "acedads.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"

#include <string>

namespace ed {

namespace {

std::size_t unsaved_in(const AcDbDatabase& drawing) {
    return drawing.imp().records().unsaved();
}

void open(const std::wstring& file, bool read_only) {
    if (auto opened = ap::documents::instance().open(file, read_only); !opened)
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
    open(from_template ? file : std::wstring(), from_template);
    if (!from_template || ap::documents::instance().all().size() == before)
        return;
    current_drawing()->imp().file_name.clear();
    ap::documents::instance().current()->tie_to({}, false);
}

void open_command() {
    std::wstring file;
    if (ask_file(L"\nEnter name of drawing to open: ", L".dxf", file) == RTNORM && !file.empty())
        open(file, false);
}

void close_command() {
    if (current_drawing() == nullptr ||
        (unsaved_in(*current_drawing()) != 0 &&
         !ask_yes(L"\nReally want to discard all changes to the drawing?").value_or(false)))
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
            !ask_yes(L"\nReally want to discard all changes to the drawing?").value_or(false))
            return;
    }
    editor.quit();
}

} // namespace ed
