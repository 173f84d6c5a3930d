#include "host/rx/applications.h"
#include "host/rx/runtime.h"

#include "acutmem.h"
#include "dbptrar.h"
#include "rxregsvc.h"

#include <memory>

void AcRxService::removeDependency() {
    if (m_dependencies > 0)
        --m_dependencies;
}

AcRxObject* acrxRegisterService(const ACHAR* serviceName) {
    rx::dictionary& services = rx::runtime::instance().services;
    if (serviceName == nullptr || *serviceName == 0 || services.has(serviceName))
        return nullptr;
    auto service = std::make_unique<AcRxService>();
    Adesk::UInt32 id;
    services.atPut(serviceName, service.get(), id);
    return service.release();
}

bool acrxServiceIsRegistered(const ACHAR* serviceName) {
    return rx::runtime::instance().services.has(serviceName);
}

bool acrxLoadModule(const ACHAR* fileName, bool printit, bool asCommand) {
    return acrxDynamicLinker->loadModule(fileName, printit, asCommand);
}

bool acrxUnloadModule(const ACHAR* fileName, bool asCommand) {
    return acrxDynamicLinker->unloadModule(fileName, asCommand);
}

bool acrxLoadApp(const ACHAR* appName, bool asCommand) {
    return acrxDynamicLinker->loadApp(appName, AcadApp::kOnLoadRequest, false, asCommand);
}

bool acrxUnloadApp(const ACHAR* appName, bool asCommand) {
    return acrxDynamicLinker->unloadApp(appName, asCommand);
}

void* acrxLoadedApps() {
    auto names = std::make_unique<AcDbVoidPtrArray>();
    for (const std::wstring& name : rx::applications::instance().names()) {
        ACHAR* copy = nullptr;
        acutNewString(name.c_str(), copy);
        names->append(copy);
    }
    return names.release();
}

bool acrxAppIsLoaded(const ACHAR* appName) {
    return appName != nullptr && rx::applications::instance().is_loaded(appName);
}

bool acrxLockApplication(void* packet) {
    return acrxDynamicLinker->lockApplication(packet);
}

bool acrxUnlockApplication(void* packet) {
    return acrxDynamicLinker->unlockApplication(packet);
}

bool acrxApplicationIsLocked(const ACHAR* name) {
    return acrxDynamicLinker->isApplicationLocked(name);
}

bool acrxRegisterAppMDIAware(void* packet) {
    return acrxDynamicLinker->registerAppMDIAware(packet);
}

bool acrxRegisterAppNotMDIAware(void* packet) {
    return acrxDynamicLinker->registerAppNotMDIAware(packet);
}

bool acrxIsAppMDIAware(const ACHAR* name) {
    return acrxDynamicLinker->isAppMDIAware(name);
}
