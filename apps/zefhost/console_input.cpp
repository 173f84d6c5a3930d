#include "apps/zefhost/console_input.h"

#include "apps/zefhost/command_history.h"
#include "apps/zefhost/completion.h"
#include "apps/zefhost/line_editor.h"
#include "host/ed/editor.h"
#include "host/ed/prompts.h"
#include "host/ed/running_commands.h"
#include "host/ed/user_break.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <iostream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

constexpr std::wstring_view escape = L"\x1B";

} // namespace

bool input_is_terminal() {
    return isatty(STDIN_FILENO) != 0;
}

std::wstring piped_text() {
    const std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
    return sys::plain_text(bytes);
}

ed::line_source terminal_lines(std::FILE* shown) {
    struct terminal {
        explicit terminal(std::FILE* screen)
            : editor(screen, complete_answer),
              history(sys::profile_folder() / "history", line_editor::remembered) {}
        line_editor editor;
        command_history history;
    };
    const auto typed = std::make_shared<terminal>(isatty(fileno(shown)) != 0 ? shown : stderr);
    for (const std::wstring& line : typed->history.lines())
        typed->editor.remember(line);
    take_over_interrupts(ed::press_break, ed::is_break_pending);
    if (isatty(fileno(shown)) != 0)
        ed::command_line::instance().set_screen({[typed] { return typed->editor.size(); },
                                                 [typed] {
                                                     std::wstring nothing;
                                                     return typed->editor.read(L"Press ENTER to continue: ",
                                                                               nothing) ==
                                                            line_editor::ending::enter;
                                                 }});
    return [typed](std::wstring_view prompt) -> std::optional<std::wstring> {
        std::wstring line;
        switch (typed->editor.read(prompt, line)) {
        case line_editor::ending::gone:
            return std::nullopt;
        case line_editor::ending::escape:
            return std::wstring(escape);
        case line_editor::ending::end_key:
            if (ed::command_under_way() != nullptr)
                return std::wstring(escape);
            ed::command_line::instance().print(L"QUIT\n");
            return L"QUIT";
        case line_editor::ending::enter:
            break;
        }
        if (typed->history.add(line))
            typed->editor.remember(line);
        return line;
    };
}
