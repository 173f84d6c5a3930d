// The host's side of a database: the drawing behind it, the objects that are open, names of symbol tables.
#pragma once

#include "dbmain.h"
#include "host/db/core/undo_groups.h"
#include "host/dxf/drawing.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace db {

class notifier;
class references;

// The nine symbol tables, by what the file calls them.
enum class table_kind { block, layer, text_style, linetype, view, ucs, viewport, regapp, dim_style };
inline constexpr std::size_t table_kinds = 9;

} // namespace db

class ACDB_PORT AcDbImpDatabase {
public:
    explicit AcDbImpDatabase(AcDbDatabase& self);
    ~AcDbImpDatabase();
    AcDbImpDatabase(const AcDbImpDatabase&) = delete;
    AcDbImpDatabase& operator=(const AcDbImpDatabase&) = delete;

    // How drawing files are read, for the whole program.
    struct reading {
        int encoding = 0; // of their text, by number; 0: what their bytes tell
        // Is given, line by line, what a user should know of a file: what was repaired, in which encoding it
        // is when that is not the one that it names.
        std::function<void(const std::wstring&)> tell;
    };
    static reading& how_to_read();
    // Tells the user what there is to be known of a file.
    static void tell_of_file(const std::wstring& path, const std::vector<std::wstring>& messages);

    // Reads a drawing file (host/version/saving.h writes one). On failure says what is wrong and where.
    base::result<void> read(const std::wstring& path);
    // Takes over a drawing that was read.
    void set_drawing(std::unique_ptr<dxf::drawing> drawing);
    bool has_drawing() const { return drawing_ != nullptr; }
    dxf::drawing& drawing() const { return *drawing_; }
    dxf::record_table& records() const { return drawing_->records(); }

    std::wstring file_name; // read from or last written to
    int file_version = 0;   // of that file, where it is another one than the drawing's own

    // ---- ids

    AcDbObjectId id(dxf::record_id record) const;
    // The record that an id of this database names; no_record for others.
    dxf::record_id record(AcDbObjectId id) const;
    // The database and record of an id; null when the database is gone.
    static AcDbImpDatabase* find(AcDbObjectId id, dxf::record_id& record);
    AcDbDatabase& self() const { return self_; }
    // Every database that there is, and whether one is one of them.
    static std::vector<AcDbImpDatabase*> all();
    static bool is_alive(const AcDbImpDatabase* database);

    // ---- opening and closing

    Acad::ErrorStatus open(AcDbObject*& object, dxf::record_id record, AcDb::OpenMode mode, bool erased);
    // Ends one opening; the object may be gone afterwards.
    Acad::ErrorStatus close(AcDbObject& object, bool keep_changes);
    // Puts an open object's changes into the drawing. They are told when it is closed, or by settle().
    void commit(AcDbObject& object);
    // Commits and tells, and makes it open for reading again.
    void settle(AcDbObject& object);
    // Binds a new object to its record. It stays open for write, and the database owns it from now on.
    void adopt(AcDbObject& object, dxf::record_id record);
    // Puts a new object into the place of one that is open, under its id; that one is new again, and the
    // caller's.
    void exchange(AcDbObject& old, AcDbObject& fresh);
    // Makes a BLOCK that was added known.
    void adopt_block(dxf::record_id begin);
    // Closes, in all databases, what is open of a class that ends.
    static void close_objects_of(const AcRxClass* type);
    // Closes what is still open at the end of a command. Returns how many there were.
    std::size_t close_all();
    bool is_open(dxf::record_id record) const { return open_.contains(record); }
    // The object that is open for a record, and the host's side of it; null when none is.
    AcDbObject* open_object(dxf::record_id record) const;
    AcDbImpObject* opened(dxf::record_id record) const;
    // An object of its own that looks on a record as it stands there closed, whoever has it open; for
    // reading. Null for records that are no objects.
    std::unique_ptr<AcDbObject> view(dxf::record_id record);
    // The class of the object that opening a record gives.
    AcRxClass* class_of(dxf::record_id record) const;

