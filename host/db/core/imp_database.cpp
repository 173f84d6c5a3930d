#include "host/db/core/imp_database.h"

#include "base/case_fold.h"
#include "dbdict.h"
#include "dbents.h"
#include "dblayout.h"
#include "dbproxy.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"
#include "host/db/core/entity_classes.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/notifier.h"
#include "host/db/core/references.h"
#include "host/db/core/rules.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"
#include "sys/folders.h"

#include <algorithm>

namespace {

struct table_row {
    std::string_view dxf_name;
    AcRxClass* (*table)();
    std::string_view record_name;
    AcRxClass* (*record)();
};

// In the order of db::table_kind.
constexpr table_row tables[db::table_kinds] = {
    {"BLOCK_RECORD", AcDbBlockTable::desc, "BLOCK_RECORD", AcDbBlockTableRecord::desc},
    {"LAYER", AcDbLayerTable::desc, "LAYER", AcDbLayerTableRecord::desc},
    {"STYLE", AcDbTextStyleTable::desc, "STYLE", AcDbTextStyleTableRecord::desc},
    {"LTYPE", AcDbLinetypeTable::desc, "LTYPE", AcDbLinetypeTableRecord::desc},
    {"VIEW", AcDbViewTable::desc, "VIEW", AcDbViewTableRecord::desc},
    {"UCS", AcDbUCSTable::desc, "UCS", AcDbUCSTableRecord::desc},
    {"VPORT", AcDbViewportTable::desc, "VPORT", AcDbViewportTableRecord::desc},
    {"APPID", AcDbRegAppTable::desc, "APPID", AcDbRegAppTableRecord::desc},
    {"DIMSTYLE", AcDbDimStyleTable::desc, "DIMSTYLE", AcDbDimStyleTableRecord::desc},
};

const table_row& row(db::table_kind kind) {
    return tables[static_cast<std::size_t>(kind)];
}

// Every database that lives, by the number in its ids; numbers are never given twice.
std::vector<AcDbImpDatabase*>& living() {
    static std::vector<AcDbImpDatabase*> databases;
    return databases;
}

constexpr int most_readers = 256;

// Where extended data begin in a record.
std::size_t data_of(std::string_view text) {
    dxf::group_reader groups(text);
    dxf::raw_group group;
    std::size_t at = 0;
    while (groups.next(group) && group.code < 1000)
        at = static_cast<std::size_t>(group.end - text.data());
    return at;
}

// What of a record was changed.
void tell_apart(std::string_view before, std::string_view after, AcDbImpObject::happened& news) {
    const std::size_t old_data = data_of(before);
    const std::size_t new_data = data_of(after);
    news.graphics = news.graphics || before.substr(0, old_data) != after.substr(0, new_data);
    news.data = news.data || before.substr(old_data) != after.substr(new_data);
}

// Takes the entries with these handles out of a dictionary's groups.
void drop_entries(dxf::group_list& list, const std::unordered_set<std::uint64_t>& handles) {
    const auto& groups = list.groups();
    const auto goes = [&](std::size_t key) {
        return groups[key].code == 3 && (groups[key + 1].code == 350 || groups[key + 1].code == 360) &&
               handles.contains(dxf::parse_handle(groups[key + 1].value));
    };
    for (std::size_t end = groups.size(); end >= 2;) {
        std::size_t first = end;
        while (first >= 2 && goes(first - 2))
            first -= 2;
        if (first != end)
            list.splice(first, end, {});
        end = first == end ? end - 1 : first;
    }
}

} // namespace

AcDbImpDatabase::AcDbImpDatabase(AcDbDatabase& self)
    : self_(self), references_(std::make_unique<db::references>(*this)),
      notifier_(std::make_unique<db::notifier>(*this)) {
    living().push_back(this);
    serial_ = static_cast<std::uint32_t>(living().size());
    implied_tables_.fill(dxf::no_record);
}

AcDbImpDatabase::~AcDbImpDatabase() {
    living()[serial_ - 1] = nullptr;
    while (!parts_.empty())
        parts_.pop_back(); // they may look at the drawing to the end
}

std::vector<AcDbImpDatabase*> AcDbImpDatabase::all() {
    std::vector<AcDbImpDatabase*> there = living();
    std::erase(there, nullptr);
    return there;
}

bool AcDbImpDatabase::is_alive(const AcDbImpDatabase* database) {
    return std::find(living().begin(), living().end(), database) != living().end();
}

