// What the host tells zef_client: it brings its commands, and takes them with it.
#include "accmd.h"
#include "clients/ConvertLines.h"
#include "clients/DrawPipes.h"
#include "clients/DrawingSettings.h"
#include "clients/LabelPipes.h"
#include "clients/MarkArchitecture.h"
#include "clients/NumberPipes.h"
#include "clients/PlaceValves.h"
#include "clients/SaveExploded.h"
#include "rxregsvc.h"

namespace {

constexpr wchar_t commandGroup[] = L"ZEF_CLIENT";

} // namespace

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    AcEdCommandStack* const stack = acedRegCmds;
    if (message == AcRx::kInitAppMsg && stack != nullptr) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        stack->addCommand(commandGroup, L"hzgx", L"hzgx", ACRX_CMD_MODAL, DrawPipes);
        stack->addCommand(commandGroup, L"hzlg", L"hzlg", ACRX_CMD_MODAL, DrawRisers);
        stack->addCommand(commandGroup, L"hzfj", L"hzfj", ACRX_CMD_MODAL, PlaceValves);
        stack->addCommand(commandGroup, L"xzgx", L"xzgx", ACRX_CMD_MODAL, ConvertLines);
        stack->addCommand(commandGroup, L"bzgj", L"bzgj", ACRX_CMD_MODAL, LabelPipes);
        stack->addCommand(commandGroup, L"gxbh", L"gxbh", ACRX_CMD_MODAL, NumberPipes);
        stack->addCommand(commandGroup, L"tzsz", L"tzsz", ACRX_CMD_MODAL, SetDrawingSettings);
        stack->addCommand(commandGroup, L"zhcc", L"zhcc", ACRX_CMD_MODAL, SaveExploded);
        stack->addCommand(commandGroup, L"SetDolmoLayTag", L"SetDolmoLayTag", ACRX_CMD_USEPICKSET,
                          MarkArchitecture);
    } else if (message == AcRx::kUnloadAppMsg && stack != nullptr) {
        stack->removeGroup(commandGroup);
    }
    return AcRx::kRetOK;
}
