// Services and applications by plain functions.
#pragma once

#include "rxclass.h"
#include "rxdict.h"
#include "rxdlinkr.h"
#include "rxsrvice.h"

// Puts a new service of that name into the service dictionary, which keeps it until it is removed there; who
// removes it owns it. Null when the name is taken or empty.
ACBASE_PORT AcRxObject* acrxRegisterService(const ACHAR* serviceName);
ACBASE_PORT bool acrxServiceIsRegistered(const ACHAR* serviceName);

// As the dynamic linker does; see there.
ACBASE_PORT bool acrxLoadModule(const ACHAR* fileName, bool printit, bool asCommand = false);
ACBASE_PORT bool acrxUnloadModule(const ACHAR* fileName, bool asCommand = false);
ACBASE_PORT bool acrxLoadApp(const ACHAR* appName, bool asCommand = false);
ACBASE_PORT bool acrxUnloadApp(const ACHAR* appName, bool asCommand = false);

// The file names of the loaded applications, in the order in which they came: an AcDbVoidPtrArray (dbptrar.h)
// of texts. The caller deletes the array and frees each text with acutDelString.
ACBASE_PORT void* acrxLoadedApps();
ACBASE_PORT bool acrxAppIsLoaded(const ACHAR* appName);

// As the dynamic linker does; see there.
ACBASE_PORT bool acrxLockApplication(void* packet);
ACBASE_PORT bool acrxUnlockApplication(void* packet);
ACBASE_PORT bool acrxApplicationIsLocked(const ACHAR* name);
ACBASE_PORT bool acrxRegisterAppMDIAware(void* packet);
ACBASE_PORT bool acrxRegisterAppNotMDIAware(void* packet);
ACBASE_PORT bool acrxIsAppMDIAware(const ACHAR* name);
