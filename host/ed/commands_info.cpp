// ARX, HELP.
#include "acedads.h"
#include "base/case_fold.h"
#include "base/display_width.h"
#include "host/ed/command_help.h"
#include "host/ed/command_stack.h"
#include "host/ed/console_bars.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"
#include "host/rx/applications.h"

#include <algorithm>

namespace ed {

void arx_command() {
    acedInitGet(RSG_NONULL, L"? Load Unload");
    ACHAR option[16];
    // "?" is no keyword by the rules of keyword lists; it is asked for as a text beside them.
    if (ask_value(L"\nEnter an option [?/Load/Unload]: ", take_input_rules(), answer_rule::word,
                  [&](const answer&) { return std::wstring(L"Invalid option keyword."); }) != RTKWORD ||
        acedGetInput(option, 16) != RTNORM)
        return;
    rx::applications& applications = rx::applications::instance();
    if (option[0] == L'?') {
        acutPrintf(L"\nLoaded applications:\n");
        for (const std::wstring& name : applications.names())
            acutPrintf(L"  %ls\n", name.c_str());
        return;
    }
    const bool loads = option[0] == L'L';
    ACHAR name[512];
    if (acedGetString(1,
                      loads ? L"\nEnter application file to load: " : L"\nEnter application file to unload: ",
                      name, 512) != RTNORM ||
        name[0] == 0)
        return;
    const base::result<void> done = loads ? applications.load(name) : applications.unload(name);
    if (!done)
        editor::instance().fail(run_status::not_loaded, done.error());
    else
        acutPrintf(L"\n%ls %ls.\n", name, loads ? L"loaded" : L"unloaded");
}

namespace {

// Commands by the names of their groups, the host's first.
using command_groups = std::vector<std::pair<std::wstring, std::vector<const AcEdCommand*>>>;

command_groups grouped_commands() {
    command_groups groups;
    for (const auto& [name, command] : all_commands()) {
        if (groups.empty() || groups.back().first != name)
            groups.push_back({name, {}});
        groups.back().second.push_back(command);
    }
    return groups;
}

void list_group(const std::wstring& name, std::vector<const AcEdCommand*> commands) {
    acutPrintf(L"\n\n%ls:\n", name == host_group ? L"The host's commands" : (L"Commands of " + name).c_str());
    std::sort(commands.begin(), commands.end(), [](const AcEdCommand* a, const AcEdCommand* b) {
        return base::compare_no_case(a->globalName(), b->globalName()) < 0;
    });
    std::size_t widest = 0;
    for (const AcEdCommand* const command : commands)
        widest = std::max(widest, base::display_width(command->globalName()));
    for (const AcEdCommand* const command : commands)
        if (name != host_group || !is_other_name(command->globalName()))
            acutPrintf(L"  %ls  %ls\n", base::padded(command->globalName(), widest).c_str(),
                       help_of(*command).c_str());
    if (name == host_group)
        acutPrintf(L"  %ls  %ls\n", base::padded(bar_name, widest).c_str(), std::wstring(bar_help).c_str());
}

// False when there is no such command.
bool tell_of(const std::wstring& typed) {
    if (is_bar(typed)) {
        acutPrintf(L"\n%ls  %ls\n", std::wstring(bar_name).c_str(), std::wstring(bar_help).c_str());
        return true;
    }
    for (const auto& [group, commands] : grouped_commands())
        for (const AcEdCommand* const command : commands) {
            if (!base::equal_no_case(command->globalName(), typed) &&
                !base::equal_no_case(command->localName(), typed))
                continue;
            acutPrintf(L"\n%ls  %ls\n", command->globalName(), help_of(*command).c_str());
            std::wstring others;
            for (const AcEdCommand* const other : commands)
                if (other != command && other->functionAddr() == command->functionAddr())
                    others += (others.empty() ? L"" : L", ") + std::wstring(other->globalName());
            if (!others.empty())
                acutPrintf(L"  also as %ls\n", others.c_str());
            if (group != host_group)
                acutPrintf(L"  a command of %ls\n", group.c_str());
            if ((command->commandFlags() & ACRX_CMD_TRANSPARENT) != 0)
                acutPrintf(L"  may be called inside another command, as '%ls\n", command->globalName());
            return true;
        }
    return false;
}

} // namespace

// With a name behind it on its line, HELP tells of that command.
void help_command() {
    std::wstring name;
    if (editor::instance().input.typed_ahead() &&
        ask_name(L"\nEnter command name: ", name, [](const std::wstring& given) {
            return tell_of(given) ? L"" : L"Unknown command \"" + given + L"\". Type HELP for a list.";
        }) != RTNONE)
        return;
    for (const auto& [group, commands] : grouped_commands()) {
        if (acedUsrBrk() != 0)
            return;
        list_group(group, commands);
    }
    acutPrintf(L"\n");
}

} // namespace ed
