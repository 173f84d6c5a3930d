// An application that stands between the host and the module: it puts itself in the place of the command
// stack and the editor, and in front of two functions of the sibling applications that the module calls on
// its way, hands on what they are asked, and writes down the order with what the module has at that moment.
#include "aced.h"
#include "afx.h"
#include "arxEntryPoint.h"
#include "rxdlinkr.h"

#include <bit>
#include <dlfcn.h>

namespace {

// What the module exports of itself; static functions without arguments.
bool has(const char* symbol) {
    using getter = void* (*)();
    const auto get = std::bit_cast<getter>(acrxDynamicLinker->getSymbolAddress(_T("zef_pipeSystem"), symbol));
    return get != nullptr && get() != nullptr;
}

void* flangeFunction() {
    void* const place = acrxDynamicLinker->getSymbolAddress(_T("zef_pipewire"), "g_pfnGetFlangeDataByDn");
    return place != nullptr ? *static_cast<void**>(place) : nullptr;
}

void* builtInFlanges = nullptr;

void trace(const ACHAR* what, const ACHAR* name = _T("")) {
    acutPrintf(_T("\n~ %s%s |%s%s%s%s"), what, name,
               has("_ZN16CStandardManager7CurrentEv") ? _T(" standard") : _T(""),
               has("_ZN16CStandardManager6LoadedEv") ? _T(" loaded") : _T(""),
               has("_ZN18TPipeAppDocGlobals3GetEv") ? _T(" documents") : _T(""),
               flangeFunction() != builtInFlanges ? _T(" flanges") : _T(""));
}

// Takes the place of what stands under a key of the system registry as long as it lives.
template<class Served>
class Spy : public Served {
public:
    explicit Spy(const ACHAR* key) : m_key(key) {
        m_served = Served::cast(acrxSysRegistry()->remove(key));
        Put(this);
    }
    ~Spy() override {
        acrxSysRegistry()->remove(m_key);
        Put(m_served);
    }

protected:
    Served* m_served;

private:
    void Put(AcRxObject* object) {
        Adesk::UInt32 id = 0;
        acrxSysRegistry()->atPut(m_key, object, id);
    }
    const ACHAR* m_key;
};

class StackSpy : public Spy<AcEdCommandStack> {
public:
    StackSpy() : Spy(ACED_REGISTERED_COMMANDS) {}
    Acad::ErrorStatus addCommand(const ACHAR* group, const ACHAR* global, const ACHAR* local,
                                 Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext* context,
                                 int code, HINSTANCE resource, AcEdCommand** command) override {
        trace(_T("command "), global);
        return m_served->addCommand(group, global, local, flags, function, context, code, resource, command);
    }
    Acad::ErrorStatus removeCmd(const ACHAR* group, const ACHAR* name) override {
        trace(_T("no command of others "), name);
        return m_served->removeCmd(group, name);
    }
    Acad::ErrorStatus removeGroup(const ACHAR* group) override {
        trace(_T("no group "), group);
        return m_served->removeGroup(group);
    }
    AcEdCommand* lookupGlobalCmd(const ACHAR* name) override { return m_served->lookupGlobalCmd(name); }
    AcEdCommand* lookupLocalCmd(const ACHAR* name) override { return m_served->lookupLocalCmd(name); }
    AcEdCommand* lookupCmd(const ACHAR* name, const ACHAR* group) override {
        return m_served->lookupCmd(name, group);
    }
};

class EditorSpy : public Spy<AcEditor> {
public:
    EditorSpy() : Spy(ACED_EDITOR_OBJ) {}
    void addReactor(AcRxEventReactor* reactor) override {
        trace(_T("hears of commands"));
        m_served->addReactor(reactor);
    }
    void removeReactor(AcRxEventReactor* reactor) override {
        trace(_T("hears no more of commands"));
        m_served->removeReactor(reactor);
    }
};

template<class Function>
Function* functionOf(const ACHAR* application, const char* symbol) {
    return std::bit_cast<Function*>(acrxDynamicLinker->getSymbolAddress(application, symbol));
}

struct Spies {
    StackSpy stack;
    EditorSpy editor;
};
Spies* spies = nullptr;

// Lets applications that are loaded from now on find this one's functions before those of the siblings.
void standInFront() {
    Dl_info self{};
    if (::dladdr(std::bit_cast<void*>(&standInFront), &self) != 0)
        ::dlopen(self.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);
}

} // namespace

// Asked whenever options are looked up in the registry.
__declspec(dllexport) CString GetRegLocation() {
    if (spies != nullptr)
        trace(_T("registry"));
    return functionOf<CString()>(_T("zef_kernal"), "_Z14GetRegLocationv")();
}

class TDefaultCfg {
public:
    enum Kind { kBoolean, kInteger, kReal };
    __declspec(dllexport) static bool SetDefaultValue(Kind kind, int index, bool value);
};

bool TDefaultCfg::SetDefaultValue(Kind kind, int index, bool value) {
    if (spies != nullptr)
        trace(_T("drawing default"));
    return functionOf<bool(Kind, int, bool)>(
        _T("zef_pipewire"), "_ZN11TDefaultCfg15SetDefaultValueENS_4KindEib")(kind, index, value);
}

class FrameTracing : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        const AcRx::AppRetCode answer = AcRxArxApp::On_kInitAppMsg(packet);
        builtInFlanges = flangeFunction();
        spies = new Spies;
        standInFront();
        return answer;
    }
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        delete spies;
        spies = nullptr;
        return AcRxArxApp::On_kUnloadAppMsg(packet);
    }
    void RegisterServerComponents() override {}
};

IMPLEMENT_ARX_ENTRYPOINT(FrameTracing)
