// The host's own commands: which there are, and a line on each.
#pragma once

#include "accmd.h"

#include <string>
#include <string_view>

namespace ed {

struct host_command {
    const wchar_t* name;
    AcRxFunctionPtr function;
    Adesk::Int32 flags;
    const wchar_t* help; // empty: another name of the command above
};

// Their group.
inline constexpr const wchar_t* host_group = L"ACAD";

// Registers them.
void register_host_commands();
// The line on a command, or on the one that it is another name of; empty when it is none of the host's.
std::wstring_view help_of(std::wstring_view command);
bool is_other_name(std::wstring_view command);
// Whether a command is one of the host's own; null is none.
bool is_host_command(const AcEdCommand* command);

void arx_command();
void audit_command();
void circle_command();
void close_command();
void delay_command();
void dxfout_command();
void erase_command();
void explode_command();
void help_command();
void insert_command();
void layer_command();
void layerp_command();
void layerpmode_command();
void layout_command();
void line_command();
void linetype_command();
void list_command();
void model_command();
void mspace_command();
void named_view_command();
void new_command();
void open_command();
void pan_command();
void picture_command();
void pspace_command();
void purge_command();
void qsave_command();
void quit_command();
void redo_command();
void redraw_command();
void regen_command();
void regenall_command();
void save_command();
void saveas_command();
void script_command();
void select_command();
void setvar_command();
// SETVAR with the name of a variable that there is.
void change_variable(const std::wstring& name);
void text_command();
void u_command();
void undo_command();
void xattach_command();
void zoom_command();

} // namespace ed
