#include "host/db/imp_database.h"

#include "base/case_fold.h"
#include "dbdict.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"
#include "host/db/entity_classes.h"
#include "host/db/imp_object.h"
#include "host/db/properties.h"
#include "host/dxf/record_header.h"
#include "host/gi/extents.h"
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

} // namespace

AcDbImpDatabase::AcDbImpDatabase(AcDbDatabase& self) : self_(self) {
    living().push_back(this);
    serial_ = static_cast<std::uint32_t>(living().size());
    implied_tables_.fill(dxf::no_record);
}

AcDbImpDatabase::~AcDbImpDatabase() {
    living()[serial_ - 1] = nullptr;
}

base::result<void> AcDbImpDatabase::read(const std::wstring& path) {
    auto opened = dxf::drawing::open(sys::to_path(path));
    if (!opened)
        return base::failure{opened.error()};
    set_drawing(std::move(*opened));
    file_name = path;
    return {};
}

base::result<void> AcDbImpDatabase::save(const std::wstring& path) {
    auto saved = drawing_->write_file(sys::to_path(path));
    if (saved) {
        file_name = path;
        records().mark_saved();
    }
    return saved;
}

void AcDbImpDatabase::set_drawing(std::unique_ptr<dxf::drawing> drawing) {
    drawing_ = std::move(drawing);
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
                                                                 : AcDbEntity::desc();
    case dxf::record_kind::block_end:
        return AcDbEntity::desc();
    case dxf::record_kind::entity:
    case dxf::record_kind::part:
        return db::class_of_entity(type, all.text(record));
    case dxf::record_kind::object:
        if (all.type(record) == dxf::type_dictionary || type == "ACDBDICTIONARYWDFLT")
            return AcDbDictionary::desc();
        return all.type(record) == dxf::type_xrecord ? AcDbXrecord::desc() : AcDbObject::desc();
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
    if (write && dxf::stands_on_layer(records().kind(record)) && type != AcDbBlockTableRecord::desc() &&
        on_locked_layer(record))
        return Acad::eOnLockedLayer;
    if (const auto opened = open_.find(record); opened != open_.end()) {
        AcDbImpObject& imp = opened->second->imp();
        if (imp.writing)
            return Acad::eWasOpenForWrite;
        if (write)
            return Acad::eWasOpenForRead;
        if (imp.readers >= most_readers)
            return Acad::eAtMaxReaders;
        ++imp.readers;
        object = opened->second.get();
        return Acad::eOk;
    }
    std::unique_ptr<AcDbObject> made = make(type, record);
    made->imp().writing = write;
    made->imp().readers = write ? 0 : 1;
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
    imp.database = this;
    imp.record = record;
    return made;
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
    if (!imp.changed())
        return;
    const bool entry = records().kind(imp.record) == dxf::record_kind::entry;
    const std::string before(entry ? dxf::value_of(records().text(imp.record), 2) : std::string_view());
    if (records().replace(imp.record, imp.groups().write(drawing_->style()))) {
        if (records().type(imp.record) == dxf::type_layer)
            locked_.clear();
        if (entry && dxf::value_of(records().text(imp.record), 2) != before) {
            touched(imp.record);
            if (records().type(imp.record) == dxf::type_layer)
                follow_layer_name(before, std::string(dxf::value_of(records().text(imp.record), 2)));
        }
    }
    imp.forget();
}

// Entities name their layer, and so may extended data (1003): a layer's new name goes to each of them, also
// to those that are open, and to the header when it is current.
void AcDbImpDatabase::follow_layer_name(const std::string& before, const std::string& after) {
    const std::wstring old_name = drawing_->codec().decode(before);
    const std::vector<bool> named = layer_numbers(old_name);
    const auto follow = [&](dxf::group_list& groups) {
        const auto& all = groups.groups();
        for (std::size_t i = 0; i < all.size(); ++i) {
            constexpr int layer_in_extended_data = 1003;
            if (all[i].code != layer_in_extended_data ||
                !base::equal_no_case(drawing_->codec().decode(dxf::trimmed(all[i].value)), old_name))
                continue;
            const dxf::group_list::fresh_group fresh[] = {{layer_in_extended_data, after}};
            groups.splice(i, i + 1, fresh);
        }
    };
    for (dxf::record_id id = 0; id < records().size(); ++id) {
        const bool stands_on_it = dxf::stands_on_layer(records().kind(id)) && named[records().layer(id)];
        const bool may_tell = records().text(id).find("1003") != std::string_view::npos;
        if (!stands_on_it && !may_tell)
            continue;
        dxf::group_list groups(records().text(id));
        if (stands_on_it)
            groups.set_text(db::entity_place, 8, after);
        follow(groups);
        if (groups.changed())
            records().replace(id, groups.write(drawing_->style()));
    }
    for (const auto& [id, object] : open_) {
        AcDbImpObject& imp = object->imp();
        if (!imp.changed()) {
            imp.forget(); // it is read anew when it is asked next
        } else if (dxf::stands_on_layer(records().kind(id))) {
            if (base::equal_no_case(
                    imp.decode(dxf::trimmed(imp.groups().text(db::entity_place, 8).value_or(""))), old_name))
                imp.edit().set_text(db::entity_place, 8, after);
            follow(imp.edit());
        }
    }
    const auto current = drawing_->header_value("$CLAYER");
    if (current && base::equal_no_case(drawing_->codec().decode(*current), old_name))
        drawing_->set_header_value("$CLAYER", 8, after);
}