    // Whether an object was erased out of the dictionary that names it still. Their records are settled when
    // a command ends, and before the drawing is saved.
    bool has_left(dxf::record_id dictionary, dxf::record_id object) const;
    void settle_dictionaries();
    // Marks a record as erased, or revives it, with the parts behind an entity.
    void set_erased(dxf::record_id record, bool erased);

    // ---- who hears of changes

    db::notifier& notifier() const { return *notifier_; }
    // An object that is open for write is about to change.
    void about_to_modify(AcDbImpObject& object);
    // A container that is open for write got something, or lost it, without a change of its own record.
    void content_changed(dxf::record_id container);
    // A new object stands where it belongs.
    void appended(AcDbObject& object);
    // Whether undo or redo is at work.
    bool undoing() const { return undoing_; }
    void set_undoing(bool undoing) { undoing_ = undoing; }

    // Whether objects may be opened for write. A document's may not, unless it is locked.
    bool write_locked = true;

    // ---- symbol tables

    // The record of a table: the file's TABLE, or one that is made for it.
    dxf::record_id table(db::table_kind kind);
    // Whether blocks have records of their own: before R13 a BLOCK is its own.
    bool has_block_records() const;
    db::table_kind kind_of_table(dxf::record_id table) const;
    // Its entries in order, erased ones too.
    std::vector<dxf::record_id> entries(db::table_kind kind);
    // The entry of a name, compared without case; no_record when there is none. Erased ones are not found.
    dxf::record_id find_entry(db::table_kind kind, std::wstring_view name);
    std::wstring name_of(dxf::record_id entry) const;
    // Whether a record is an entry of a symbol table, and of which.
    bool is_table_entry(dxf::record_id record, db::table_kind& kind) const;
    // Whether an erased entry can not come back since another one has its name.
    bool name_is_taken(dxf::record_id entry);
    // An entry came to a table: it is found by its name from now on.
    void name_came(db::table_kind kind, dxf::record_id entry);
    // Where a new entry goes: behind this record. no_record when the drawing has no such table.
    dxf::record_id place_for_entry(db::table_kind kind);

    // ---- layers of entities

    // The name of an entity's layer.
    std::wstring layer_name(dxf::record_id entity) const;
    // The bytes with which a layer is named: as its own record spells it.
    std::string layer_bytes(std::wstring_view name);
    // For each number of record_table::layer_names(), whether it names the layer (compared without case).
    std::vector<bool> layer_numbers(std::wstring_view name) const;
    // The records that may name a layer in their extended data, erased ones too.
    const std::vector<dxf::record_id>& layer_name_holders();
    bool on_locked_layer(dxf::record_id entity);
    // The layer that the drawing calls current.
    dxf::record_id current_layer();

    // ---- containers

    // The record of a block, also of model space in drawings that have no record for it.
    dxf::record_id block(std::wstring_view name);
    // Its BLOCK; no_record when the file has none.
    dxf::record_id begin_of_block(dxf::record_id block) const;
    // Its entities in the order of the file, parts left out, erased ones too.
    std::vector<dxf::record_id> entities(dxf::record_id block) const;
    // What a reference to a block draws of it: not the definitions of attributes that each reference fills,
    // nothing that is erased.
    std::vector<dxf::record_id> drawn_of_block(dxf::record_id block) const;
    // The record of the block that a reference names by these bytes; no_record when there is none.
    dxf::record_id block_by_bytes(std::string_view name);
    // The point of a block that a reference puts at its position.
    AcGePoint3d base_of_block(dxf::record_id block) const;
    // Whether a block of this name is model space or a sheet.
    static bool is_space_name(std::wstring_view block);
    // Whether an entity, or the entity that a part belongs to, stands in model space or on a sheet.
    bool in_space(dxf::record_id entity) const;
    // The named-objects dictionary; no_record when the drawing has none.
    dxf::record_id root_dictionary() const;

    // ---- what the user works in, as far as the file does not tell (host/db/tables/spaces.h)

    dxf::record_id chosen_sheet = dxf::no_record;
    dxf::record_id chosen_viewport = dxf::no_record; // a viewport on a sheet, or one of the table's

    // ---- what other rooms keep of the drawing

