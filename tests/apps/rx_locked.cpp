// An application that never unlocks itself.
#include "arxHeaders.h"
#include "tests/rx_message_log.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* /*packet*/) {
    message_log::tell("locked", message);
    return AcRx::kRetOK;
}
