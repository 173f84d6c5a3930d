#include "host/rx/class_registry.h"

#include "base/utf.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace rx {

AcRxClass* class_registry::add(class_data data) {
    if (data.name.empty() || by_name_.has(data.name.c_str()))
        return nullptr;
    data.owner = owner_;
    // The dictionary hands out plain pointers, and whoever removes a class there owns it.
    auto* const made = new AcRxClass;
    made->m_data = std::make_unique<class_data>(std::move(data));
    made->m_parent = find(made->m_data->parent.c_str());
    all_.push_back(made);
    if (!made->m_data->dxf_name.empty() && made->m_data->create != nullptr)
        by_dxf_name_.insert_or_assign(base::narrow(made->m_data->dxf_name), made);
    Adesk::UInt32 id;
    by_name_.atPut(made->name(), made, id);
    return made;
}

void class_registry::remove(AcRxClass* gone) {
    const auto at = std::find(all_.begin(), all_.end(), gone);
    if (at == all_.end())
        return;
    if (on_removing)
        on_removing(gone);
    if (find(gone->name()) == gone)
        by_name_.remove(gone->name());
    delete gone;
}

void class_registry::forget(const AcRxClass* gone) {
    std::erase(all_, gone);
    std::erase_if(by_dxf_name_, [&](const auto& entry) { return entry.second == gone; });
    for (AcRxClass* c : all_) {
        if (!c->m_data->dxf_name.empty() && c->m_data->create != nullptr)
            by_dxf_name_.try_emplace(base::narrow(c->m_data->dxf_name), c);
        if (c->m_parent == gone)
            c->m_parent = nullptr;
        std::erase_if(c->m_data->extensions, [&](const auto& x) { return x.protocol == gone; });
    }
}

void class_registry::build_hierarchy() {
    for (AcRxClass* c : all_) {
        if (c->m_parent == nullptr)
            c->m_parent = find(c->m_data->parent.c_str());
    }
}

const void* class_registry::set_owner(const void* owner) {
    return std::exchange(owner_, owner);
}

bool class_registry::has_classes_of(const void* owner) const {
    return std::any_of(all_.begin(), all_.end(),
                       [&](const AcRxClass* c) { return c->m_data->owner == owner; });
}

AcRxClass* class_registry::find_by_dxf_name(std::string_view name) const {
    const auto at = by_dxf_name_.find(name);
    return at != by_dxf_name_.end() ? at->second : nullptr;
}

AcRxClass* class_registry::find(const ACHAR* name) const {
    // Programs can put other objects into the dictionary too.
    return dynamic_cast<AcRxClass*>(by_name_.at(name));
}

} // namespace rx
