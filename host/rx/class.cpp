#include "rxclass.h"

#include "host/rx/class_registry.h"
#include "host/rx/runtime.h"

#include <algorithm>
#include <string_view>

AcRxClass::AcRxClass() = default;

AcRxClass::~AcRxClass() {
    rx::runtime::instance().classes.forget(this);
}

const ACHAR* AcRxClass::name() const {
    return m_data->name.c_str();
}

const ACHAR* AcRxClass::dxfName() const {
    return m_data->dxf_name.empty() ? nullptr : m_data->dxf_name.c_str();
}

const ACHAR* AcRxClass::appName() const {
    return m_data->app_name.empty() ? nullptr : m_data->app_name.c_str();
}

void AcRxClass::getClassVersion(int& dwgVersion, int& maintenanceVersion) const {
    dwgVersion = m_data->dwg_version;
    maintenanceVersion = m_data->maintenance_version;
}

int AcRxClass::proxyFlags() const {
    return m_data->proxy_flags;
}

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
    if (other == nullptr)
        return false;
    for (const AcRxClass* c = this; c != nullptr; c = c->m_parent) {
        if (c == other)
            return true;
    }
    return false;
}

AcRxObject* AcRxClass::create() const {
    return m_data->create != nullptr ? m_data->create() : nullptr;
}

AcRxObject* AcRxClass::addX(AcRxClass* protocolClass, AcRxObject* extension) {
    if (protocolClass == nullptr || extension == nullptr)
        return nullptr;
    AcRxObject* const before = delX(protocolClass);
    m_data->extensions.push_back({protocolClass, extension});
    return before;
}

AcRxObject* AcRxClass::getX(const AcRxClass* protocolClass) const {
    for (const auto& x : m_data->extensions) {
        if (x.protocol == protocolClass)
            return x.object;
    }
    return nullptr;
}

AcRxObject* AcRxClass::delX(AcRxClass* protocolClass) {
    AcRxObject* const before = getX(protocolClass);
    std::erase_if(m_data->extensions, [&](const auto& x) { return x.protocol == protocolClass; });
    return before;
}

AcRxObject* AcRxClass::queryX(const AcRxClass* protocolClass) const {
    for (const AcRxClass* c = this; c != nullptr; c = c->m_parent) {
        if (AcRxObject* const extension = c->getX(protocolClass))
            return extension;
    }
    return nullptr;
}

namespace {

// A name as the macros make it: of the word as it stands in the source, which may be a literal.
std::wstring without_quotes(const ACHAR* text) {
    std::wstring_view t = text != nullptr ? text : L"";
    if (t.size() >= 2 && t.front() == L'"' && t.back() == L'"')
        t = t.substr(1, t.size() - 2);
    return std::wstring(t);
}

} // namespace

AcRxClass* newAcRxClass(const ACHAR* className, const ACHAR* parentClassName, int proxyFlags,
                        AcRxObject* (*pseudoConstructor)(), const ACHAR* dxfName, const ACHAR* appName) {
    return newAcRxClass(className, parentClassName, 0, 0, proxyFlags, pseudoConstructor, dxfName, appName);
}

AcRxClass* newAcRxClass(const ACHAR* className, const ACHAR* parentClassName, int dwgVersion,
                        int maintenanceVersion, int proxyFlags, AcRxObject* (*pseudoConstructor)(),
                        const ACHAR* dxfName, const ACHAR* appName) {
    return rx::runtime::instance().classes.add({
        .name = className != nullptr ? className : L"",
        .parent = parentClassName != nullptr ? parentClassName : L"",
        .dxf_name = without_quotes(dxfName),
        .app_name = without_quotes(appName),
        .dwg_version = dwgVersion,
        .maintenance_version = maintenanceVersion,
        .proxy_flags = proxyFlags,
        .create = pseudoConstructor,
    });
}

void acrxBuildClassHierarchy() {
    rx::runtime::instance().classes.build_hierarchy();
}

void deleteAcRxClass(AcRxClass* aClass) {
    rx::runtime::instance().classes.remove(aClass);
}