Acad::ErrorStatus AcDbImpDatabase::close(AcDbObject& object, bool keep_changes) {
    AcDbImpObject& imp = object.imp();
    if (imp.writing) {
        if (keep_changes)
            commit(object);
        imp.writing = false;
    } else {
        --imp.readers;
    }
    if (imp.readers == 0)
        destroy(imp.record);
    return Acad::eOk;
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
    imp.readers = 0;
    open_.emplace(record, std::unique_ptr<AcDbObject>(&object));
    locked_.clear();
    if (records().kind(record) != dxf::record_kind::entry)
        return;
    names& known =
        names_[static_cast<std::size_t>(kind_of_table(records().find(records().owner_handle(record))))];
    if (known.known) // one more name rather than all names anew
        known.by_name.try_emplace(base::folded(name_of(record)), record);
}

std::size_t AcDbImpDatabase::close_all() {
    const std::size_t left = open_.size();
    while (!open_.empty()) {
        AcDbObject& object = *open_.begin()->second;
        commit(object);
        destroy(object.imp().record);
    }
    return left;
}

void AcDbImpDatabase::set_erased(dxf::record_id record, bool erased) {
    if (!records().set_gone(record, erased))
        return;
    touched(record);
    if (erased && records().kind(record) == dxf::record_kind::object)
        leave_dictionary(record);
    if (records().kind(record) != dxf::record_kind::entity)
        return;
    for (dxf::record_id part = records().next(record);
         part != dxf::no_record && records().kind(part) == dxf::record_kind::part;
         part = records().next(part))
        records().set_gone(part, erased);
}

// Takes the entry of an erased object out of the dictionary that owns it. Reviving the object does not put it
// back.
void AcDbImpDatabase::leave_dictionary(dxf::record_id object) {
    const dxf::record_id owner = records().find(records().owner_handle(object));
    if (owner == dxf::no_record || class_of(owner) != AcDbDictionary::desc())
        return;
    const auto opened = open_.find(owner);
    const bool being_written = opened != open_.end() && opened->second->imp().writing;
    dxf::group_list closed(records().text(owner));
    dxf::group_list& groups = being_written ? opened->second->imp().edit() : closed;
    for (std::size_t i = 0; i + 1 < groups.groups().size(); ++i) {
        const dxf::group& handle = groups.groups()[i + 1];
        if (groups.groups()[i].code != 3 || (handle.code != 350 && handle.code != 360) ||
            dxf::parse_handle(handle.value) != records().handle(object))
            continue;
        groups.splice(i, i + 2, {});
        break;
    }
    if (!being_written && groups.changed())
        records().replace(owner, groups.write(drawing_->style()));
}

// A record came, went or was renamed: what is known of names is asked anew.
void AcDbImpDatabase::touched(dxf::record_id record) {
    locked_.clear();
    switch (records().kind(record)) {
    case dxf::record_kind::entry:
    case dxf::record_kind::block:
    case dxf::record_kind::table:
        for (names& known : names_)
            known.known = false;
        break;
    default:
        break;
    }
}

// ---- symbol tables

dxf::record_id AcDbImpDatabase::table(db::table_kind kind) {
    const dxf::record_id head = drawing_->table(row(kind).dxf_name);
    if (head != dxf::no_record)
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
        for (const dxf::record_id entry : entries(kind))
            if (!records().gone(entry))
                known.by_name.try_emplace(base::folded(name_of(entry)), entry);
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
    const dxf::record_id head = drawing_->table(row(kind).dxf_name);
    return head == dxf::no_record ? dxf::no_record : drawing_->last_in(head);
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
    std::vector<bool> numbers(known.size());
    for (std::uint32_t i = 0; i < known.size(); ++i) {
        const std::string_view bytes = dxf::trimmed(known[i]);
        numbers[i] = base::equal_no_case(bytes.empty() ? L"0" : drawing_->codec().decode(bytes), name);
    }
    return numbers;
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

std::vector<dxf::record_id> AcDbImpDatabase::entities(dxf::record_id block) const {
    const dxf::record_table& all = records();
    std::vector<dxf::record_id> found;
    const std::uint64_t owner = all.handle(block);
    if (begins_.empty())
        for (const dxf::record_id begin : drawing_->parts().block_begins)
            begins_.emplace(all.owner_handle(begin), begin);
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
    const auto [first, last] = begins_.equal_range(owner);
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

const AcDbExtents& AcDbImpDatabase::extents_of_block(dxf::record_id block) {
    if (!block_extents_)
        block_extents_ = std::make_unique<gi::block_extents>(*this);
    return block_extents_->of(block);
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
    if (drawing_->parts().objects == dxf::no_record)
        return dxf::no_record;
    const dxf::record_id first = records().next(drawing_->parts().objects);
    return first != dxf::no_record && records().type(first) == dxf::type_dictionary ? first : dxf::no_record;
}

// ---- undo

std::string AcDbImpDatabase::undo() {
    close_all();
    std::vector<dxf::record_id> changed;
    const std::string name = records().undo(changed);
    for (const dxf::record_id record : changed)
        touched(record);
    return name;
}

std::string AcDbImpDatabase::redo() {
    close_all();
    std::vector<dxf::record_id> changed;
    const std::string name = records().redo(changed);
    for (const dxf::record_id record : changed)
        touched(record);
    return name;
}