std::size_t AcDbImpDatabase::next_part() {
    static std::size_t next = 0;
    return next++;
}

AcDbImpDatabase::reading& AcDbImpDatabase::how_to_read() {
    static reading manner;
    return manner;
}

void AcDbImpDatabase::tell_of_file(const std::wstring& path, const std::vector<std::wstring>& messages) {
    if (!how_to_read().tell)
        return;
    for (const std::wstring& message : messages) {
        std::wstring line = path;
        line.append(L": ").append(message);
        how_to_read().tell(line);
    }
}

base::result<void> AcDbImpDatabase::read(const std::wstring& path) {
    auto opened = dxf::drawing::open(sys::to_path(path), how_to_read().encoding);
    if (!opened)
        return base::failure{opened.error()};
    set_drawing(std::move(*opened));
    file_name = path;
    tell_of_file(path, drawing_->messages());
    return {};
}

void AcDbImpDatabase::set_drawing(std::unique_ptr<dxf::drawing> drawing) {
    drawing_ = std::move(drawing);
    db::drawing_came(*this);
}

// ---- ids: the database's number above, the record's number plus one below

AcDbObjectId AcDbImpDatabase::id(dxf::record_id record) const {
    AcDbObjectId id;
    if (record != dxf::no_record)
        id.setFromOldId(
            static_cast<Adesk::LongPtr>(static_cast<Adesk::UInt64>(serial_) << 32 | (record + 1)));
    return id;
}

AcDbImpDatabase* AcDbImpDatabase::find(AcDbObjectId id, dxf::record_id& record) {
    const auto number = static_cast<Adesk::UInt64>(id.asOldId());
    const std::size_t serial = number >> 32;
    record = static_cast<dxf::record_id>(number) - 1;
    if (serial == 0 || serial > living().size())
        return nullptr;
    AcDbImpDatabase* const database = living()[serial - 1];
    return database != nullptr && database->has_drawing() && database->records().has(record) ? database
                                                                                             : nullptr;
}

dxf::record_id AcDbImpDatabase::record(AcDbObjectId id) const {
    dxf::record_id record = dxf::no_record;
    return find(id, record) == this ? record : dxf::no_record;
}

// ---- opening and closing

AcRxClass* AcDbImpDatabase::class_of(dxf::record_id record) const {
    const dxf::record_table& all = records();
    const std::string_view type = all.type_name(record);
    switch (all.kind(record)) {
    case dxf::record_kind::table:
    case dxf::record_kind::implied:
        if (all.type(record) == dxf::type_block_record)
            return AcDbBlockTableRecord::desc();
        return row(kind_of_table(record)).table();
    case dxf::record_kind::entry:
        for (const table_row& row : tables)
            if (type == row.record_name)
                return row.record();
        return AcDbObject::desc();
    case dxf::record_kind::block:
        // Before R13 there are no block records: a block is its own.
        return drawing_->table("BLOCK_RECORD") == dxf::no_record ? AcDbBlockTableRecord::desc()
                                                                 : AcDbBlockBegin::desc();
    case dxf::record_kind::block_end:
        return AcDbBlockEnd::desc();
    case dxf::record_kind::entity:
    case dxf::record_kind::part: {
        AcRxClass* const known = db::class_of_entity(type, all.text(record));
        return known == AcDbEntity::desc() && is_of_application(record) ? AcDbProxyEntity::desc() : known;
    }
    case dxf::record_kind::object:
        if (all.type(record) == dxf::type_dictionary || type == "ACDBDICTIONARYWDFLT")
            return AcDbDictionary::desc();
        if (all.type(record) == dxf::type_layout)
            return AcDbLayout::desc();
        if (all.type(record) == dxf::type_xrecord)
            return AcDbXrecord::desc();
        if (AcRxClass* const type_of_application = db::application_class(type, false))
            return type_of_application;
        return is_of_application(record) ? AcDbProxyObject::desc() : AcDbObject::desc();
    case dxf::record_kind::structure:
    case dxf::record_kind::header:
        break;
    }
    return nullptr;
}

