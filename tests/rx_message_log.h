// Where the applications of the tests tell which messages they got.
#pragma once

#include "rxdict.h"

// Stands in the system registry under its key while a test listens.
class message_log : public AcRxObject {
public:
    static constexpr const ACHAR* key = L"MessageLogOfTests";

    virtual void heard(const char* application, AcRx::AppMsgCode message) = 0;

    static void tell(const char* application, AcRx::AppMsgCode message) {
        if (auto* const log = static_cast<message_log*>(acrxSysRegistry()->at(key)))
            log->heard(application, message);
    }
};
