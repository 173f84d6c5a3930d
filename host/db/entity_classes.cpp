#include "host/db/entity_classes.h"

#include "base/utf.h"
#include "dbents.h"
#include "rxdict.h"

#include <unordered_map>

namespace db {

namespace {

struct entity_row {
    std::string_view type;
    void (*init)();
    AcRxClass* (*desc)();
    // For types that several classes share: which one, by the groups. Null for the others.
    AcRxClass* (*choose)(std::string_view record);
};

constexpr entity_row rows[] = {
    {"ARC", AcDbArc::rxInit, AcDbArc::desc, nullptr},
    {"CIRCLE", AcDbCircle::rxInit, AcDbCircle::desc, nullptr},
    {"LINE", AcDbLine::rxInit, AcDbLine::desc, nullptr},
    {"POINT", AcDbPoint::rxInit, AcDbPoint::desc, nullptr},
};

} // namespace

void register_entity_classes() {
    AcDbCurve::rxInit();
    for (const entity_row& row : rows)
        row.init();
}

AcRxClass* class_of_entity(std::string_view type, std::string_view record) {
    static const std::unordered_map<std::string_view, const entity_row*> known = [] {
        std::unordered_map<std::string_view, const entity_row*> made;
        for (const entity_row& row : rows)
            made.emplace(row.type, &row);
        return made;
    }();
    if (const auto row = known.find(type); row != known.end())
        return row->second->choose != nullptr ? row->second->choose(record) : row->second->desc();
    return AcDbEntity::desc();
}

} // namespace db
