// An application that unlocks itself, brings a class, and refuses one message when it is told so.
#include "arxHeaders.h"
#include "tests/rx_message_log.h"

#include <stdexcept>

class WillingObject : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(WillingObject);
    AcRx::Ordering comparedTo(const AcRxObject*) const override { return AcRx::kLessThan; }
};
ACRX_CONS_DEFINE_MEMBERS(WillingObject, AcRxObject, 1)

extern "C" __declspec(dllexport) int willing_refuses; // which message, -1: none
extern "C" __declspec(dllexport) int willing_throws;
extern "C" __declspec(dllexport) int willing_keeps_its_class;
int willing_refuses = -1;
int willing_throws = -1;
int willing_keeps_its_class = 0;

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    message_log::tell("willing", message);
    if (message == willing_throws)
        throw std::runtime_error("an application's own trouble");
    if (message == willing_refuses)
        return AcRx::kRetError;
    if (message == AcRx::kInitAppMsg) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        WillingObject::rxInit();
        acrxBuildClassHierarchy();
    }
    if (message == AcRx::kUnloadAppMsg && willing_keeps_its_class == 0)
        deleteAcRxClass(WillingObject::desc());
    return AcRx::kRetOK;
}
