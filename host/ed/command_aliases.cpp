#include "host/ed/command_aliases.h"

#include "base/case_fold.h"
#include "base/utf.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace ed {

namespace fs = std::filesystem;

namespace {

// By their folded names.
using alias_table = std::unordered_map<std::wstring, std::wstring>;

std::wstring_view trimmed(std::wstring_view text) {
    constexpr std::wstring_view blanks = L" \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

alias_table read_aliases(const fs::path& path) {
    alias_table aliases;
    const auto file = sys::read_file(path);
    sys::text_form form;
    const auto bytes = file ? sys::utf8_of(file->view(), form) : std::nullopt;
    if (!bytes)
        return aliases;
    const std::wstring text = base::widen(*bytes);
    for (std::wstring_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find(L'\n'), rest.size());
        const std::wstring_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        const std::size_t comma = line.find(L',');
        if (comma == line.npos || trimmed(line).starts_with(L';'))
            continue;
        const std::wstring_view alias = trimmed(line.substr(0, comma));
        const std::wstring_view command = trimmed(line.substr(comma + 1));
        if (!alias.empty() && command.size() > 1 && command.front() == L'*')
            aliases[base::folded(alias)] = command.substr(1);
    }
    return aliases;
}

} // namespace

std::wstring command_of_alias(std::wstring_view alias) {
    struct state {
        fs::path path;
        fs::file_time_type changed;
        std::uintmax_t size = 0;
        alias_table aliases;
    };
    static state last;
    state now;
    std::error_code missing, ignored;
    now.path = sys::find_without_case(sys::system_folder(), "acad.pgp");
    now.changed = fs::last_write_time(now.path, missing);
    now.size = fs::file_size(now.path, ignored);
    if (missing)
        now = {};
    if (now.path != last.path || now.changed != last.changed || now.size != last.size) {
        now.aliases = read_aliases(now.path);
        last = std::move(now);
    }
    const auto found = last.aliases.find(base::folded(alias));
    return found != last.aliases.end() ? found->second : std::wstring();
}

} // namespace ed
