#include "host/ap/surroundings.h"

#include "host/ed/editor.h"
#include "host/ed/output.h"
#include "host/ed/system_variables.h"

namespace ap {

bool has_person() {
    return ed::editor::instance().input.has_person();
}

void show(const std::wstring& line) {
    ed::command_line::instance().fresh_line();
    ed::command_line::instance().print(line + L"\n");
}

void show_error(const std::wstring& line) {
    ed::command_line::instance().error(line);
}

bool keeps_backup() {
    return ed::variable<int>(L"ISAVEBAK") != 0;
}

std::chrono::minutes automatic_pause() {
    return std::chrono::minutes(ed::variable<int>(L"SAVETIME"));
}

std::wstring automatic_folder() {
    return ed::variable<std::wstring>(L"SAVEFILEPATH");
}

} // namespace ap
