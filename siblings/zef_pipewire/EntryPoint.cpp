// What the host tells zef_pipewire.
#include "rxregsvc.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    if (message == AcRx::kInitAppMsg) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
    }
    return AcRx::kRetOK;
}
