// The frame of an application that brings classes and no commands: derive from AcRxDbxApp, say what it
// registers besides, and name the class once.
//
//     class PipeApp : public AcRxDbxApp {
//     public:
//         void RegisterServerComponents() override {}
//     };
//     IMPLEMENT_ARX_ENTRYPOINT(PipeApp)
//
//     ACDB_REGISTER_OBJECT_ENTRY_AUTO(Pipe)    // in any source: Pipe::rxInit() when the application comes
//
// What is registered in this way belongs to the application whose sources say so, and goes with it.
#pragma once

#include "arxHeaders.h"
#include "windows.h"

#include <vector>

#if defined(__GNUC__)
#define ARX_OF_APPLICATION __attribute__((visibility("hidden")))
#else
#define ARX_OF_APPLICATION
#endif

class AcRxDbxApp;

namespace arxEntry {

// A class of objects that comes and goes with the application.
struct ARX_OF_APPLICATION ObjectEntry {
    void (*rxInit)();
    AcRxClass* (*desc)();
};

// Each application has a list of its own, since the functions are.
ARX_OF_APPLICATION inline std::vector<ObjectEntry>& objects() {
    static std::vector<ObjectEntry> all;
    return all;
}

struct ARX_OF_APPLICATION ObjectAdder {
    ObjectAdder(void (*rxInit)(), AcRxClass* (*desc)()) { objects().push_back({rxInit, desc}); }
};

} // namespace arxEntry

class ARX_OF_APPLICATION AcRxDbxApp {
public:
    AcRxDbxApp() = default;
    AcRxDbxApp(const AcRxDbxApp&) = delete;
    AcRxDbxApp& operator=(const AcRxDbxApp&) = delete;
    virtual ~AcRxDbxApp() = default;

    // What the application registers besides, when it comes.
    virtual void RegisterServerComponents() = 0;

    // The messages of the host, one by one. Who overrides one of the first two calls it too.
    virtual AcRx::AppRetCode On_kInitAppMsg(void* packet) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        for (const arxEntry::ObjectEntry& object : arxEntry::objects())
            object.rxInit();
        if (!arxEntry::objects().empty())
            acrxBuildClassHierarchy();
        RegisterServerComponents();
        return AcRx::kRetOK;
    }
    virtual AcRx::AppRetCode On_kUnloadAppMsg(void* /*packet*/) {
        // Those that are derived from others came behind them.
        const auto& all = arxEntry::objects();
        for (auto object = all.rbegin(); object != all.rend(); ++object)
            deleteAcRxClass(object->desc());
        return AcRx::kRetOK;
    }
    virtual AcRx::AppRetCode On_kLoadDwgMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kUnloadDwgMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kInvkSubrMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kCfgMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kEndMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kQuitMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kSaveMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kDependencyMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kNoDependencyMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kOleUnloadAppMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kPreQuitMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kInitDialogMsg(void* /*packet*/) { return AcRx::kRetOK; }
    virtual AcRx::AppRetCode On_kEndDialogMsg(void* /*packet*/) { return AcRx::kRetOK; }

    AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
        switch (message) {
        case AcRx::kInitAppMsg:
            return On_kInitAppMsg(packet);
        case AcRx::kUnloadAppMsg:
            return On_kUnloadAppMsg(packet);
        case AcRx::kLoadDwgMsg:
            return On_kLoadDwgMsg(packet);
        case AcRx::kUnloadDwgMsg:
            return On_kUnloadDwgMsg(packet);
        case AcRx::kInvkSubrMsg:
            return On_kInvkSubrMsg(packet);
        case AcRx::kCfgMsg:
            return On_kCfgMsg(packet);
        case AcRx::kEndMsg:
            return On_kEndMsg(packet);
        case AcRx::kQuitMsg:
            return On_kQuitMsg(packet);
        case AcRx::kSaveMsg:
            return On_kSaveMsg(packet);
        case AcRx::kDependencyMsg:
            return On_kDependencyMsg(packet);
        case AcRx::kNoDependencyMsg:
            return On_kNoDependencyMsg(packet);
        case AcRx::kOleUnloadAppMsg:
            return On_kOleUnloadAppMsg(packet);
        case AcRx::kPreQuitMsg:
            return On_kPreQuitMsg(packet);
        case AcRx::kInitDialogMsg:
            return On_kInitDialogMsg(packet);
        case AcRx::kEndDialogMsg:
            return On_kEndDialogMsg(packet);
        default:
            return AcRx::kRetOK;
        }
    }
};

// The one object of the application's class, and the function that the host calls.
#define IMPLEMENT_ARX_ENTRYPOINT(CLASS_NAME)                                                                 \
    ARX_OF_APPLICATION AcRxDbxApp* acrxGetApp() {                                                            \
        static CLASS_NAME application;                                                                       \
        return &application;                                                                                 \
    }                                                                                                        \
    extern "C" __declspec(dllexport) AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message,               \
                                                                     void* packet) {                         \
        return acrxGetApp()->acrxEntryPoint(message, packet);                                                \
    }
#define IMPLEMENT_ARX_ENTRYPOINT_CLASS(CLASS_NAME) IMPLEMENT_ARX_ENTRYPOINT(CLASS_NAME)

#define ACDB_REGISTER_OBJECT_ENTRY_AUTO(CLASS_NAME)                                                          \
    static const arxEntry::ObjectAdder arxEntryObject_##CLASS_NAME(&CLASS_NAME::rxInit, &CLASS_NAME::desc);