Acad::ErrorStatus AcDbImpDatabase::open(AcDbObject*& object, dxf::record_id record, AcDb::OpenMode mode,
                                        bool erased) {
    object = nullptr;
    AcRxClass* const type = class_of(record);
    if (type == nullptr)
        return Acad::eNullObjectId;
    if (records().gone(record) && !erased)
        return Acad::eWasErased;
    const bool write = mode == AcDb::kForWrite;
    if (write && is_referenced(record))
        return Acad::eIsXRefObject;
    if (write && dxf::stands_on_layer(records().kind(record)) && type != AcDbBlockTableRecord::desc() &&
        on_locked_layer(record))
        return Acad::eOnLockedLayer;
    if (write && !write_locked)
        return Acad::eLockViolation;
    if (const auto opened = open_.find(record); opened != open_.end()) {
        AcDbImpObject& imp = opened->second->imp();
        if (imp.writing)
            return Acad::eWasOpenForWrite;
        if (write)
            return imp.notifying ? Acad::eWasNotifying : Acad::eWasOpenForRead;
        if (imp.readers >= most_readers)
            return Acad::eAtMaxReaders;
        ++imp.readers;
        object = opened->second.get();
        return Acad::eOk;
    }
    std::unique_ptr<AcDbObject> made = make(type, record);
    if (!write)
        made->imp().forget(); // most is known of it without its groups
    made->imp().writing = write;
    made->imp().readers = write ? 0 : 1;
    made->imp().news.was_gone = records().gone(record);
    object = made.get();
    open_.emplace(record, std::move(made));
    return Acad::eOk;
}

std::unique_ptr<AcDbObject> AcDbImpDatabase::make(AcRxClass* type, dxf::record_id record) {
    std::unique_ptr<AcDbObject> made;
    if (type == AcDbEntity::desc())
        made.reset(new AcDbEntity); // entities that nobody knows; its constructor is not for programs
    else if (type == AcDbObject::desc())
        made.reset(new AcDbObject);
    else
        made.reset(static_cast<AcDbObject*>(type->create()));
    AcDbImpObject& imp = made->imp();
    imp.forget();
    imp.parts.clear();
    imp.database = this;
    imp.record = record;
    if (db::is_host_class(type))
        return made;
    const bool read = db::read_own_sections(*made);
    if (imp.changed())
        imp.forget(); // reading changes nothing
    return read ? std::move(made) : make(class_of_unread(record), record);
}

AcRxClass* AcDbImpDatabase::class_of_unread(dxf::record_id record) const {
    return records().kind(record) == dxf::record_kind::object ? AcDbProxyObject::desc()
                                                              : AcDbProxyEntity::desc();
}

bool AcDbImpDatabase::is_of_application(dxf::record_id record) const {
    if (!application_types_) {
        application_types_.emplace();
        const dxf::record_id section = drawing_->parts().classes;
        for (dxf::record_id id = section != dxf::no_record ? records().next(section) : section;
             id != dxf::no_record && records().type(id) == dxf::type_class; id = records().next(id))
            if (!records().gone(id) && dxf::value_of(records().text(id), 3) != "ObjectDBX Classes")
                application_types_->insert(dxf::value_of(records().text(id), 1));
    }
    return application_types_->contains(records().type_name(record));
}

void AcDbImpDatabase::close_objects_of(const AcRxClass* type) {
    for (AcDbImpDatabase* const database : living()) {
        if (database == nullptr)
            continue;
        std::vector<dxf::record_id> closing;
        for (const auto& [record, object] : database->open_)
            if (object->isKindOf(type))
                closing.push_back(record);
        for (const dxf::record_id record : closing) {
            database->commit(*database->open_.at(record));
            database->destroy(record);
        }
    }
}

std::unique_ptr<AcDbObject> AcDbImpDatabase::view(dxf::record_id record) {
    AcRxClass* const type = class_of(record);
    if (type == nullptr)
        return nullptr;
    std::unique_ptr<AcDbObject> made = make(type, record);
    made->imp().readers = 1;
    return made;
}

void AcDbImpDatabase::commit(AcDbObject& object) {
    AcDbImpObject& imp = object.imp();
    if ((imp.touched || imp.changed()) && !db::is_host_class(object.isA()))
        db::write_own_sections(object);
    imp.touched = false;
    if (const auto left = left_.extract(imp.record))
        drop_entries(imp.edit(), left.mapped());
    if (!imp.changed())
        return;
    db::table_kind kind{};
    const bool entry = is_table_entry(imp.record, kind);
    const std::string before(entry ? dxf::value_of(records().text(imp.record), 2) : std::string_view());
    const bool implied = records().implied(imp.record);
    const std::string_view text_before = records().text(imp.record);
    const bool was_heard_of = notifier_->heard_of(imp.record);
    if (records().replace(imp.record, imp.groups().write(drawing_->style()))) {
        imp.news.modified = true;
        if (was_heard_of || notifier_->heard_of(imp.record))
            tell_apart(text_before, records().text(imp.record), imp.news);
        if (implied || records().type(imp.record) == dxf::type_layer)
            db::entry_changed(*this, imp.record, implied);
        if (records().type(imp.record) == dxf::type_layer)
            locked_.clear();
        const std::string after(entry ? dxf::value_of(records().text(imp.record), 2) : std::string_view());
        if (after != before) {
            renamed(imp.record, kind, drawing_->codec().decode(before));
            db::follow_name(*this, kind, before, after);
        }
    }
    imp.forget();
}

