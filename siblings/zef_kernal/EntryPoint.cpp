// What the host tells zef_kernal.
#include "rxregsvc.h"
#include "siblings/zef_kernal/DocDataCommand.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "sys/folders.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    if (message == AcRx::kInitAppMsg) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        g_csSysPath = sys::from_path(sys::system_folder() / "").c_str();
        BeginDocData();
    } else if (message == AcRx::kUnloadAppMsg) {
        EndDocData();
    }
    return AcRx::kRetOK;
}
