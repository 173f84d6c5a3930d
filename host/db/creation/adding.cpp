// Where the interface adds a new object to a container: what is open for write takes it.
#include "dbdict.h"
#include "dbsymtb.h"
#include "host/db/core/dictionary_index.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/object_links.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/new_block.h"
#include "host/db/creation/new_entity.h"
#include "host/db/creation/new_object.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& id, AcDbObject* object) {
    if (object == nullptr)
        return Acad::eNullObjectPointer;
    if (!m_imp->has_drawing())
        return Acad::eNoDatabase;
    if (!object->isNewObject())
        return Acad::eAlreadyInDb;
    return db::add_object(*m_imp, *object, 0, false, id);
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* record) {
    if (record == nullptr)
        return Acad::eNullObjectPointer;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!record->isNewObject())
        return Acad::eAlreadyInDb;
    AcDbImpDatabase& database = *imp().database;
    const db::table_kind kind = database.names().kind_of_table(imp().record);
    if (kind != db::table_kind::block)
        return db::add_entry(database, kind, *record, id);
    auto* const block = AcDbBlockTableRecord::cast(record);
    return block != nullptr ? db::add_block(database, *block, id) : Acad::eNotThatKindOfClass;
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
    if (entity == nullptr)
        return Acad::eNullObjectPointer;
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!entity->isNewObject())
        return Acad::eAlreadyInDb;
    return db::add_entity(*imp().database, imp().record, *entity, id);
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
    if (const Acad::ErrorStatus status = db::may_link(*this); status != Acad::eOk)
        return status;
    if (!extensionDictionary().isNull())
        return Acad::eAlreadyInDb;
    auto dictionary = std::make_unique<AcDbDictionary>();
    dictionary->setTreatElementsAsHard(true);
    AcDbObjectId id;
    const std::uint64_t own = m_imp->database->records().handle(m_imp->record);
    if (const auto status = db::add_object(*m_imp->database, *dictionary, own, false, id);
        status != Acad::eOk)
        return status;
    dictionary.release()->close(); // the database's now
    const std::uint64_t handle = id.handle();
    for (const dxf::group& group : m_imp->groups().groups()) // one that was erased may be named still
        if (group.code == 360 &&
            db::has_link(m_imp->groups(), db::dictionary_braces, dxf::parse_handle(group.value))) {
            db::remove_link(m_imp->edit(), db::dictionary_braces, dxf::parse_handle(group.value));
            break;
        }
    db::add_link(m_imp->edit(), db::dictionary_braces, 360, handle);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id) {
    if (!db::is_dictionary_key(key))
        return Acad::eInvalidKey;
    if (object == nullptr)
        return Acad::eNullObjectPointer;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    if (!object->isNewObject())
        return Acad::eAlreadyInDb;
    AcDbImpDatabase& database = *imp().database;
    if (const auto status =
            db::add_object(database, *object, database.records().handle(imp().record), true, id);
        status != Acad::eOk)
        return status;

    Index& entries = index();
    const db::dictionary_entry* const old = entries.find(key);
    dxf::group_list& groups = imp().edit();
    std::vector<dxf::group_list::fresh_group> pair = {{3, imp().encode(key)}, {entries.hard ? 360 : 350, {}}};
    pair[1].value = db::handle_text(id.handle());
    if (old != nullptr) {
        const db::dictionary_entry replaced = *old;
        pair[1].code = groups.groups()[replaced.at + 1].code;
        groups.splice(replaced.at, replaced.at + 2, pair);
        database.objects().set_erased(replaced.object, true);
        return Acad::eOk;
    }
    // Behind the others, in front of what a dictionary of another class or an application adds.
    std::size_t end = groups.groups().size();
    while (end > 0 && (groups.groups()[end - 1].code >= 1000))
        --end;
    for (std::size_t i = entries.all.empty() ? 0 : entries.all.back().at; i < end; ++i)
        if (groups.groups()[i].code == 100 &&
            dxf::trimmed(groups.groups()[i].value) != db::dictionary_place.marker)
            end = i;
    groups.splice(end, end, pair);
    entries.add({end, key, database.record(id)});
    entries.revision = imp().revision();
    return Acad::eOk;
}