    // The database's one Part, made as Part(AcDbImpDatabase&) when it is first asked for. Only the source
    // that defines Part asks for it, so that there is one number for it in the whole program.
    template<class Part>
    Part& part() {
        static const std::size_t number = next_part();
        if (number >= parts_.size())
            parts_.resize(number + 1);
        if (parts_[number] == nullptr) {
            auto made = std::make_shared<Part>(*this); // which may ask for other parts
            parts_[number] = std::move(made);
        }
        return *static_cast<Part*>(parts_[number].get());
    }

    // ---- external references

    db::references& references() const { return *references_; }
    // The drawing that read this one as a reference; null when it is none. Then nothing is opened for write.
    AcDbImpDatabase* host() const { return host_; }
    // The name of the block by which the host, or a reference of it, came to read it first.
    const std::wstring& reference_name() const { return reference_name_; }
    void set_host(AcDbImpDatabase& host, std::wstring reference_name) {
        host_ = &host;
        reference_name_ = std::move(reference_name);
    }
    // Whether a record is a reference's, or stands for one of its blocks: it is opened for reading only.
    bool is_referenced(dxf::record_id record) const;

    // ---- undo

    db::undo_groups undo_groups;
    void begin_step(std::string name);
    std::string undo();
    std::string redo();
    // Takes back a part of a step (dxf::record_table::begin_part).
    void take_back_part();

private:
    struct names {
        bool known = false;
        bool doubles = false;                                     // several entries have one name
        std::unordered_map<std::wstring, dxf::record_id> by_name; // folded
    };

    // BLOCKs by the handles of their records.
    using begins = std::unordered_multimap<std::uint64_t, dxf::record_id>;

    static std::size_t next_part();
    std::pair<begins::const_iterator, begins::const_iterator> begins_of(dxf::record_id block) const;
    std::unique_ptr<AcDbObject> make(AcRxClass* type, dxf::record_id record);
    void replayed(const std::vector<dxf::replay>& changes);
    void touched(dxf::record_id record);
    void renamed(dxf::record_id record, db::table_kind kind, const std::wstring& before);
    AcRxClass* class_of_unread(dxf::record_id record) const;
    bool is_of_application(dxf::record_id record) const;
    void leave_dictionary(dxf::record_id object);
    void erase_contents(dxf::record_id block, bool erased);
    void destroy(dxf::record_id record);
    void tell_closing(AcDbObject& object);

    AcDbDatabase& self_;
    std::uint32_t serial_ = 0;
    std::unique_ptr<dxf::drawing> drawing_;
    std::unordered_map<dxf::record_id, std::unique_ptr<AcDbObject>> open_;
    std::array<dxf::record_id, db::table_kinds> implied_tables_;
    std::array<names, db::table_kinds> names_;
    std::unordered_map<std::string_view, dxf::record_id> blocks_by_bytes_; // bytes that lie in records
    mutable begins begins_;
    mutable std::unordered_map<std::wstring, std::vector<std::uint32_t>> layer_numbers_; // by folded name
    mutable std::uint32_t layer_names_read_ = 0;
    // Types of which the drawing says that an application brings them.
    mutable std::optional<std::unordered_set<std::string_view>> application_types_;
    std::vector<bool> holds_layer_name_; // by record
    std::vector<dxf::record_id> layer_name_holders_;
    std::size_t journal_read_ = 0;                                                // for those
    std::unordered_map<dxf::record_id, std::vector<dxf::record_id>> erased_with_; // with a block
    std::unordered_map<dxf::record_id, std::unordered_set<std::uint64_t>> left_;  // handles, by dictionary
    mutable std::vector<signed char> spaces_; // by number of owner: 1 a space, 0, or -1 for not asked yet
    AcDbImpDatabase* host_ = nullptr;
    std::wstring reference_name_;
    std::unique_ptr<db::references> references_;
    std::unique_ptr<db::notifier> notifier_;
    bool undoing_ = false;
    std::vector<signed char> locked_; // by number of layer name: 1, 0, or -1 for not asked yet
    std::vector<std::shared_ptr<void>> parts_;
};
