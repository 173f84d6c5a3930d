// What programs tell the user by the editor: alerts, and that their command failed.
#include "acedads.h"
#include "host/ed/editor.h"
#include "ui/presenter.h"

int acedAlert(const ACHAR* text) {
    if (text == nullptr)
        return RTERROR;
    ed::editor::instance(); // who shows it comes with the editor
    ui::tell(text);
    return RTNORM;
}

int acdbFail(const ACHAR* message) {
    if (message != nullptr) {
        ed::command_line::instance().print(message);
        ed::command_line::instance().fresh_line();
    }
    ed::editor::instance().fail_command(message != nullptr ? message : L"");
    return RTNORM;
}
