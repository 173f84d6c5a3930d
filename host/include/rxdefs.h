// The messages between host and applications, and a few enumerations of the runtime.
#pragma once

#include "AdAChar.h"
#include "adesk.h"

namespace AcRx {

// What the host tells an application. kInitAppMsg comes first, once; kUnloadAppMsg or kQuitMsg last.
enum AppMsgCode {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,   // a document is there
    kUnloadDwgMsg = 4, // a document goes
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,
    kSaveMsg = 9,
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
    kOleUnloadAppMsg = 12,
    kPreQuitMsg = 13,
    kInitDialogMsg = 14,
    kEndDialogMsg = 15,
    kSuspendMsg = 16,
    kInitTabGroupMsg = 17,
    kEndTabGroupMsg = 18,
};

// What an application answers. kRetError takes the application out; as the answer to kUnloadAppMsg and
// kOleUnloadAppMsg it refuses to go.
enum AppRetCode {
    kRetOK = 0,
    kRetError = 3,
};

// How two objects stand to each other.
enum Ordering {
    kLessThan = -1,
    kEqual = 0,
    kGreaterThan = 1,
    kNotOrderable = 2,
};

// The order in which a dictionary is walked: by key, or as its entries came.
enum DictIterType {
    kDictSorted = 0,
    kDictCollated = 1,
};

} // namespace AcRx

// The one function that every application defines. `packet` names the application in calls such as
// acrxUnlockApplication; it means nothing else to the application.
extern "C" ACBASE_PORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);
