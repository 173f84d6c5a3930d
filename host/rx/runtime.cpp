#include "host/rx/runtime.h"

#include "drawable.h"
#include "host/rx/dynamic_linker.h"
#include "rxiter.h"
#include "rxsrvice.h"

namespace rx {

namespace {

struct builtin {
    const ACHAR* name;
    const ACHAR* parent;
    AcRxObject* (*create)();
};

// Parents first.
constexpr builtin builtins[] = {
    {L"AcRxObject", L"", nullptr},
    {L"AcRxClass", L"AcRxObject", nullptr},
    {L"AcRxIterator", L"AcRxObject", nullptr},
    {L"AcRxDictionary", L"AcRxObject", nullptr},
    {L"AcRxDictionaryIterator", L"AcRxIterator", nullptr},
    {L"AcRxService", L"AcRxObject", []() -> AcRxObject* { return new AcRxService; }},
    {L"AcRxDynamicLinker", L"AcRxObject", nullptr},
    {L"AcGiDrawable", L"AcRxObject", nullptr},
};

} // namespace

runtime::runtime() : linker(make_dynamic_linker()) {
    for (const builtin& b : builtins)
        classes.add({.name = b.name, .parent = b.parent, .create = b.create});
    Adesk::UInt32 id;
    system.atPut(ACRX_CLASS_DICTIONARY, &classes.dictionary(), id);
    system.atPut(ACRX_SERVICE_DICTIONARY, &services, id);
    system.atPut(ACRX_DYNAMIC_LINKER, linker.get(), id);
}

runtime& runtime::instance() {
    static runtime* const one = new runtime;
    return *one;
}

} // namespace rx

AcRxDictionary* acrxSysRegistry() {
    return &rx::runtime::instance().system;
}

// The classes that the runtime itself is made of are there before any rxInit can run.
#define RX_BUILTIN_CLASS(CLASS_NAME)                                                                         \
    AcRxClass* CLASS_NAME::desc() {                                                                          \
        static AcRxClass* const description = rx::runtime::instance().classes.find(L"" #CLASS_NAME);         \
        return description;                                                                                  \
    }                                                                                                        \
    AcRxClass* CLASS_NAME::isA() const {                                                                     \
        return desc();                                                                                       \
    }                                                                                                        \
    CLASS_NAME* CLASS_NAME::cast(const AcRxObject* object) {                                                 \
        return object != nullptr && object->isKindOf(desc())                                                 \
                   ? static_cast<CLASS_NAME*>(const_cast<AcRxObject*>(object))                               \
                   : nullptr;                                                                                \
    }

RX_BUILTIN_CLASS(AcRxObject)
RX_BUILTIN_CLASS(AcRxClass)
RX_BUILTIN_CLASS(AcRxIterator)
RX_BUILTIN_CLASS(AcRxDictionary)
RX_BUILTIN_CLASS(AcRxDictionaryIterator)
RX_BUILTIN_CLASS(AcRxService)
RX_BUILTIN_CLASS(AcRxDynamicLinker)
RX_BUILTIN_CLASS(AcGiDrawable)
