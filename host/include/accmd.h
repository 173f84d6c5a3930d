// The command stack: what can be typed at the command prompt.
#pragma once

#include "acadstrc.h"
#include "accmd-defs.h"
#include "rxboiler.h"
#include "rxobject.h"
#include "windows.h"

typedef void (*AcRxFunctionPtr)();
// What a command's dialog would be given; no command here has one.
class AcEdUIContext;

// A registered command. Owned by the stack, valid until it is removed.
class ACCORE_PORT AcEdCommand : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommand);
    ~AcEdCommand() override;

    virtual const ACHAR* globalName() const = 0;
    virtual const ACHAR* localName() const = 0;
    virtual Adesk::Int32 commandFlags() const = 0;
    virtual AcRxFunctionPtr functionAddr() const = 0;
};

#define ACED_REGISTERED_COMMANDS ACRX_T("ACAD_REGISTERED_COMMANDS")

// Commands in groups. Names are compared without case; when groups have a name in common, the group that was
// made later is found.
class ACCORE_PORT AcEdCommandStack : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommandStack);
    ~AcEdCommandStack() override;

    // Makes the group when there is none. eDuplicateKey when the group has a command of either name;
    // eInvalidInput for an empty name or no function.
    virtual Acad::ErrorStatus addCommand(const ACHAR* group, const ACHAR* globalName, const ACHAR* localName,
                                         Adesk::Int32 flags, AcRxFunctionPtr function,
                                         AcEdUIContext* context = nullptr, int functionCode = -1,
                                         HINSTANCE resource = nullptr, AcEdCommand** command = nullptr) = 0;
    // By global name. eKeyNotFound.
    virtual Acad::ErrorStatus removeCmd(const ACHAR* group, const ACHAR* globalName) = 0;
    // With all its commands. eKeyNotFound.
    virtual Acad::ErrorStatus removeGroup(const ACHAR* group) = 0;

    // The command that a name stands for; null when there is none.
    virtual AcEdCommand* lookupGlobalCmd(const ACHAR* name) = 0;
    virtual AcEdCommand* lookupLocalCmd(const ACHAR* name) = 0;
    virtual AcEdCommand* lookupCmd(const ACHAR* name, const ACHAR* group) = 0;
};

// The stack, as it stands in the system registry.
#define acedRegCmds AcEdCommandStack::cast(acrxSysRegistry()->at(ACED_REGISTERED_COMMANDS))