// A record has another name: one name more and one less rather than all names anew.
void AcDbImpDatabase::renamed(dxf::record_id record, db::table_kind kind, const std::wstring& before) {
    locked_.clear();
    blocks_by_bytes_.clear();
    names& known = names_[static_cast<std::size_t>(kind)];
    if (known.doubles)
        known.known = false;
    if (!known.known)
        return;
    known.by_name.erase(base::folded(before));
    known.by_name.try_emplace(base::folded(name_of(record)), record);
}

bool AcDbImpDatabase::is_table_entry(dxf::record_id record, db::table_kind& kind) const {
    if (records().kind(record) == dxf::record_kind::entry) {
        const dxf::record_id table = records().find(records().owner_handle(record));
        if (table == dxf::no_record)
            return false;
        kind = kind_of_table(table);
        return true;
    }
    kind = db::table_kind::block;
    return class_of(record) == AcDbBlockTableRecord::desc();
}

Acad::ErrorStatus AcDbImpDatabase::close(AcDbObject& object, bool keep_changes) {
    AcDbImpObject& imp = object.imp();
    const dxf::record_id record = imp.record;
    if (imp.notifying && imp.readers == 0)
        return Acad::eCloseWasNotifying;
    if (imp.in_transaction && keep_changes && imp.readers <= 1)
        return Acad::eOk;
    if (!imp.writing) {
        --imp.readers;
        if (imp.readers == 0 && !imp.notifying)
            destroy(record);
        return Acad::eOk;
    }
    if (keep_changes) {
        commit(object);
    } else {
        imp.forget();
        if (records().gone(record) != imp.news.was_gone)
            set_erased(record, imp.news.was_gone);
        imp.news.modified = false;
        if (imp.news.opened_for_modify)
            notifier_->cancelled(object);
    }
    imp.writing = false;
    imp.in_transaction = false;
    const bool news = imp.news.made || imp.news.opened_for_modify;
    tell_closing(object);
    if (imp.readers == 0)
        destroy(record);
    if (news)
        notifier_->closed(record);
    return Acad::eOk;
}

void AcDbImpDatabase::settle(AcDbObject& object) {
    commit(object);
    object.imp().writing = false;
    tell_closing(object);
    ++object.imp().readers;
}

// Tells what happened to an object that is not open for write any more; until all have heard of it nobody
// can change it again.
void AcDbImpDatabase::tell_closing(AcDbObject& object) {
    AcDbImpObject& imp = object.imp();
    imp.notifying = true;
    notifier_->closing(object);
    imp.notifying = false;
    imp.news = {};
    imp.news.was_gone = records().gone(imp.record);
}

void AcDbImpDatabase::about_to_modify(AcDbImpObject& imp) {
    imp.news.opened_for_modify = true;
    if (!notifier_->heard())
        return;
    // Views, and objects that are being read, are nobody's business.
    const auto opened = open_.find(imp.record);
    if (opened != open_.end() && &opened->second->imp() == &imp && imp.writing)
        notifier_->opened_for_modify(*opened->second);
}

void AcDbImpDatabase::content_changed(dxf::record_id container) {
    AcDbImpObject* const imp = opened(container);
    if (imp == nullptr || !imp->writing)
        return;
    if (!imp->news.opened_for_modify)
        about_to_modify(*imp);
    imp->news.modified = imp->news.graphics = true;
}

void AcDbImpDatabase::appended(AcDbObject& object) {
    AcDbImpObject& imp = object.imp();
    if (imp.reactors != nullptr)
        notifier_->of_object(imp.record).take(*std::exchange(imp.reactors, nullptr));
    if (!notifier_->of_database().empty() || notifier_->heard_of(imp.record)) {
        commit(object); // what its class adds when it joins a drawing is no change of it
        imp.news = {};
        imp.writing = false;
        imp.notifying = imp.lent = true;
        notifier_->appended(object);
        imp.notifying = imp.lent = false;
        imp.writing = true;
    }
    imp.news.made = true;
}

