#include "apps/zefhost/console_input.h"

#include "apps/zefhost/command_history.h"
#include "apps/zefhost/completion.h"
#include "apps/zefhost/line_editor.h"
#include "base/utf.h"
#include "host/ed/editor.h"
#include "host/ed/prompts.h"
#include "sys/code_page.h"
#include "sys/folders.h"

#include <iostream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

constexpr std::wstring_view escape = L"\x1B";

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
            if (ed::editor::instance().command() != nullptr)
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
