#include "apps/zefhost/completion.h"

#include "base/case_fold.h"
#include "host/ed/command_stack.h"
#include "host/ed/console_bars.h"
#include "host/ed/editor.h"
#include "host/ed/expected.h"
#include "host/ed/running_commands.h"
#include "sys/folders.h"

#include <algorithm>
#include <filesystem>

namespace {

bool begins_with(std::wstring_view word, std::wstring_view beginning) {
    return word.size() >= beginning.size() &&
           base::equal_no_case(word.substr(0, beginning.size()), beginning);
}

completions commands(std::wstring_view typed) {
    completions found;
    while (found.begin < typed.size() && std::wstring_view(L"_.'").find(typed[found.begin]) != typed.npos)
        ++found.begin;
    typed.remove_prefix(found.begin);
    for (const auto& [group, command] : ed::all_commands())
        if (begins_with(command->globalName(), typed))
            found.words.emplace_back(command->globalName());
    if (begins_with(ed::bar_name, typed))
        found.words.emplace_back(ed::bar_name);
    return found;
}

completions keywords(std::wstring_view typed) {
    completions found;
    for (const auto* const words : {&ed::expected().keywords, &ed::expected().others})
        for (const std::wstring& word : *words)
            if (begins_with(word, typed))
                found.words.push_back(word);
    return found;
}

// The last name of a list by commas. Names with blanks stand in quotation marks: one around the whole list.
completions names(std::wstring_view typed) {
    completions found;
    const bool quoted = typed.starts_with(L'"');
    const std::size_t comma = typed.rfind(L',');
    const std::size_t begin = comma != typed.npos ? comma + 1 : quoted ? 1 : 0;
    bool blanks = false;
    for (std::wstring& name : ed::expected().names()) {
        if (!begins_with(name, typed.substr(begin)))
            continue;
        blanks = blanks || name.find(L' ') != name.npos;
        found.words.push_back(std::move(name));
    }
    found.begin = blanks && !quoted ? 0 : begin;
    if (blanks && !quoted)
        for (std::wstring& name : found.words)
            name.insert(0, typed.substr(0, begin)).insert(0, 1, L'"');
    return found;
}

// Folders, and files with the wanted extension.
completions files(std::wstring_view typed) {
    completions found;
    if (typed.starts_with(L'"'))
        found.begin = 1;
    const std::size_t slash = typed.find_last_of(L"/\\");
    if (slash != typed.npos)
        found.begin = slash + 1;
    const std::wstring_view folder = typed.substr(typed.starts_with(L'"') ? 1 : 0);
    const std::wstring_view beginning = typed.substr(found.begin);
    const std::filesystem::path place =
        slash == typed.npos ? std::filesystem::path(".")
                            : sys::to_path(folder.substr(0, folder.size() - beginning.size()));
    std::error_code error;
    for (auto entry = std::filesystem::directory_iterator(place, error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::wstring name = sys::from_path(entry->path().filename());
        std::error_code ignored;
        const bool is_folder = entry->is_directory(ignored);
        if (!begins_with(name, beginning) || (name.starts_with(L'.') && beginning.empty()))
            continue;
        if (is_folder)
            found.words.push_back(name + L"/");
        else if (base::equal_no_case(sys::from_path(entry->path().extension()), ed::expected().file))
            found.words.push_back(name);
    }
    return found;
}

} // namespace

completions complete_answer(std::wstring_view before_cursor) {
    completions found;
    if (!ed::expected().file.empty()) {
        found = files(before_cursor);
    } else if (ed::expected().names && before_cursor.starts_with(L'"')) {
        found = names(before_cursor);
    } else if (before_cursor.find_first_of(L" \t") != before_cursor.npos) {
        return {}; // an answer to a question that was not asked yet
    } else if (ed::command_under_way() == nullptr) {
        found = commands(before_cursor);
    } else {
        found = keywords(before_cursor);
        if (found.words.empty() && ed::expected().names)
            found = names(before_cursor);
    }
    std::sort(found.words.begin(), found.words.end(), [](const auto& a, const auto& b) {
        const int order = base::compare_no_case(a, b);
        return order != 0 ? order < 0 : a < b;
    });
    found.words.erase(std::unique(found.words.begin(), found.words.end()), found.words.end());
    return found;
}
