// What the host tells the module. Nothing of it is ever refused.
#include "module/frame/Lifecycle.h"
#include "rxregsvc.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    switch (message) {
    case AcRx::kInitAppMsg:
        acrxUnlockApplication(packet);
        if (const AcRxDynamicLinker* const linker = acrxDynamicLinker)
            linker->registerAppMDIAware(packet);
        InitialiseModule();
        break;
    case AcRx::kUnloadAppMsg:
        ShutDownModule();
        break;
    // Here kLoadDwgMsg and kUnloadDwgMsg will be passed on to the holder of per-document data.
    default:
        break;
    }
    return AcRx::kRetOK;
}
