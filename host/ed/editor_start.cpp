// What is there once the editor is: its services, the host's own commands, dialogs on the command line.
#include "base/utf.h"
#include "host/ed/command_stack.h"
#include "host/ed/console_dialogs.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/rx/editor_reactors.h"

namespace ed {

editor& editor::instance() {
    static editor the_editor;
    return the_editor;
}

editor::editor() {
    register_command_stack();
    rx::register_editor();
    register_host_commands();
    static console_dialogs console;
    ui::set_presenter(&console);
    rx::on_reactor_failure() = [this](std::string_view what) {
        fail_command(L"a reactor threw: " + base::widen(what));
    };
}

} // namespace ed
