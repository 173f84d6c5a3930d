#include "host/ed/output.h"

#include "acedads.h"
#include "base/utf.h"
#include "base/wide_format.h"
#include "host/ed/editor.h"
#include "ui/presenter.h"

#include <cstdarg>

namespace ed {

command_line& command_line::instance() {
    static command_line line;
    return line;
}

void command_line::put(std::wstring_view text) {
    if (text.empty())
        return;
    const auto feed = text.rfind(L'\n');
    if (feed == text.npos)
        line_ += text;
    else
        line_ = text.substr(feed + 1);
    if (sink_)
        sink_(base::narrow(text));
}

void command_line::print(std::wstring_view text) {
    if (text.empty())
        return;
    if (after_answer_ && text.front() == L'\n')
        text.remove_prefix(1);
    after_answer_ = false;
    put(text);
}

void command_line::echo(std::wstring_view answer) {
    put(answer);
    put(L"\n");
    after_answer_ = true;
}

void command_line::line_ended() {
    line_.clear();
    after_answer_ = true;
}

void command_line::fresh_line() {
    if (!line_.empty())
        put(L"\n");
}

void command_line::error(std::wstring_view message) {
    if (error_sink_)
        error_sink_(base::narrow(message) + "\n");
}

} // namespace ed

int acutPrintf(const ACHAR* format, ...) {
    if (format == nullptr)
        return RTERROR;
    va_list args;
    va_start(args, format);
    const std::wstring text = base::format_wide(format, args);
    va_end(args);
    ed::command_line::instance().print(text);
    return RTNORM;
}

int acedPrompt(const ACHAR* text) {
    if (text == nullptr)
        return RTERROR;
    ed::command_line::instance().print(text);
    return RTNORM;
}

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