void AcDbImpDatabase::destroy(dxf::record_id record) {
    open_.erase(record);
}

void AcDbImpDatabase::adopt(AcDbObject& object, dxf::record_id record) {
    AcDbImpObject& imp = object.imp();
    imp.forget();
    imp.database = this;
    imp.record = record;
    imp.writing = true;
    imp.touched = false;
    imp.news = {};
    application_types_.reset(); // a new object's class may have come with it
    imp.readers = 0;
    open_.emplace(record, std::unique_ptr<AcDbObject>(&object));
    const bool entry = records().kind(record) == dxf::record_kind::entry;
    if (!entry && records().kind(record) != dxf::record_kind::block)
        return;
    locked_.clear();
    const db::table_kind kind =
        entry ? kind_of_table(records().find(records().owner_handle(record))) : db::table_kind::block;
    name_came(kind, record);
    if (kind == db::table_kind::block)
        blocks_by_bytes_.clear();
}

void AcDbImpDatabase::exchange(AcDbObject& old, AcDbObject& fresh) {
    AcDbImpObject& imp = old.imp();
    const dxf::record_id record = std::exchange(imp.record, dxf::no_record);
    imp.database = nullptr;
    imp.writing = false;
    static_cast<void>(open_.extract(record).mapped().release()); // the caller owns it
    adopt(fresh, record);
}

void AcDbImpDatabase::adopt_block(dxf::record_id begin) {
    drawing_->add_block(begin);
    if (!begins_.empty())
        begins_.emplace(records().owner_handle(begin), begin);
}

AcDbObject* AcDbImpDatabase::open_object(dxf::record_id record) const {
    const auto at = open_.find(record);
    return at != open_.end() ? at->second.get() : nullptr;
}

AcDbImpObject* AcDbImpDatabase::opened(dxf::record_id record) const {
    AcDbObject* const object = open_object(record);
    return object != nullptr ? &object->imp() : nullptr;
}

std::size_t AcDbImpDatabase::close_all() {
    const std::size_t left = open_.size() + references_->close_all();
    std::vector<dxf::record_id> closing;
    for (const auto& [record, object] : open_)
        if (!object->imp().notifying)
            closing.push_back(record);
    for (const dxf::record_id record : closing) {
        AcDbObject* const object = open_object(record);
        if (object == nullptr) // somebody who heard of another one closed it
            continue;
        object->imp().in_transaction = false;
        object->imp().readers = 0;
        object->imp().writing = true; // one that was read has nothing to tell
        close(*object, true);
    }
    settle_dictionaries();
    return left;
}

void AcDbImpDatabase::set_erased(dxf::record_id record, bool erased) {
    if (!records().set_gone(record, erased))
        return;
    touched(record);
    if (erased && records().kind(record) == dxf::record_kind::object)
        leave_dictionary(record);
    if (class_of(record) == AcDbBlockTableRecord::desc())
        erase_contents(record, erased);
    if (records().kind(record) != dxf::record_kind::entity)
        return;
    for (dxf::record_id part = records().next(record);
         part != dxf::no_record && records().kind(part) == dxf::record_kind::part;
         part = records().next(part))
        records().set_gone(part, erased);
}

// Erases what stands in a block with it, and brings back what was erased so.
void AcDbImpDatabase::erase_contents(dxf::record_id block, bool erased) {
    std::vector<dxf::record_id>& with_it = erased_with_[block];
    const std::vector<dxf::record_id> before = std::exchange(with_it, {});
    if (!erased) {
        for (const dxf::record_id id : before)
            records().set_gone(id, false);
        return;
    }
    const auto [first, last] = begins_of(block);
    for (auto begin = first; begin != last; ++begin)
        for (dxf::record_id id = begin->second; id != dxf::no_record; id = records().next(id)) {
            if (records().set_gone(id, true))
                with_it.push_back(id);
            if (records().kind(id) == dxf::record_kind::block_end)
                break;
        }
}

// An erased object leaves the dictionary that owns it; reviving it does not put it back. The dictionary's
// record is written when there is time for all that left.
void AcDbImpDatabase::leave_dictionary(dxf::record_id object) {
    const dxf::record_id owner = records().find(records().owner_handle(object));
    if (owner != dxf::no_record && class_of(owner) == AcDbDictionary::desc())
        left_[owner].insert(records().handle(object));
}

bool AcDbImpDatabase::has_left(dxf::record_id dictionary, dxf::record_id object) const {
    const auto at = left_.find(dictionary);
    return at != left_.end() && at->second.contains(records().handle(object));
}

