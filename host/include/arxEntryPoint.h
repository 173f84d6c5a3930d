// The frame of an application with commands: derive from AcRxArxApp, write commands as static members without
// arguments, and name each once.
//
//     class PipeApp : public AcRxArxApp {
//     public:
//         void RegisterServerComponents() override {}
//         static void PIPES_DRAWPIPE();
//     };
//     IMPLEMENT_ARX_ENTRYPOINT(PipeApp)
//     ACED_ARXCOMMAND_ENTRY_AUTO(PipeApp, PIPES, _DRAWPIPE, DRAWPIPE, ACRX_CMD_MODAL, NULL)
//
// calls PipeApp::PIPES_DRAWPIPE() for the command _DRAWPIPE, or DRAWPIPE, of the group PIPES.
#pragma once

#include "accmd.h"
#include "dbxEntryPoint.h"

namespace arxEntry {

// A command that comes and goes with the application.
struct ARX_OF_APPLICATION CommandEntry {
    const ACHAR* group;
    const ACHAR* global;
    const ACHAR* local;
    Adesk::Int32 flags;
    AcRxFunctionPtr function;
    AcEdUIContext* context;
};

ARX_OF_APPLICATION inline std::vector<CommandEntry>& commands() {
    static std::vector<CommandEntry> all;
    return all;
}

struct ARX_OF_APPLICATION CommandAdder {
    explicit CommandAdder(const CommandEntry& entry) { commands().push_back(entry); }
};

} // namespace arxEntry

class ARX_OF_APPLICATION AcRxArxApp : public AcRxDbxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        const AcRx::AppRetCode answer = AcRxDbxApp::On_kInitAppMsg(packet);
        AcEdCommandStack* const stack = acedRegCmds;
        for (const arxEntry::CommandEntry& one : arxEntry::commands())
            stack->addCommand(one.group, one.global, one.local, one.flags, one.function, one.context);
        return answer;
    }
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        AcEdCommandStack* const stack = acedRegCmds;
        for (const arxEntry::CommandEntry& one : arxEntry::commands())
            stack->removeCmd(one.group, one.global);
        return AcRxDbxApp::On_kUnloadAppMsg(packet);
    }
};

#define ACED_ARXCOMMAND_ENTRY_AUTO(CLASS_NAME, GROUP, GLOBAL, LOCAL, FLAGS, CONTEXT)                         \
    static const arxEntry::CommandAdder arxEntryCommand_##CLASS_NAME##GROUP##GLOBAL(                         \
        {_ACRX_T(#GROUP), _ACRX_T(#GLOBAL), _ACRX_T(#LOCAL), (FLAGS), &CLASS_NAME::GROUP##GLOBAL, CONTEXT});
