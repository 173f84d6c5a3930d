#include "host/ed/output.h"

#include "acedads.h"
#include "base/display_width.h"
#include "base/utf.h"
#include "base/wide_format.h"
#include "host/ed/user_break.h"

#include <algorithm>
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
    if (text.empty() || mutes_ != 0)
        return;
    if (after_answer_ && text.front() == L'\n')
        text.remove_prefix(1);
    after_answer_ = false;
    if (rows_left_ != 0)
        put_paged(text);
    else
        put(text);
}

void command_line::begin_page() {
    const auto [columns, rows] = screen_.size ? screen_.size() : std::pair<std::size_t, std::size_t>();
    columns_ = std::max<std::size_t>(columns, 1);
    rows_left_ = rows > 1 ? rows - 1 : 0; // the last one is for the question
}

// Line by line; one that is longer than the screen is wide takes several rows.
void command_line::put_paged(std::wstring_view text) {
    while (rows_left_ != 0) {
        const std::size_t feed = text.find(L'\n');
        put(text.substr(0, feed));
        if (feed == text.npos)
            return;
        const std::size_t width = base::display_width(line_);
        put(L"\n");
        text.remove_prefix(feed + 1);
        rows_left_ -= std::min(rows_left_, width == 0 ? 1 : (width + columns_ - 1) / columns_);
        if (rows_left_ != 0)
            continue;
        if (!screen_.go_on()) {
            put(L"*Cancel*\n"); // what is left of this text goes with it
            press_break();
            return;
        }
        begin_page();
    }
    put(text);
}

void command_line::echo(std::wstring_view answer) {
    if (mutes_ != 0)
        return;
    put(answer);
    put(L"\n");
    after_answer_ = true;
}

void command_line::line_ended() {
    line_.clear();
    after_answer_ = true;
}

void command_line::fresh_line() {
    if (!line_.empty() && mutes_ == 0)
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