void AcDbImpDatabase::settle_dictionaries() {
    for (const auto& [dictionary, handles] : std::exchange(left_, {})) {
        const auto opened = open_.find(dictionary);
        if (opened != open_.end() && opened->second->imp().writing) {
            drop_entries(opened->second->imp().edit(), handles);
            continue;
        }
        dxf::group_list groups(records().text(dictionary));
        drop_entries(groups, handles);
        if (groups.changed())
            records().replace(dictionary, groups.write(drawing_->style()));
        if (opened != open_.end())
            opened->second->imp().forget();
    }
}

void AcDbImpDatabase::begin_step(std::string name) {
    settle_dictionaries();
    records().begin_step(std::move(name));
}

// A record came, went or was renamed: what is known of names is asked anew.
void AcDbImpDatabase::touched(dxf::record_id record) {
    switch (records().kind(record)) {
    case dxf::record_kind::entry:
    case dxf::record_kind::block:
    case dxf::record_kind::table:
        locked_.clear();
        for (names& known : names_)
            known.known = false;
        blocks_by_bytes_.clear();
        break;
    default:
        break;
    }
}

// ---- symbol tables

bool AcDbImpDatabase::has_block_records() const {
    return drawing_->table("BLOCK_RECORD") != dxf::no_record ||
           (drawing_->version() >= db::release_13 && drawing_->parts().block_begins.empty());
}

dxf::record_id AcDbImpDatabase::table(db::table_kind kind) {
    if (kind != db::table_kind::block || has_block_records())
        if (const dxf::record_id head = drawing_->ensure_table(row(kind).dxf_name); head != dxf::no_record)
            return head;
    dxf::record_id& implied = implied_tables_[static_cast<std::size_t>(kind)];
    if (implied == dxf::no_record)
        implied = records().append_implied("  0\nTABLE\n  2\n" + std::string(row(kind).dxf_name) + "\n",
                                           dxf::type_table);
    return implied;
}

db::table_kind AcDbImpDatabase::kind_of_table(dxf::record_id table) const {
    const std::string_view name = dxf::value_of(records().text(table), 2);
    for (std::size_t i = 0; i < db::table_kinds; ++i)
        if (tables[i].dxf_name == name)
            return static_cast<db::table_kind>(i);
    return db::table_kind::regapp;
}

std::vector<dxf::record_id> AcDbImpDatabase::entries(db::table_kind kind) {
    std::vector<dxf::record_id> found;
    const dxf::record_table& all = records();
    if (const dxf::record_id head = drawing_->table(row(kind).dxf_name); head != dxf::no_record) {
        for (dxf::record_id id = all.next(head);
             id != dxf::no_record && all.kind(id) == dxf::record_kind::entry; id = all.next(id))
            found.push_back(id);
    } else if (kind == db::table_kind::block) {
        found = drawing_->parts().block_begins;
    }
    if (kind == db::table_kind::block)
        for (dxf::record_id id = 0; id < all.size(); ++id)
            if (all.kind(id) == dxf::record_kind::implied && all.type(id) == dxf::type_block_record)
                found.push_back(id);
    return found;
}

std::wstring AcDbImpDatabase::name_of(dxf::record_id entry) const {
    std::wstring name = drawing_->codec().decode(dxf::value_of(records().text(entry), 2));
    // Drawings of R12 call the spaces so.
    if (base::equal_no_case(name, L"$MODEL_SPACE"))
        return ACDB_MODEL_SPACE;
    if (base::equal_no_case(name, L"$PAPER_SPACE"))
        return ACDB_PAPER_SPACE;
    return name;
}

dxf::record_id AcDbImpDatabase::find_entry(db::table_kind kind, std::wstring_view name) {
    names& known = names_[static_cast<std::size_t>(kind)];
    if (!known.known) {
        known.by_name.clear();
        known.doubles = false;
        for (const dxf::record_id entry : entries(kind))
            if (!records().gone(entry) &&
                !known.by_name.try_emplace(base::folded(name_of(entry)), entry).second)
                known.doubles = true;
        known.known = true;
    }
    const auto at = known.by_name.find(base::folded(name));
    return at == known.by_name.end() ? dxf::no_record : at->second;
}

bool AcDbImpDatabase::name_is_taken(dxf::record_id entry) {
    if (records().kind(entry) != dxf::record_kind::entry)
        return false;
    const db::table_kind kind = kind_of_table(records().find(records().owner_handle(entry)));
    return find_entry(kind, name_of(entry)) != dxf::no_record;
}

