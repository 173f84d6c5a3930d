#include "host/ed/typed_names.h"

#include "base/case_fold.h"
#include "host/ed/command_aliases.h"
#include "host/ed/command_stack.h"
#include "host/ed/system_variables.h"

#include <algorithm>

namespace ed {

namespace {

const AcEdCommand* find_by_name(const std::wstring& name) {
    AcEdCommandStack* const stack = acedRegCmds;
    const AcEdCommand* const command = stack->lookupLocalCmd(name.c_str());
    return command != nullptr ? command : stack->lookupGlobalCmd(name.c_str());
}

} // namespace

std::wstring_view without_prefixes(std::wstring_view typed) {
    while (typed.size() > 1 && (typed.front() == L'_' || typed.front() == L'.' || typed.front() == L'\''))
        typed.remove_prefix(1);
    return typed;
}

const AcEdCommand* find_command(const std::wstring& name) {
    const AcEdCommand* const command = find_by_name(name);
    if (command != nullptr)
        return command;
    const std::wstring meant = command_of_alias(name);
    return meant.empty() ? nullptr : find_by_name(std::wstring(without_prefixes(meant)));
}

bool is_typed_variable(const std::wstring& name) {
    return has_variable(name) && !base::equal_no_case(name, L"AREA") &&
           !base::equal_no_case(name, L"DIMSTYLE");
}

std::wstring as_one_line(std::wstring_view text) {
    std::wstring line(text);
    std::replace(line.begin(), line.end(), L'\n', L' ');
    const auto first = line.find_first_not_of(L' ');
    const auto last = line.find_last_not_of(L' ');
    return first == line.npos ? std::wstring() : line.substr(first, last - first + 1);
}

} // namespace ed
