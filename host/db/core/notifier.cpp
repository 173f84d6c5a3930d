#include "host/db/core/notifier.h"

#include "base/utf.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/object_links.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"
#include "host/dxf/record_header.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbObjectReactor, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbEntityReactor, AcDbObjectReactor)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbDatabaseReactor, AcRxObject)

// ---- reactors hear nothing unless they say so

AcDbObjectReactor::~AcDbObjectReactor() = default;
void AcDbObjectReactor::cancelled(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::copied(const AcDbObject* /*object*/, const AcDbObject* /*newObject*/) {
}
void AcDbObjectReactor::erased(const AcDbObject* /*object*/, Adesk::Boolean /*erasing*/) {
}
void AcDbObjectReactor::goodbye(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::openedForModify(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::modified(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::modifyUndone(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::modifiedXData(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::unappended(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::reappended(const AcDbObject* /*object*/) {
}
void AcDbObjectReactor::objectClosed(const AcDbObjectId /*objectId*/) {
}

AcDbEntityReactor::~AcDbEntityReactor() = default;
void AcDbEntityReactor::modifiedGraphics(const AcDbEntity* /*entity*/) {
}

AcDbDatabaseReactor::~AcDbDatabaseReactor() = default;
void AcDbDatabaseReactor::objectAppended(const AcDbDatabase* /*database*/, const AcDbObject* /*object*/) {
}
void AcDbDatabaseReactor::objectUnAppended(const AcDbDatabase* /*database*/, const AcDbObject* /*object*/) {
}
void AcDbDatabaseReactor::objectReAppended(const AcDbDatabase* /*database*/, const AcDbObject* /*object*/) {
}
void AcDbDatabaseReactor::objectOpenedForModify(const AcDbDatabase* /*database*/,
                                                const AcDbObject* /*object*/) {
}
void AcDbDatabaseReactor::objectModified(const AcDbDatabase* /*database*/, const AcDbObject* /*object*/) {
}
void AcDbDatabaseReactor::objectErased(const AcDbDatabase* /*database*/, const AcDbObject* /*object*/,
                                       Adesk::Boolean /*erased*/) {
}
void AcDbDatabaseReactor::headerSysVarWillChange(const AcDbDatabase* /*database*/, const ACHAR* /*name*/) {
}
void AcDbDatabaseReactor::headerSysVarChanged(const AcDbDatabase* /*database*/, const ACHAR* /*name*/,
                                              Adesk::Boolean /*success*/) {
}
void AcDbDatabaseReactor::goodbye(const AcDbDatabase* /*database*/) {
}

void AcDbObject::cancelled(const AcDbObject* /*object*/) {
}
void AcDbObject::copied(const AcDbObject* /*object*/, const AcDbObject* /*newObject*/) {
}
void AcDbObject::erased(const AcDbObject* /*object*/, Adesk::Boolean /*erasing*/) {
}
void AcDbObject::goodbye(const AcDbObject* /*object*/) {
}
void AcDbObject::openedForModify(const AcDbObject* /*object*/) {
}
void AcDbObject::modified(const AcDbObject* /*object*/) {
}
void AcDbObject::modifyUndone(const AcDbObject* /*object*/) {
}
void AcDbObject::modifiedXData(const AcDbObject* /*object*/) {
}
void AcDbObject::unappended(const AcDbObject* /*object*/) {
}
void AcDbObject::reappended(const AcDbObject* /*object*/) {
}
void AcDbObject::objectClosed(const AcDbObjectId /*objectId*/) {
}
void AcDbObject::modifiedGraphics(const AcDbEntity* /*entity*/) {
}

namespace {

Acad::ErrorStatus added(bool added, const void* reactor) {
    return added ? Acad::eOk : reactor == nullptr ? Acad::eNullObjectPointer : Acad::eDuplicateKey;
}

} // namespace

Acad::ErrorStatus AcDbObject::addReactor(AcDbObjectReactor* reactor) const {
    assertReadEnabled();
    if (reactor == nullptr)
        return Acad::eNullObjectPointer;
    if (m_imp->database != nullptr)
        return added(m_imp->database->notifier().of_object(m_imp->record).add(reactor), reactor);
    if (m_imp->reactors == nullptr)
        m_imp->reactors = std::make_unique<rx::reactor_list<AcDbObjectReactor>>();
    return added(m_imp->reactors->add(reactor), reactor);
}

Acad::ErrorStatus AcDbObject::removeReactor(AcDbObjectReactor* reactor) const {
    assertReadEnabled();
    const bool removed = m_imp->database != nullptr
                             ? m_imp->database->notifier().remove(m_imp->record, reactor)
                             : m_imp->reactors != nullptr && m_imp->reactors->remove(reactor);
    return removed ? Acad::eOk : Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbDatabase::addReactor(AcDbDatabaseReactor* reactor) const {
    return added(m_imp->notifier().of_database().add(reactor), reactor);
}

Acad::ErrorStatus AcDbDatabase::removeReactor(AcDbDatabaseReactor* reactor) const {
    return m_imp->notifier().of_database().remove(reactor) ? Acad::eOk : Acad::eKeyNotFound;
}

db::notifier& AcDbImpDatabase::notifier() const {
    return part<db::notifier>();
}

namespace db {

bool notifier::heard() const {
    return !of_database_.empty() || !of_objects_.empty() || has_application_classes();
}

bool notifier::heard_of(dxf::record_id record) const {
    return (!of_objects_.empty() && of_objects_.contains(record)) ||
           (has_application_classes() && names_reactors(record));
}

// It is asked several times while one record changes. Texts never change or move.
bool notifier::names_reactors(dxf::record_id record) const {
    const std::string_view text = database_.records().text(record);
    if (text.data() != asked_text_) {
        asked_text_ = text.data();
        has_reactors_ = text.find(reactor_braces) != std::string_view::npos;
    }
    return has_reactors_;
}

rx::reactor_list<AcDbObjectReactor>* notifier::find(dxf::record_id record) {
    const auto at = of_objects_.find(record);
    return at != of_objects_.end() ? &at->second : nullptr;
}

bool notifier::remove(dxf::record_id record, AcDbObjectReactor* reactor) {
    rx::reactor_list<AcDbObjectReactor>* const own = find(record);
    if (own == nullptr || !own->remove(reactor))
        return false;
    if (own->empty())
        of_objects_.erase(record);
    return true;
}

// The objects of applications among those whose handles stand in the object's record. Each is opened for the
// time of the call, unless it is open.
void notifier::tell_persistent(const AcDbImpObject& object, const std::function<void(AcDbObject&)>& news) {
    // Most name none; then their groups need not be read again.
    if (!object.changed() && !names_reactors(object.record))
        return;
    std::vector<dxf::record_id> reactors;
    for (const std::uint64_t handle : links(object.groups(), reactor_braces)) {
        const dxf::record_id record = database_.records().find(handle);
        if (record != dxf::no_record && record != object.record && !database_.records().gone(record) &&
            !is_host_class(db::class_of(database_, record)))
            reactors.push_back(record);
    }
    for (const dxf::record_id record : reactors) {
        AcDbObject* reactor = database_.objects().open_object(record);
        const bool opens = reactor == nullptr;
        if (opens && database_.objects().open(reactor, record, AcDb::kForNotify, false) != Acad::eOk)
            continue;
        rx::call_reactor([&] { news(*reactor); });
        if (opens && database_.objects().open_object(record) == reactor)
            database_.objects().close(*reactor, true);
    }
}

template<class News>
void notifier::tell_of_object(const AcDbObject& object, News news) {
    if (auto* const own = find(object.imp().record))
        own->tell(news);
    if (has_application_classes())
        tell_persistent(object.imp(), news);
}

template<class News>
void notifier::tell_of_database(News news) {
    of_database_.tell([&](AcDbDatabaseReactor& reactor) { news(reactor, &database_.self()); });
}

void notifier::opened_for_modify(AcDbObject& object) {
    tell_of_object(object, [&](auto& reactor) { reactor.openedForModify(&object); });
    tell_of_database([&](auto& reactor, const AcDbDatabase* database) {
        reactor.objectOpenedForModify(database, &object);
    });
}

void notifier::copied(const AcDbObject& object, const AcDbObject& copy) {
    if (heard())
        tell_of_object(object, [&](auto& reactor) { reactor.copied(&object, &copy); });
}

void notifier::cancelled(const AcDbObject& object) {
    if (heard())
        tell_of_object(object, [&](auto& reactor) { reactor.cancelled(&object); });
}

void notifier::appended(AcDbObject& object) {
    tell_of_database(
        [&](auto& reactor, const AcDbDatabase* database) { reactor.objectAppended(database, &object); });
}

void notifier::tell_modified(const AcDbObject& object, bool data, bool graphics) {
    tell_of_object(object, [&](auto& reactor) { reactor.modified(&object); });
    if (data)
        tell_of_object(object, [&](auto& reactor) { reactor.modifiedXData(&object); });
    if (const AcDbEntity* const entity = AcDbEntity::cast(&object); entity != nullptr && graphics)
        tell_of_object(object, [&](auto& reactor) {
            if constexpr (std::is_same_v<decltype(reactor), AcDbObjectReactor&>) {
                if (auto* const hears = dynamic_cast<AcDbEntityReactor*>(&reactor))
                    hears->modifiedGraphics(entity);
            } else {
                reactor.modifiedGraphics(entity);
            }
        });
    tell_of_database(
        [&](auto& reactor, const AcDbDatabase* database) { reactor.objectModified(database, &object); });
}

void notifier::tell_erased(const AcDbObject& object, bool erased) {
    tell_of_object(object, [&](auto& reactor) { reactor.erased(&object, erased); });
    tell_of_database([&](auto& reactor, const AcDbDatabase* database) {
        reactor.objectErased(database, &object, erased);
    });
}

void notifier::closing(AcDbObject& object) {
    if (!heard())
        return;
    const AcDbImpObject::happened news = object.imp().news;
    if (news.modified)
        tell_modified(object, news.data, news.graphics);
    if (object.isErased() != news.was_gone)
        tell_erased(object, object.isErased());
}

void notifier::closed(dxf::record_id record) {
    if (!heard_of(record))
        return;
    const AcDbObjectId id = database_.id(record);
    if (auto* const own = find(record))
        own->tell([&](AcDbObjectReactor& reactor) { reactor.objectClosed(id); });
    if (!has_application_classes())
        return;
    if (const auto view = database_.objects().view(record))
        tell_persistent(view->imp(), [&](AcDbObject& reactor) { reactor.objectClosed(id); });
}

void notifier::replayed(std::span<const dxf::replay> changes) {
    if (!heard())
        return;
    for (const dxf::replay& change : changes) {
        const bool gone = database_.records().gone(change.id);
        AcDbObject* object = nullptr;
        if (db::class_of(database_, change.id) == nullptr ||
            database_.objects().open(object, change.id, AcDb::kForRead, true) != Acad::eOk)
            continue;
        // Where it is told of already, who does that goes on afterwards.
        const bool tells = object->imp().life.make(object_change::tell) == Acad::eOk;
        if (change.appended && gone != change.was_gone) {
            tell_of_object(*object, [&](auto& reactor) {
                gone ? reactor.unappended(object) : reactor.reappended(object);
            });
            tell_of_database([&](auto& reactor, const AcDbDatabase* database) {
                gone ? reactor.objectUnAppended(database, object)
                     : reactor.objectReAppended(database, object);
            });
        } else {
            if (change.text) {
                tell_of_object(*object, [&](auto& reactor) { reactor.modifyUndone(object); });
                tell_modified(*object, true, true);
            }
            if (gone != change.was_gone)
                tell_erased(*object, gone);
        }
        if (tells) {
            object->imp().life.must(object_change::told);
            object->imp().life.must(object_change::open_for_read);
        }
        database_.objects().close(*object, true);
        closed(change.id);
    }
}

bool notifier::set_header_value(std::string_view variable, int code, std::string_view value) {
    const std::wstring name = base::widen(variable.substr(1));
    of_database_.tell([&](AcDbDatabaseReactor& reactor) {
        reactor.headerSysVarWillChange(&database_.self(), name.c_str());
    });
    const bool set = database_.drawing().set_header_value(variable, code, value);
    of_database_.tell([&](AcDbDatabaseReactor& reactor) {
        reactor.headerSysVarChanged(&database_.self(), name.c_str(), set);
    });
    return set;
}

void notifier::header_value_set_again(std::string_view variable) {
    const std::wstring name = base::widen(variable.substr(1));
    of_database_.tell([&](AcDbDatabaseReactor& reactor) {
        reactor.headerSysVarWillChange(&database_.self(), name.c_str());
    });
    of_database_.tell([&](AcDbDatabaseReactor& reactor) {
        reactor.headerSysVarChanged(&database_.self(), name.c_str(), true);
    });
}

void notifier::goodbye() {
    std::vector<dxf::record_id> heard_alone;
    for (const auto& [record, reactors] : of_objects_)
        heard_alone.push_back(record);
    for (const dxf::record_id record : heard_alone)
        if (auto* const own = find(record))
            if (const auto object = database_.objects().view(record))
                own->tell([&](AcDbObjectReactor& reactor) { reactor.goodbye(object.get()); });
    of_database_.tell([&](AcDbDatabaseReactor& reactor) { reactor.goodbye(&database_.self()); });
}

} // namespace db