dxf::record_id AcDbImpDatabase::place_for_entry(db::table_kind kind) {
    table(kind);
    const dxf::record_id head = drawing_->table(row(kind).dxf_name);
    return head == dxf::no_record ? dxf::no_record : drawing_->last_in(head);
}

void AcDbImpDatabase::name_came(db::table_kind kind, dxf::record_id entry) {
    names& known = names_[static_cast<std::size_t>(kind)];
    if (known.known) // one more name rather than all names anew
        known.by_name.try_emplace(base::folded(name_of(entry)), entry);
}

bool AcDbImpDatabase::is_referenced(dxf::record_id record) const {
    return host_ != nullptr ||
           (records().implied(record) && records().type(record) == dxf::type_block_record);
}

// ---- layers of entities

std::wstring AcDbImpDatabase::layer_name(dxf::record_id entity) const {
    const std::string_view bytes = dxf::trimmed(records().layer_names()[records().layer(entity)]);
    return bytes.empty() ? L"0" : drawing_->codec().decode(bytes);
}

std::string AcDbImpDatabase::layer_bytes(std::wstring_view name) {
    const dxf::record_id layer = find_entry(db::table_kind::layer, name);
    if (layer == dxf::no_record)
        return drawing_->codec().encode(name);
    return std::string(dxf::value_of(records().text(layer), 2));
}

std::vector<bool> AcDbImpDatabase::layer_numbers(std::wstring_view name) const {
    const dxf::name_set& known = records().layer_names();
    for (; layer_names_read_ < known.size(); ++layer_names_read_) {
        const std::string_view bytes = dxf::trimmed(known[layer_names_read_]);
        layer_numbers_[base::folded(bytes.empty() ? L"0" : drawing_->codec().decode(bytes))].push_back(
            layer_names_read_);
    }
    std::vector<bool> numbers(known.size());
    if (const auto at = layer_numbers_.find(base::folded(name)); at != layer_numbers_.end())
        for (const std::uint32_t number : at->second)
            numbers[number] = true;
    return numbers;
}

const std::vector<dxf::record_id>& AcDbImpDatabase::layer_name_holders() {
    const auto look = [&](dxf::record_id id) {
        if (id >= holds_layer_name_.size())
            holds_layer_name_.resize(records().size());
        if (!holds_layer_name_[id] && records().text(id).find("1003") != std::string_view::npos) {
            holds_layer_name_[id] = true;
            layer_name_holders_.push_back(id);
        }
    };
    const auto& journal = records().journal();
    if (holds_layer_name_.empty()) {
        for (dxf::record_id id = 0; id < records().size(); ++id)
            look(id);
        journal_read_ = journal.size();
    }
    for (; journal_read_ < journal.size(); ++journal_read_)
        look(journal[journal_read_]);
    return layer_name_holders_;
}

bool AcDbImpDatabase::on_locked_layer(dxf::record_id entity) {
    const std::uint32_t number = records().layer(entity);
    if (number >= locked_.size())
        locked_.resize(records().layer_names().size(), -1);
    signed char& locked = locked_[number];
    if (locked < 0) {
        const dxf::record_id layer = find_entry(db::table_kind::layer, layer_name(entity));
        constexpr std::int64_t lock_bit = 4;
        const bool set =
            layer != dxf::no_record &&
            (dxf::group_list(records().text(layer)).integer({"AcDbLayerTableRecord"}, 70).value_or(0) &
             lock_bit) != 0;
        locked = set ? 1 : 0;
    }
    return locked != 0;
}

dxf::record_id AcDbImpDatabase::current_layer() {
    const auto name = drawing_->header_value("$CLAYER");
    const dxf::record_id named =
        name ? find_entry(db::table_kind::layer, drawing_->codec().decode(*name)) : dxf::no_record;
    return named != dxf::no_record ? named : find_entry(db::table_kind::layer, L"0");
}

// ---- containers

dxf::record_id AcDbImpDatabase::block(std::wstring_view name) {
    return find_entry(db::table_kind::block, name);
}

std::pair<AcDbImpDatabase::begins::const_iterator, AcDbImpDatabase::begins::const_iterator>
AcDbImpDatabase::begins_of(dxf::record_id block) const {
    if (begins_.empty())
        for (const dxf::record_id begin : drawing_->parts().block_begins)
            begins_.emplace(records().owner_handle(begin), begin);
    return begins_.equal_range(records().handle(block));
}

