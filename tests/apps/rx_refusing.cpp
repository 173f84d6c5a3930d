// An application that does not want to be loaded.
#include "arxHeaders.h"
#include "tests/rx_message_log.h"

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* /*packet*/) {
    message_log::tell("refusing", message);
    return AcRx::kRetError;
}
