#include "apps/zefhost/console_input.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "host/ed/command_stack.h"
#include "sys/code_page.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <iostream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

// The next command name that begins with what was typed; libedit calls it until it gives null.
char* next_completion(const char* typed, int state) {
    static std::vector<std::string> found;
    if (state == 0) {
        found.clear();
        const std::wstring beginning = base::folded(base::widen(typed));
        for (const auto& [group, command] : ed::all_commands())
            if (base::folded(command->globalName()).starts_with(beginning))
                found.push_back(base::narrow(command->globalName()));
    }
    return static_cast<std::size_t>(state) < found.size()
               ? strdup(found[static_cast<std::size_t>(state)].c_str())
               : nullptr;
}

char** complete(const char* typed, int start, int /*end*/) {
    rl_attempted_completion_over = 1; // never file names
    return start == 0 ? rl_completion_matches(typed, next_completion) : nullptr;
}

std::optional<std::wstring> terminal_line(std::wstring_view prompt) {
    static const bool prepared = [] {
        rl_attempted_completion_function = complete;
        using_history();
        return true;
    }();
    static_cast<void>(prepared);
    char* const line = readline(base::narrow(prompt).c_str());
    if (line == nullptr)
        return std::nullopt;
    if (*line != 0)
        add_history(line);
    std::wstring text = base::widen(line);
    std::free(line);
    return text;
}

std::wstring utf16_text(std::string_view bytes, bool big_endian) {
    std::string utf8;
    char32_t high = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        const char32_t unit = big_endian ? static_cast<char32_t>(first << 8 | second)
                                         : static_cast<char32_t>(second << 8 | first);
        if (unit >= 0xD800 && unit < 0xDC00) {
            high = unit;
            continue;
        }
        if (unit >= 0xDC00 && unit < 0xE000 && high != 0)
            base::append_utf8(utf8, 0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
        else
            base::append_utf8(utf8, unit);
        high = 0;
    }
    return base::widen(utf8);
}

} // namespace

bool input_is_terminal() {
    return isatty(STDIN_FILENO) != 0;
}

std::wstring piped_text() {
    const std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
    return script_text_of(bytes);
}

ed::line_source terminal_lines() {
    return terminal_line;
}

std::wstring script_text_of(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE"))
        return utf16_text(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF"))
        return utf16_text(bytes.substr(2), true);
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const sys::code_page* const gbk = sys::code_page::find(936);
    return base::is_utf8(bytes) || gbk == nullptr ? base::widen(bytes) : gbk->decode(bytes);
}
