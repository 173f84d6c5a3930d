// All classes whose type can be asked for at run time, and who brought them.
#pragma once

#include "host/rx/dictionary.h"
#include "rxclass.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace rx {

// What a description holds besides the parent that every question climbs.
struct class_data {
    struct extension {
        const AcRxClass* protocol;
        AcRxObject* object;
    };

    std::wstring name{};
    std::wstring parent{};
    std::wstring dxf_name{};
    std::wstring app_name{};
    int dwg_version = 0;
    int maintenance_version = 0;
    int proxy_flags = 0;
    AcRxObject* (*create)() = nullptr;
    const void* owner = nullptr; // whoever was registering when the class came, null for the host
    std::vector<extension> extensions{};
};

class class_registry {
public:
    // Registers a class; null when the name is empty or taken.
    AcRxClass* add(class_data data);
    // Ends a class, as deleteAcRxClass says.
    void remove(AcRxClass* gone);
    // A description was destroyed, by remove or by whoever took it out of the dictionary.
    void forget(const AcRxClass* gone);
    // Gives every class that has none the parent it names, where that is registered.
    void build_hierarchy();

    // Who the classes that are registered from now on belong to; returns who it was before.
    const void* set_owner(const void* owner);
    // Whether one of its classes is still registered.
    bool has_classes_of(const void* owner) const;

    AcRxClass* find(const ACHAR* name) const;
    // The class whose objects can be made and stand in drawing files under a name, the last that was
    // registered; null when there is none.
    AcRxClass* find_by_dxf_name(std::string_view name) const;
    // Told of a class that is about to end.
    std::function<void(const AcRxClass*)> on_removing;
    AcRxDictionary& dictionary() { return by_name_; }

private:
    rx::dictionary by_name_{{.refuses_doubles = true}};
    std::vector<AcRxClass*> all_;
    std::map<std::string, AcRxClass*, std::less<>> by_dxf_name_; // names in UTF-8
    const void* owner_ = nullptr;
};

} // namespace rx
