// Another object in the place of one: under its handle and id.
#include "dbmain.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/object_links.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/creation/new_entity.h"
#include "host/db/custom/custom_objects.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

#include <utility>

Acad::ErrorStatus AcDbObject::handOverTo(AcDbObject* newObject, Adesk::Boolean keepXData,
                                         Adesk::Boolean keepExtDict) {
    if (newObject == nullptr)
        return Acad::eNullObjectPointer;
    if (const Acad::ErrorStatus status = m_imp->life.ask(db::object_change::leave); status != Acad::eOk)
        return status;
    if (!newObject->isNewObject())
        return Acad::eAlreadyInDb;
    AcDbImpDatabase& database = *m_imp->database;
    const dxf::record_id record = m_imp->record;
    const bool entity = database.records().kind(record) == dxf::record_kind::entity;
    AcDbImpObject& fresh = newObject->imp();
    if ((!entity && database.records().kind(record) != dxf::record_kind::object) ||
        entity != (AcDbEntity::cast(newObject) != nullptr))
        return Acad::eIllegalEntityType;
    if (const Acad::ErrorStatus status = db::prepare_new(database, *newObject); status != Acad::eOk)
        return status;
    const std::string_view type = dxf::trimmed(fresh.groups().groups().front().value);
    if (entity && db::first_version_of(type) > database.drawing().version())
        return Acad::eIllegalEntityType;
    db::register_applications(database, fresh);

    // In front what belongs to the place, then what the new object is, then one of the two's extended data.
    if (!keepExtDict && !extensionDictionary().isNull())
        db::remove_link(m_imp->edit(), db::dictionary_braces, extensionDictionary().handle());
    db::record_text text(database);
    text.add(0, type);
    const auto& groups = m_imp->groups().groups();
    for (std::size_t i = 1; i < groups.size() && groups[i].code != 100 && groups[i].code < 1000; ++i)
        if (database.drawing().version() >= db::release_13 || groups[i].code == 5)
            text.add(groups[i].code, groups[i].value);
    const bool on_paper = m_imp->groups().integer(db::entity_place, 67).value_or(0) == 1;
    if (keepXData) {
        std::size_t data = 0;
        while (data < fresh.groups().groups().size() && fresh.groups().groups()[data].code < 1000)
            ++data;
        fresh.edit().splice(data, fresh.groups().groups().size(), {});
    }
    db::add_data(text, fresh, on_paper);
    if (keepXData)
        for (const dxf::group& group : groups)
            if (group.code >= 1000)
                text.add(group.code, group.value);

    const std::string as_new = db::text_for_copy(*m_imp);
    for (dxf::record_id part = database.records().next(record);
         part != dxf::no_record && database.records().kind(part) == dxf::record_kind::part;
         part = database.records().next(part))
        database.records().set_gone(part, true);
    auto parts = std::exchange(fresh.parts, {});
    database.records().replace(record, text.text());
    database.objects().exchange(*this, *newObject);
    m_imp->begin_new(as_new);
    for (auto& part : parts) {
        AcDbObjectId id;
        if (db::add_part(database, record, static_cast<AcDbEntity&>(*part), id) == Acad::eOk)
            part.release()->close();
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::swapIdWith(AcDbObjectId /*otherId*/, Adesk::Boolean /*swapXdata*/,
                                         Adesk::Boolean /*swapExtDict*/) {
    return Acad::eNotImplementedYet;
}
