#include "host/ed/running_commands.h"

namespace ed {

std::vector<running_command>& running_commands() {
    static std::vector<running_command> running;
    return running;
}

const AcEdCommand* command_under_way() {
    return running_commands().empty() ? nullptr : running_commands().back().command;
}

std::wstring names_under_way() {
    std::wstring names;
    for (const running_command& one : running_commands())
        names += (names.empty() ? L"" : L"'") + one.shown;
    return names;
}

} // namespace ed
