#include "host/ed/command_help.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "host/ed/command_stack.h"
#include "host/ed/host_commands.h"
#include "sys/file.h"
#include "sys/folders.h"

#include <unordered_map>

namespace ed {

namespace {

// The lines of the file: a command's name, a tab, what it does. By names, folded.
std::unordered_map<std::wstring, std::wstring> read_texts() {
    std::unordered_map<std::wstring, std::wstring> texts;
    const auto bytes = sys::read_file(sys::executable_folder() / ".." / "share" / "help.txt");
    std::wstring all = bytes ? base::widen(bytes->view()) : std::wstring();
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = std::min(all.find(L'\n', at), all.size());
        const std::wstring_view line = std::wstring_view(all).substr(at, end - at);
        at = end + 1;
        const std::size_t tab = line.find(L'\t');
        if (tab == line.npos || line.starts_with(L'#'))
            continue;
        texts.emplace(base::folded(line.substr(0, tab)), line.substr(tab + 1));
    }
    return texts;
}

} // namespace

std::wstring help_of(const AcEdCommand& command) {
    if (is_host_command(&command))
        return std::wstring(help_of(std::wstring_view(command.globalName())));
    static const auto texts = read_texts();
    const auto at = texts.find(base::folded(command.globalName()));
    return at != texts.end() ? at->second : std::wstring();
}

} // namespace ed