dxf::record_id AcDbImpDatabase::begin_of_block(dxf::record_id block) const {
    const auto [first, last] = begins_of(block);
    for (auto begin = first; begin != last; ++begin)
        if (!records().gone(begin->second))
            return begin->second;
    return dxf::no_record;
}

std::vector<dxf::record_id> AcDbImpDatabase::entities(dxf::record_id block) const {
    const dxf::record_table& all = records();
    std::vector<dxf::record_id> found;
    const std::uint64_t owner = all.handle(block);

    const auto take = [&](dxf::record_id from) {
        for (dxf::record_id id = all.next(from); id != dxf::no_record; id = all.next(id)) {
            const dxf::record_kind kind = all.kind(id);
            if (kind == dxf::record_kind::structure || kind == dxf::record_kind::block_end ||
                kind == dxf::record_kind::block)
                break;
            if (kind == dxf::record_kind::entity && all.owner_handle(id) == owner)
                found.push_back(id);
        }
    };
    const auto [first, last] = begins_of(block);
    for (auto begin = first; begin != last; ++begin)
        take(begin->second);
    if (is_space_name(name_of(block)) && drawing_->parts().entities != dxf::no_record)
        take(drawing_->parts().entities);
    return found;
}

std::vector<dxf::record_id> AcDbImpDatabase::drawn_of_block(dxf::record_id block) const {
    std::vector<dxf::record_id> drawn = entities(block);
    std::erase_if(drawn, [&](dxf::record_id entity) {
        if (records().gone(entity))
            return true;
        constexpr std::int64_t constant = 2;
        return records().type_name(entity) == "ATTDEF" &&
               (dxf::group_list(records().text(entity)).integer({"AcDbAttributeDefinition"}, 70).value_or(0) &
                constant) == 0;
    });
    return drawn;
}

dxf::record_id AcDbImpDatabase::block_by_bytes(std::string_view name) {
    const auto [at, added] = blocks_by_bytes_.try_emplace(name, dxf::no_record);
    if (added)
        at->second = find_entry(db::table_kind::block, drawing_->codec().decode(name));
    return at->second;
}

AcGePoint3d AcDbImpDatabase::base_of_block(dxf::record_id block) const {
    if (const auto base = references_->base_point(block))
        return *base;
    const auto [first, last] = begins_of(block);
    if (first == last)
        return {};
    const dxf::group_list groups(records().text(first->second));
    constexpr dxf::group_place place{"AcDbBlockBegin"};
    return {groups.real(place, 10).value_or(0.0), groups.real(place, 20).value_or(0.0),
            groups.real(place, 30).value_or(0.0)};
}

bool AcDbImpDatabase::is_space_name(std::wstring_view block) {
    const std::wstring folded = base::folded(block);
    return folded.starts_with(L"*model_space") || folded.starts_with(L"*paper_space");
}

bool AcDbImpDatabase::in_space(dxf::record_id entity) const {
    if (records().kind(entity) == dxf::record_kind::part)
        entity = records().find(records().owner_handle(entity));
    if (entity == dxf::no_record)
        return false;
    const std::uint32_t owner = records().owner(entity);
    if (owner >= spaces_.size())
        spaces_.resize(owner + 1, -1);
    if (spaces_[owner] < 0) {
        const dxf::record_id block = records().find(records().owner_handle(entity));
        spaces_[owner] = block != dxf::no_record && is_space_name(name_of(block)) ? 1 : 0;
    }
    return spaces_[owner] == 1;
}

dxf::record_id AcDbImpDatabase::root_dictionary() const {
    return drawing_->ensure_root_dictionary();
}

// ---- undo

std::string AcDbImpDatabase::undo() {
    close_all();
    std::vector<dxf::replay> changes;
    const std::string name = records().undo(changes);
    replayed(changes);
    return name;
}

std::string AcDbImpDatabase::redo() {
    close_all();
    std::vector<dxf::replay> changes;
    const std::string name = records().redo(changes);
    replayed(changes);
    return name;
}

void AcDbImpDatabase::take_back_part() {
    settle_dictionaries();
    std::vector<dxf::replay> changes;
    records().take_back_part(changes);
    replayed(changes);
}

void AcDbImpDatabase::replayed(const std::vector<dxf::replay>& changes) {
    for (const dxf::replay& change : changes)
        touched(change.id);
    undoing_ = true;
    notifier_->replayed(changes);
    undoing_ = false;
}
