#include "host/ed/host_commands.h"

#include "base/case_fold.h"
#include "rxregsvc.h"

#include <algorithm>

namespace ed {

namespace {

// What a command needs no drawing for runs without one.
constexpr Adesk::Int32 without_drawing = ACRX_CMD_SESSION;
constexpr Adesk::Int32 no_step = ACRX_CMD_NO_UNDO_MARKER;

constexpr host_command commands[] = {
    {L"-LAYER", layer_command, ACRX_CMD_TRANSPARENT, L"makes layers and sets their properties"},
    {L"LAYER", layer_command, ACRX_CMD_TRANSPARENT, L""},
    {L"LA", layer_command, ACRX_CMD_TRANSPARENT, L""},
    {L"-VIEW", named_view_command, 0, L"keeps views by name, and shows them again"},
    {L"-V", named_view_command, 0, L""},
    {L"ARX", arx_command, no_step | without_drawing, L"loads, unloads and lists applications"},
    {L"AUDIT", audit_command, 0, L"looks for what does not fit together, and mends it"},
    {L"CIRCLE", circle_command, 0, L"draws a circle"},
    {L"C", circle_command, 0, L""},
    {L"CLOSE", close_command, no_step | without_drawing, L"closes the drawing"},
    {L"DELAY", delay_command, ACRX_CMD_TRANSPARENT | no_step | without_drawing, L"waits some milliseconds"},
    {L"DXFOUT", dxfout_command, no_step, L"writes the drawing, or a copy of it, as a DXF file"},
    {L"ERASE", erase_command, ACRX_CMD_USEPICKSET, L"erases objects"},
    {L"E", erase_command, ACRX_CMD_USEPICKSET, L""},
    {L"EXPLODE", explode_command, ACRX_CMD_USEPICKSET, L"takes blocks, polylines and the like apart"},
    {L"X", explode_command, ACRX_CMD_USEPICKSET, L""},
    {L"HELP", help_command, ACRX_CMD_TRANSPARENT | no_step | without_drawing,
     L"lists the commands; HELP NAME tells of one"},
    {L"?", help_command, ACRX_CMD_TRANSPARENT | no_step | without_drawing, L""},
    {L"INSERT", insert_command, 0, L"inserts a block, or a drawing file as one"},
    {L"-INSERT", insert_command, 0, L""},
    {L"I", insert_command, 0, L""},
    {L"LAYERP", layerp_command, 0, L"takes back the last change of layer states, and nothing else"},
    {L"LAYERPMODE", layerpmode_command, no_step | without_drawing,
     L"turns the memory of LAYERP and the state *BEFORE* on and off"},
    {L"LAYOUT", layout_command, 0, L"makes, copies, renames, deletes and shows layouts"},
    {L"-LAYOUT", layout_command, 0, L""},
    {L"LO", layout_command, 0, L""},
    {L"LINE", line_command, 0, L"draws lines from point to point"},
    {L"L", line_command, 0, L""},
    {L"-LINETYPE", linetype_command, 0, L"loads linetypes from files and sets the current one"},
    {L"LINETYPE", linetype_command, 0, L""},
    {L"LT", linetype_command, 0, L""},
    {L"-LT", linetype_command, 0, L""},
    {L"LIST", list_command, ACRX_CMD_USEPICKSET, L"shows what is known of picked objects"},
    {L"LI", list_command, ACRX_CMD_USEPICKSET, L""},
    {L"MODEL", model_command, 0, L"shows the Model tab"},
    {L"MSPACE", mspace_command, 0, L"goes through a viewport of a layout into model space"},
    {L"MS", mspace_command, 0, L""},
    {L"NEW", new_command, no_step | without_drawing, L"begins a new drawing"},
    {L"OPEN", open_command, no_step | without_drawing, L"opens a drawing file"},
    {L"PAN", pan_command, 0, L"moves the view"},
    {L"P", pan_command, 0, L""},
    {L"PICTURE", picture_command, no_step, L"draws the drawing as a picture: PNG, SVG or PDF"},
    {L"PSPACE", pspace_command, 0, L"goes back to the layout's sheet"},
    {L"PS", pspace_command, 0, L""},
    {L"-PURGE", purge_command, 0, L"takes out layers, blocks, styles and the like that nothing uses"},
    {L"PURGE", purge_command, 0, L""},
    {L"PU", purge_command, 0, L""},
    {L"-PU", purge_command, 0, L""},
    {L"QSAVE", qsave_command, no_step, L"saves the drawing to its file"},
    {L"QUIT", quit_command, no_step | without_drawing, L"ends the program"},
    {L"EXIT", quit_command, no_step | without_drawing, L""},
    {L"REDO", redo_command, no_step, L"gives again what the last U or UNDO took back"},
    {L"REDRAW", redraw_command, ACRX_CMD_TRANSPARENT, L"shows the display anew"},
    {L"R", redraw_command, ACRX_CMD_TRANSPARENT, L""},
    {L"REGEN", regen_command, ACRX_CMD_TRANSPARENT, L"brings the display up to date"},
    {L"RE", regen_command, ACRX_CMD_TRANSPARENT, L""},
    {L"REGENALL", regenall_command, ACRX_CMD_TRANSPARENT, L"the same in all viewports"},
    {L"REA", regenall_command, ACRX_CMD_TRANSPARENT, L""},
    {L"SAVE", save_command, no_step, L"saves the drawing, or a copy under another name"},
    {L"SAVEAS", saveas_command, no_step, L"saves the drawing in a format and under a name"},
    {L"SCRIPT", script_command, no_step | without_drawing, L"reads answers from a script file"},
    {L"SCR", script_command, no_step | without_drawing, L""},
    {L"SELECT", select_command, ACRX_CMD_USEPICKSET, L"makes the set that P means in the next selection"},
    {L"SETVAR", setvar_command, ACRX_CMD_TRANSPARENT, L"shows and sets system variables"},
    {L"SET", setvar_command, ACRX_CMD_TRANSPARENT, L""},
    {L"TEXT", text_command, 0, L"writes lines of text"},
    {L"DT", text_command, 0, L""},
    {L"U", u_command, no_step, L"takes back the last command"},
    {L"UNDO", undo_command, no_step, L"takes back several commands, to a mark, or as groups"},
    {L"XATTACH", xattach_command, 0, L"attaches a drawing file as an external reference"},
    {L"XA", xattach_command, 0, L""},
    {L"ZOOM", zoom_command, 0, L"shows more or less of the drawing"},
    {L"Z", zoom_command, 0, L""},
};

} // namespace

void register_host_commands() {
    AcEdCommandStack* const stack = acedRegCmds;
    for (const host_command& command : commands)
        stack->addCommand(host_group, command.name, command.name, command.flags, command.function);
}

std::wstring_view help_of(std::wstring_view command) {
    // Of other names the row of the command itself stands in front.
    std::wstring_view help;
    for (const host_command& known : commands) {
        if (*known.help != 0)
            help = known.help;
        if (base::equal_no_case(known.name, command))
            return help;
    }
    return {};
}

bool is_other_name(std::wstring_view command) {
    return std::any_of(std::begin(commands), std::end(commands), [&](const host_command& known) {
        return *known.help == 0 && base::equal_no_case(known.name, command);
    });
}

bool is_host_command(const AcEdCommand* command) {
    return command != nullptr && acedRegCmds->lookupCmd(command->globalName(), host_group) == command;
}

} // namespace ed
