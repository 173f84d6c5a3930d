#include "host/db/core/open_objects.h"

#include "dbsymtb.h"
#include "host/db/core/blocks.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/left_entries.h"
#include "host/db/core/notifier.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/references.h"
#include "host/db/core/rules.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"

#include <utility>
#include <vector>

db::open_objects& AcDbImpDatabase::objects() const {
    return part<db::open_objects>();
}

namespace db {

namespace {

// Entities and objects whose class nobody knows; what they are of is no class for programs to make.
class unknown_entity final : public AcDbEntity {};
class unknown_object final : public AcDbObject {};

// Where extended data begin in a record.
std::size_t data_of(dxf::padded_text text) {
    dxf::group_reader groups(text);
    dxf::raw_group group;
    std::size_t at = 0;
    while (groups.next(group) && group.code < 1000)
        at = static_cast<std::size_t>(group.end - text.data());
    return at;
}

// What of a record was changed.
void tell_apart(dxf::padded_text before, dxf::padded_text after, AcDbImpObject::happened& news) {
    const std::size_t old_data = data_of(before);
    const std::size_t new_data = data_of(after);
    news.graphics = news.graphics || before.substr(0, old_data) != after.substr(0, new_data);
    news.data = news.data || before.substr(old_data) != after.substr(new_data);
}

} // namespace

Acad::ErrorStatus open_objects::open(AcDbObject*& object, dxf::record_id record, AcDb::OpenMode mode,
                                     bool erased) {
    object = nullptr;
    AcRxClass* const type = class_of(database_, record);
    if (type == nullptr)
        return Acad::eNullObjectId;
    if (database_.records().gone(record) && !erased)
        return Acad::eWasErased;
    const bool write = mode == AcDb::kForWrite;
    const object_change way = write ? object_change::open_for_write : object_change::open_for_read;
    if (write && database_.references().is_referenced(record))
        return Acad::eIsXRefObject;
    if (write && dxf::stands_on_layer(database_.records().kind(record)) &&
        type != AcDbBlockTableRecord::desc() && database_.layers().is_locked(record))
        return Acad::eOnLockedLayer;
    if (write && !write_locked)
        return Acad::eLockViolation;
    if (const auto opened = open_.find(record); opened != open_.end()) {
        const Acad::ErrorStatus status = opened->second->imp().life.make(way);
        if (status == Acad::eOk)
            object = opened->second.get();
        return status;
    }
    std::unique_ptr<AcDbObject> made = make(type, record);
    if (!write)
        made->imp().forget(); // most is known of it without its groups
    made->imp().life.must(way);
    made->imp().news.was_gone = database_.records().gone(record);
    object = made.get();
    if (spare_.empty()) {
        open_.emplace(record, std::move(made));
    } else {
        spare_.key() = record;
        spare_.mapped() = std::move(made);
        open_.insert(std::move(spare_));
    }
    return Acad::eOk;
}

void open_objects::destroy(dxf::record_id record) {
    auto closed = open_.extract(record);
    if (closed.empty())
        return;
    closed.mapped().reset();
    spare_ = std::move(closed);
}

std::unique_ptr<AcDbObject> open_objects::make(AcRxClass* type, dxf::record_id record) {
    std::unique_ptr<AcDbObject> made;
    if (type == AcDbEntity::desc())
        made = std::make_unique<unknown_entity>();
    else if (type == AcDbObject::desc())
        made = std::make_unique<unknown_object>();
    else
        made.reset(static_cast<AcDbObject*>(type->create()));
    AcDbImpObject& imp = made->imp();
    imp.forget();
    imp.parts.clear();
    imp.database = &database_;
    imp.record = record;
    imp.life = object_state::closed;
    if (is_host_class(type))
        return made;
    const bool read = read_own_sections(*made);
    if (imp.changed())
        imp.forget(); // reading changes nothing
    return read ? std::move(made) : make(class_of_unread(database_, record), record);
}

void open_objects::close_objects_of(const AcRxClass* type) {
    for (AcDbImpDatabase* const database : AcDbImpDatabase::all()) {
        open_objects& objects = database->objects();
        std::vector<dxf::record_id> closing;
        for (const auto& [record, object] : objects.open_)
            if (object->isKindOf(type))
                closing.push_back(record);
        for (const dxf::record_id record : closing) {
            objects.commit(*objects.open_.at(record));
            objects.destroy(record);
        }
    }
}

std::unique_ptr<AcDbObject> open_objects::view(dxf::record_id record) {
    AcRxClass* const type = class_of(database_, record);
    if (type == nullptr)
        return nullptr;
    std::unique_ptr<AcDbObject> made = make(type, record);
    made->imp().life = object_state::viewed;
    return made;
}

void open_objects::commit(AcDbObject& object) {
    AcDbImpObject& imp = object.imp();
    if ((imp.touched || imp.changed()) && !is_host_class(object.isA()))
        write_own_sections(object);
    imp.touched = false;
    settle_dictionary(imp);
    if (!imp.changed())
        return;
    table_kind kind{};
    const bool entry = database_.names().is_entry(imp.record, kind);
    const std::string before(entry ? dxf::value_of(database_.records().text(imp.record), 2)
                                   : std::string_view());
    const bool implied = database_.records().implied(imp.record);
    const dxf::padded_text text_before = database_.records().text(imp.record);
    const bool was_heard_of = database_.notifier().heard_of(imp.record);
    if (imp.write()) {
        imp.news.modified = true;
        if (was_heard_of || database_.notifier().heard_of(imp.record))
            tell_apart(text_before, database_.records().text(imp.record), imp.news);
        if (implied || database_.records().type(imp.record) == dxf::type_layer)
            entry_changed(database_, imp.record, implied);
        const std::string after(entry ? dxf::value_of(database_.records().text(imp.record), 2)
                                      : std::string_view());
        if (after != before)
            follow_name(database_, kind, before, after);
    }
    imp.forget();
}

Acad::ErrorStatus open_objects::close(AcDbObject& object, bool keep_changes) {
    AcDbImpObject& imp = object.imp();
    const dxf::record_id record = imp.record;
    const object_change ending = keep_changes ? object_change::close : object_change::cancel;
    if (const Acad::ErrorStatus refusal = imp.life.ask(ending); refusal != Acad::eOk)
        return refusal;
    if (keep_changes && imp.life.stays_open())
        return Acad::eOk;
    if (!imp.life.is_written()) {
        imp.life.must(ending);
        if (imp.life.is_closed())
            destroy(record);
        return Acad::eOk;
    }
    if (keep_changes) {
        commit(object);
    } else {
        imp.forget();
        if (database_.records().gone(record) != imp.news.was_gone)
            set_erased(record, imp.news.was_gone);
        imp.news.modified = false;
        if (imp.news.opened_for_modify)
            database_.notifier().cancelled(object);
    }
    imp.life.keep(false);
    const bool news = imp.news.made || imp.news.opened_for_modify;
    tell_closing(object, ending);
    if (imp.life.is_closed())
        destroy(record);
    if (news)
        database_.notifier().closed(record);
    return Acad::eOk;
}

void open_objects::settle(AcDbObject& object) {
    commit(object);
    tell_closing(object, object_change::downgrade);
    object.imp().life.must(object_change::open_for_read);
}

// Ends an opening for write and tells what happened; until all have heard of it nobody can change the object
// again.
void open_objects::tell_closing(AcDbObject& object, object_change ending) {
    AcDbImpObject& imp = object.imp();
    imp.life.must(ending);
    database_.notifier().closing(object);
    imp.life.must(object_change::told);
    imp.news = {};
    imp.news.was_gone = database_.records().gone(imp.record);
}

void open_objects::about_to_modify(AcDbImpObject& imp) {
    imp.news.opened_for_modify = true;
    if (!database_.notifier().heard())
        return;
    // Views, and objects that are being read, are nobody's business.
    const auto opened = open_.find(imp.record);
    if (opened != open_.end() && &opened->second->imp() == &imp)
        database_.notifier().opened_for_modify(*opened->second);
}

void open_objects::content_changed(dxf::record_id container) {
    AcDbImpObject* const imp = opened(container);
    if (imp == nullptr || !imp->life.is_written())
        return;
    imp->about_to_modify();
    imp->news.modified = imp->news.graphics = true;
}

void open_objects::appended(AcDbObject& object) {
    AcDbImpObject& imp = object.imp();
    if (imp.reactors != nullptr)
        database_.notifier().of_object(imp.record).take(*std::exchange(imp.reactors, nullptr));
    if (!database_.notifier().of_database().empty() || database_.notifier().heard_of(imp.record)) {
        commit(object); // what its class adds when it joins a drawing is no change of it
        imp.news = {};
        imp.life.must(object_change::lend);
        database_.notifier().appended(object);
        imp.life.must(object_change::take_back);
    }
    imp.news.made = true;
}

void open_objects::adopt(AcDbObject& object, dxf::record_id record) {
    AcDbImpObject& imp = object.imp();
    imp.forget();
    imp.database = &database_;
    imp.record = record;
    imp.life.must(object_change::join);
    imp.touched = false;
    imp.news = {};
    open_.emplace(record, std::unique_ptr<AcDbObject>(&object));
}

void open_objects::exchange(AcDbObject& old, AcDbObject& fresh) {
    AcDbImpObject& imp = old.imp();
    const dxf::record_id record = std::exchange(imp.record, dxf::no_record);
    imp.database = nullptr;
    imp.life.must(object_change::leave);
    static_cast<void>(open_.extract(record).mapped().release()); // the caller owns it
    adopt(fresh, record);
}

AcDbObject* open_objects::open_object(dxf::record_id record) const {
    const auto at = open_.find(record);
    return at != open_.end() ? at->second.get() : nullptr;
}

AcDbImpObject* open_objects::opened(dxf::record_id record) const {
    AcDbObject* const object = open_object(record);
    return object != nullptr ? &object->imp() : nullptr;
}

std::size_t open_objects::close_all() {
    std::size_t left = open_.size();
    for (const AcDbImpDatabase* const other : AcDbImpDatabase::all())
        if (other->references().host() == &database_)
            left += other->objects().close_all();
    std::vector<dxf::record_id> closing;
    for (const auto& [record, object] : open_)
        if (!object->imp().life.is_notifying())
            closing.push_back(record);
    for (const dxf::record_id record : closing) {
        AcDbObject* const object = open_object(record);
        if (object == nullptr) // somebody who heard of another one closed it
            continue;
        object->imp().life.keep(false);
        if (object->imp().life.make(object_change::seize) ==
            Acad::eOk) // one that was read has nothing to tell
            close(*object, true);
    }
    settle_dictionaries(database_);
    return left;
}

void open_objects::set_erased(dxf::record_id record, bool erased) {
    if (!database_.records().set_gone(record, erased))
        return;
    if (erased && database_.records().kind(record) == dxf::record_kind::object)
        leave_dictionary(database_, record);
    if (class_of(database_, record) == AcDbBlockTableRecord::desc())
        database_.blocks().set_contents_erased(record, erased);
    if (database_.records().kind(record) != dxf::record_kind::entity)
        return;
    for (dxf::record_id part = database_.records().next(record);
         part != dxf::no_record && database_.records().kind(part) == dxf::record_kind::part;
         part = database_.records().next(part))
        database_.records().set_gone(part, erased);
}

} // namespace db

void AcDbImpObject::tell_about_to_modify() {
    database->objects().about_to_modify(*this);
}
