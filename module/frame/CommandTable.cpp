#include "module/frame/CommandTable.h"

#include "accmd.h"
#include "module/check/CheckCommands.h"
#include "module/doubleline/DoublePipeCommand.h"
#include "module/frame/SettingsTransfer.h"
#include "module/layertools/LayerControlBar.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/MarkCommands.h"
#include "module/settings/SettingsCommand.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr wchar_t commandGroup[] = L"ZEF_PIPESTSTEM";

struct CommandRow {
    const wchar_t* name;
    AcRxFunctionPtr handler;
    Adesk::Int32 flags;
};

// A command's name as an argument of a template.
template<std::size_t Size>
struct CommandName {
    constexpr CommandName(const wchar_t (&name)[Size]) { std::copy_n(name, Size, text); }
    wchar_t text[Size] = {};
};

// The row of a command that is a method of the layer tool object.
template<CommandName Name, void (CLayerToolBar::*Method)()>
constexpr CommandRow LayerTool(Adesk::Int32 flags) {
    return {Name.text, [] { (CLayerToolBar::Instance().*Method)(); }, flags};
}

constexpr CommandRow commands[] = {
    {L"gxsz", EditStandard, ACRX_CMD_USEPICKSET},
    {L"dcsz", SettingsTransfer::ExportCommand, ACRX_CMD_REDRAW},
    {L"drsz", SettingsTransfer::ImportCommand, ACRX_CMD_REDRAW},
    LayerTool<L"SetAllPipeLayOpen", &CLayerToolBar::SetAllPipeLayOpen>(ACRX_CMD_TRANSPARENT),
    {L"tckz", ShowLayerControlBar, ACRX_CMD_USEPICKSET},
    {L"gpsbs", MarkForSystem, ACRX_CMD_USEPICKSET},
    {L"CleanDolmoLayTag", CleanArchitectureMarks, ACRX_CMD_USEPICKSET},
    LayerTool<L"UnLockSelLayer", &CLayerToolBar::UnLockSelLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"LockSelLayer", &CLayerToolBar::LockSelLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"sfxc", &CLayerToolBar::sfxc>(ACRX_CMD_USEPICKSET),
    LayerTool<L"OpenLayer", &CLayerToolBar::OpenLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"OpenSelLayer", &CLayerToolBar::OpenSelLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"CloseSelLayer", &CLayerToolBar::CloseSelLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"EraseSelLayer", &CLayerToolBar::EraseSelLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"ConvertLayer", &CLayerToolBar::ConvertLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"hbtc", &CLayerToolBar::hbtc>(ACRX_CMD_USEPICKSET),
    {L"gxgd", DrawDoubleLinePipes, ACRX_CMD_USEPICKSET},
    LayerTool<L"tcdc", &CLayerToolBar::tcdc>(ACRX_CMD_USEPICKSET),
    LayerTool<L"tctq", &CLayerToolBar::tctq>(ACRX_CMD_USEPICKSET),
    LayerTool<L"FrozenLayer", &CLayerToolBar::FrozenLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"UnFrozenAllLayer", &CLayerToolBar::UnFrozenAllLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"FrozenViewLayer", &CLayerToolBar::FrozenViewLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"UnFrozenViewAllLayer", &CLayerToolBar::UnFrozenViewAllLayer>(ACRX_CMD_USEPICKSET),
    LayerTool<L"tbds", &CLayerToolBar::tbds>(ACRX_CMD_USEPICKSET),
    LayerTool<L"yshf", &CLayerToolBar::yshf>(ACRX_CMD_USEPICKSET),
    LayerTool<L"cztk", &CLayerToolBar::cztk>(ACRX_CMD_USEPICKSET),
    {L"jcjk", CheckCurrentDrawing, ACRX_CMD_USEPICKSET},
    {L"gxfz", MendCurrentDrawing, ACRX_CMD_USEPICKSET},
    {L"xxyh", OrderLinetypes, ACRX_CMD_USEPICKSET},
    {L"xxyh2", JoinLines, ACRX_CMD_USEPICKSET},
};
static_assert(std::size(commands) == 30);

// An application of the add-on has commands of these names too; ours are meant. Of tcgj there is none here,
// but the other one goes all the same.
constexpr const wchar_t* foreignCommands[] = {
    L"tcgj",         L"hbtc",           L"OpenLayer",    L"OpenSelLayer", L"CloseSelLayer", L"EraseSelLayer",
    L"ConvertLayer", L"UnLockSelLayer", L"LockSelLayer", L"sfxc",         L"dcsz",          L"drsz",
};

} // namespace

void RemoveForeignCommands() {
    AcEdCommandStack* const stack = acedRegCmds;
    for (const wchar_t* const name : foreignCommands) {
        if (stack != nullptr)
            stack->removeCmd(L"TAPI_CMD", name);
    }
}

void RegisterCommands() {
    AcEdCommandStack* const stack = acedRegCmds;
    for (const CommandRow& command : commands) {
        if (stack != nullptr)
            stack->addCommand(commandGroup, command.name, command.name, command.flags, command.handler);
    }
}

void RemoveCommands() {
    if (AcEdCommandStack* const stack = acedRegCmds)
        stack->removeGroup(commandGroup);
}
