#include "rxclass.h"
#include "rxobject.h"

#include "base/utf.h"

#include <cstdio>
#include <cstdlib>

AcRxObject::~AcRxObject() = default;

bool AcRxObject::isKindOf(const AcRxClass* aClass) const {
    const AcRxClass* const own = isA();
    return own != nullptr && own->isDerivedFrom(aClass);
}

AcRxObject* AcRxObject::queryX(const AcRxClass* protocolClass) const {
    const AcRxClass* const own = isA();
    return own != nullptr ? own->queryX(protocolClass) : nullptr;
}

AcRxObject* AcRxObject::x(const AcRxClass* protocolClass) const {
    AcRxObject* const extension = queryX(protocolClass);
    if (extension == nullptr) {
        const auto name = [](const AcRxClass* c) {
            return c != nullptr ? base::narrow(c->name()) : "an unregistered class";
        };
        std::fprintf(stderr, "%s has no extension %s\n", name(isA()).c_str(), name(protocolClass).c_str());
        std::abort();
    }
    return extension;
}

AcRxObject* AcRxObject::clone() const {
    return nullptr;
}

Acad::ErrorStatus AcRxObject::copyFrom(const AcRxObject* /*other*/) {
    return Acad::eNotImplementedYet;
}

bool AcRxObject::isEqualTo(const AcRxObject* other) const {
    return this == other;
}

AcRx::Ordering AcRxObject::comparedTo(const AcRxObject* other) const {
    return isEqualTo(other) ? AcRx::kEqual : AcRx::kNotOrderable;
}
