#include "host/ed/host_commands.h"

#include "base/case_fold.h"
#include "rxregsvc.h"

namespace ed {

namespace {

constexpr const wchar_t* group = L"ACAD";

constexpr host_command commands[] = {
    {L"-LAYER", layer_command, ACRX_CMD_TRANSPARENT, L"makes layers and sets their properties"},
    {L"ARX", arx_command, ACRX_CMD_NO_UNDO_MARKER, L"loads, unloads and lists applications"},
    {L"HELP", help_command, ACRX_CMD_TRANSPARENT | ACRX_CMD_NO_UNDO_MARKER, L"lists the commands"},
    {L"?", help_command, ACRX_CMD_TRANSPARENT | ACRX_CMD_NO_UNDO_MARKER, L""},
    {L"LIST", list_command, ACRX_CMD_USEPICKSET, L"shows what is known of picked objects"},
    {L"OPEN", open_command, ACRX_CMD_NO_UNDO_MARKER, L"opens a drawing file"},
    {L"QSAVE", qsave_command, ACRX_CMD_NO_UNDO_MARKER, L"saves the drawing to its file"},
    {L"QUIT", quit_command, ACRX_CMD_NO_UNDO_MARKER, L"ends the program"},
    {L"EXIT", quit_command, ACRX_CMD_NO_UNDO_MARKER, L""},
    {L"REDO", redo_command, ACRX_CMD_NO_UNDO_MARKER, L"gives again what the last U took back"},
    {L"REGEN", regen_command, ACRX_CMD_TRANSPARENT, L"brings the display up to date"},
    {L"RE", regen_command, ACRX_CMD_TRANSPARENT, L""},
    {L"SAVEAS", saveas_command, ACRX_CMD_NO_UNDO_MARKER, L"saves the drawing under a name"},
    {L"SETVAR", setvar_command, ACRX_CMD_TRANSPARENT, L"shows and sets system variables"},
    {L"U", u_command, ACRX_CMD_NO_UNDO_MARKER, L"takes back the last command"},
};

} // namespace

void register_host_commands() {
    AcEdCommandStack* const stack = acedRegCmds;
    for (const host_command& command : commands)
        stack->addCommand(group, command.name, command.name, command.flags, command.function);
}

std::wstring_view help_of(std::wstring_view command) {
    for (const host_command& known : commands)
        if (base::equal_no_case(known.name, command))
            return known.help;
    return {};
}

} // namespace ed
