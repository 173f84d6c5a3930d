// What the host tells the module. Nothing of it is ever refused.
#include "module/frame/Lifecycle.h"
#include "module/frame/PerDocData.h"
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
    case AcRx::kLoadDwgMsg:
        if (TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData())
            data->DocumentLoaded();
        break;
    case AcRx::kUnloadDwgMsg:
        if (TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData())
            data->DocumentUnloaded();
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
}
