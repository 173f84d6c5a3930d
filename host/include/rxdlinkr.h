// Loads and unloads applications.
#pragma once

#include "appinfo.h"
#include "rxdict.h"
#include "rxobject.h"

// The one object of this class stands in the system registry under ACRX_DYNAMIC_LINKER.
//
// An application is named by its file: with or without folder and ending, in either case. A packet is what
// the application's entry point was handed. An application that is loaded is locked until it unlocks itself;
// a locked one cannot be unloaded.
class ACBASE_PORT AcRxDynamicLinker : public AcRxObject {
public:
    static AcRxClass* desc();
    static AcRxDynamicLinker* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // Loads an application: the file as named, then beside the program; ".arx" is added to a name without an
    // ending. False when it cannot be found, is no application, is loaded already or refuses; `printit` tells
    // the cause on the command line.
    virtual bool loadModule(const ACHAR* fileName, bool printit, bool asCommand = false) = 0;
    // Unloads one. False when it is not loaded, is locked or refuses.
    virtual bool unloadModule(const ACHAR* fileName, bool asCommand = false) = 0;
    // The same by the application's name.
    virtual bool loadApp(const ACHAR* appName, AcadApp::LoadReasons reason, bool printit,
                         bool asCommand = false) = 0;
    virtual bool unloadApp(const ACHAR* appName, bool asCommand = false) = 0;

    // The address of what a loaded application exports, null when there is no such thing.
    virtual void* getSymbolAddress(const ACHAR* fileName, const char* symbol) const = 0;

    // All of these are false when the packet or name is none of a loaded application.
    virtual bool lockApplication(void* packet) const = 0;
    virtual bool unlockApplication(void* packet) const = 0;
    virtual bool isApplicationLocked(const ACHAR* name) const = 0;
    virtual bool isApplicationLocked(void* packet) const = 0;
    // Says that the application can do with several documents; the host works with one document only while
    // one is loaded that cannot.
    virtual bool registerAppMDIAware(void* packet) const = 0;
    virtual bool registerAppNotMDIAware(void* packet) const = 0;
    virtual bool isAppMDIAware(const ACHAR* name) const = 0;
};

#define acrxDynamicLinker (AcRxDynamicLinker::cast(acrxSysRegistry()->at(ACRX_DYNAMIC_LINKER)))
