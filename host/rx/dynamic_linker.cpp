#include "host/rx/dynamic_linker.h"

#include "acutads.h"
#include "host/rx/applications.h"

#include <string_view>

namespace rx {

namespace {

std::wstring_view text(const ACHAR* name) {
    return name != nullptr ? name : L"";
}

class dynamic_linker : public AcRxDynamicLinker {
public:
    bool loadModule(const ACHAR* fileName, bool printit, bool /*asCommand*/) override {
        const auto loaded = all().load(text(fileName));
        if (!loaded && printit)
            acutPrintf(L"\n%ls\n", loaded.error().c_str());
        return static_cast<bool>(loaded);
    }
    bool unloadModule(const ACHAR* fileName, bool /*asCommand*/) override {
        return static_cast<bool>(all().unload(text(fileName)));
    }
    bool loadApp(const ACHAR* appName, AcadApp::LoadReasons /*reason*/, bool printit,
                 bool asCommand) override {
        return loadModule(appName, printit, asCommand);
    }
    bool unloadApp(const ACHAR* appName, bool asCommand) override { return unloadModule(appName, asCommand); }

    void* getSymbolAddress(const ACHAR* fileName, const char* symbol) const override {
        const application* const app = all().find(text(fileName));
        return app != nullptr && symbol != nullptr ? app->symbol(symbol) : nullptr;
    }

    bool lockApplication(void* packet) const override { return set(packet, &application::locked, true); }
    bool unlockApplication(void* packet) const override { return set(packet, &application::locked, false); }
    bool isApplicationLocked(const ACHAR* name) const override {
        const application* const app = all().find(text(name));
        return app != nullptr && app->locked;
    }
    bool isApplicationLocked(void* packet) const override {
        const application* const app = all().of_packet(packet);
        return app != nullptr && app->locked;
    }
    bool registerAppMDIAware(void* packet) const override {
        return set(packet, &application::mdi_aware, true);
    }
    bool registerAppNotMDIAware(void* packet) const override {
        return set(packet, &application::mdi_aware, false);
    }
    bool isAppMDIAware(const ACHAR* name) const override { return all().is_mdi_aware(text(name)); }

private:
    static applications& all() { return applications::instance(); }

    static bool set(const void* packet, bool application::*mark, bool value) {
        application* const app = all().of_packet(packet);
        if (app != nullptr)
            app->*mark = value;
        return app != nullptr;
    }
};

} // namespace

std::unique_ptr<AcRxDynamicLinker> make_dynamic_linker() {
    return std::make_unique<dynamic_linker>();
}

} // namespace rx
