#include "host/db/object_links.h"

#include "dbdict.h"
#include "host/db/custom_objects.h"
#include "host/db/format_versions.h"
#include "host/db/imp_database.h"
#include "host/db/imp_object.h"
#include "host/db/new_entity.h"
#include "host/db/new_object.h"
#include "host/db/properties.h"
#include "host/db/record_text.h"
#include "host/db/symbol_entry.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <utility>

namespace db {

namespace {

// Where braces stand: [first, last), both 102 included; first is where they would be put when there are none,
// behind the handle, the extension dictionary in front of reactors.
struct extent {
    std::size_t first, last;
    bool found() const { return first != last; }
};

extent find_braces(const dxf::group_list& list, std::string_view braces) {
    const auto& groups = list.groups();
    std::size_t put = 0;
    for (std::size_t i = 0; i < groups.size() && groups[i].code != 100 && groups[i].code < 1000; ++i) {
        if (groups[i].code == 0 || groups[i].code == 5 || groups[i].code == 105)
            put = i + 1;
        if (groups[i].code != 102 || !groups[i].value.starts_with('{'))
            continue;
        std::size_t last = i + 1;
        while (last < groups.size() && groups[last].code != 102)
            ++last;
        last = std::min(last + 1, groups.size());
        if (groups[i].value == braces)
            return {i, last};
        if (braces == reactor_braces)
            put = last;
        i = last - 1;
    }
    return {put, put};
}

std::size_t find_handle(const dxf::group_list& list, const extent& in, std::uint64_t handle) {
    const auto& groups = list.groups();
    for (std::size_t i = in.first; i < in.last; ++i)
        if (groups[i].code != 102 && dxf::parse_handle(groups[i].value) == handle)
            return i;
    return in.last;
}

} // namespace

std::vector<std::uint64_t> links(const dxf::group_list& list, std::string_view braces) {
    const extent in = find_braces(list, braces);
    std::vector<std::uint64_t> handles;
    for (std::size_t i = in.first; i < in.last; ++i)
        if (list.groups()[i].code != 102)
            handles.push_back(dxf::parse_handle(list.groups()[i].value));
    return handles;
}

bool has_link(const dxf::group_list& groups, std::string_view braces, std::uint64_t handle) {
    const extent in = find_braces(groups, braces);
    return find_handle(groups, in, handle) != in.last;
}

void add_link(dxf::group_list& groups, std::string_view braces, int code, std::uint64_t handle) {
    const extent in = find_braces(groups, braces);
    std::vector<dxf::group_list::fresh_group> fresh = {{code, handle_text(handle)}};
    std::size_t at = in.last - 1;
    if (!in.found()) {
        fresh.insert(fresh.begin(), {102, std::string(braces)});
        fresh.push_back({102, "}"});
        at = in.first;
    }
    groups.splice(at, at, fresh);
}

bool remove_link(dxf::group_list& groups, std::string_view braces, std::uint64_t handle) {
    const extent in = find_braces(groups, braces);
    const std::size_t at = find_handle(groups, in, handle);
    if (at == in.last)
        return false;
    const bool alone = in.last - in.first == 3;
    groups.splice(alone ? in.first : at, alone ? in.last : at + 1, {});
    return true;
}

void set_owner(dxf::group_list& list, std::uint64_t handle) {
    const auto& groups = list.groups();
    const dxf::group_list::fresh_group owner[] = {{330, handle_text(handle)}};
    bool in_braces = false;
    std::size_t put = 0;
    for (std::size_t i = 0; i < groups.size() && groups[i].code != 100 && groups[i].code < 1000; ++i) {
        if (groups[i].code == 102)
            in_braces = groups[i].value.starts_with('{');
        if (groups[i].code == 330 && !in_braces) {
            if (dxf::parse_handle(groups[i].value) != handle)
                list.splice(i, i + 1, owner);
            return;
        }
        put = i + 1;
    }
    list.splice(put, put, owner);
}

} // namespace db

namespace {

// Whether a drawing keeps such links; R12 has no place for them.
Acad::ErrorStatus may_link(const AcDbObject& object) {
    if (object.imp().database == nullptr)
        return Acad::eNoDatabase;
    if (!object.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    return object.imp().database->drawing().version() >= db::release_13 ? Acad::eOk : Acad::eNotApplicable;
}

} // namespace

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
    if (const Acad::ErrorStatus status = may_link(*this); status != Acad::eOk)
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

Acad::ErrorStatus AcDbObject::releaseExtensionDictionary() {
    if (const Acad::ErrorStatus status = may_link(*this); status != Acad::eOk)
        return status;
    AcDbDictionary* dictionary = nullptr;
    const AcDbObjectId id = extensionDictionary();
    if (id.isNull())
        return Acad::eKeyNotFound;
    if (const auto status = acdbOpenObject(dictionary, id, AcDb::kForWrite); status != Acad::eOk)
        return status;
    const bool empty = dictionary->numEntries() == 0;
    if (empty)
        dictionary->erase();
    dictionary->close();
    if (!empty)
        return Acad::eContainerNotEmpty;
    db::remove_link(m_imp->edit(), db::dictionary_braces, id.handle());
    return Acad::eOk;
}

bool AcDbObject::hasPersistentReactor(AcDbObjectId id) const {
    assertReadEnabled();
    return !id.isNull() && db::has_link(m_imp->groups(), db::reactor_braces, id.handle());
}

Acad::ErrorStatus AcDbObject::addPersistentReactor(AcDbObjectId id) {
    if (const Acad::ErrorStatus status = may_link(*this); status != Acad::eOk)
        return status;
    if (m_imp->database->record(id) == dxf::no_record)
        return Acad::eNullObjectId;
    if (!hasPersistentReactor(id))
        db::add_link(m_imp->edit(), db::reactor_braces, 330, id.handle());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::removePersistentReactor(AcDbObjectId id) {
    if (const Acad::ErrorStatus status = may_link(*this); status != Acad::eOk)
        return status;
    if (!hasPersistentReactor(id))
        return Acad::eKeyNotFound;
    db::remove_link(m_imp->edit(), db::reactor_braces, id.handle());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::setOwnerId(AcDbObjectId owner) {
    if (const Acad::ErrorStatus status = may_link(*this); status != Acad::eOk)
        return status;
    if (m_imp->database->record(owner) == dxf::no_record)
        return Acad::eWrongDatabase;
    db::set_owner(m_imp->edit(), owner.handle());
    return Acad::eOk;
}

// ---- another object in the place of one

Acad::ErrorStatus AcDbObject::handOverTo(AcDbObject* newObject, Adesk::Boolean keepXData,
                                         Adesk::Boolean keepExtDict) {
    if (newObject == nullptr)
        return Acad::eNullObjectPointer;
    if (m_imp->database == nullptr)
        return Acad::eNoDatabase;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
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
    database.exchange(*this, *newObject);
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
