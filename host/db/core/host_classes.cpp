#include "host/db/core/host_classes.h"

#include "dbmain.h"
#include "host/rx/runtime.h"

#include <memory>
#include <unordered_set>

namespace db {

namespace {

std::unordered_set<const AcRxObject*>& host_classes() {
    static std::unordered_set<const AcRxObject*> classes;
    return classes;
}

std::unordered_set<const AcRxObject*> all_classes() {
    std::unordered_set<const AcRxObject*> classes;
    const std::unique_ptr<AcRxDictionaryIterator> each(
        rx::runtime::instance().classes.dictionary().newIterator());
    for (; !each->done(); each->next())
        classes.insert(each->object());
    return classes;
}

} // namespace

void register_host_classes(void (*register_all)()) {
    const auto before = all_classes();
    register_all();
    for (const AcRxObject* const type : all_classes())
        if (!before.contains(type))
            host_classes().insert(type);
}

bool is_host_class(const AcRxClass* type) {
    return host_classes().contains(type);
}

bool has_application_classes() {
    static Adesk::UInt32 counted = 0;
    static bool found = false;
    if (const Adesk::UInt32 now = rx::runtime::instance().classes.dictionary().numEntries(); now != counted) {
        counted = now;
        found = false;
        for (const AcRxObject* const each : all_classes()) {
            const auto* const type = AcRxClass::cast(each);
            found =
                found || (type != nullptr && type->isDerivedFrom(AcDbObject::desc()) && !is_host_class(type));
        }
    }
    return found;
}

AcRxClass* application_class(std::string_view type, bool entity) {
    AcRxClass* const named = rx::runtime::instance().classes.find_by_dxf_name(type);
    if (named == nullptr || is_host_class(named) || !named->isDerivedFrom(AcDbObject::desc()))
        return nullptr;
    return named->isDerivedFrom(AcDbEntity::desc()) == entity ? named : nullptr;
}

} // namespace db
