// The host's side of a database: the drawing behind it, the objects that are open, names of symbol tables.
#pragma once

#include "dbmain.h"
#include "host/dxf/drawing.h"

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace gi {
class block_extents;
}

namespace db {

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

    // Reads a drawing file; and writes it, whole or not at all, as the drawing's own file from now on. On
    // failure says what is wrong and where.
    base::result<void> read(const std::wstring& path);
    base::result<void> save(const std::wstring& path);
    // Takes over a drawing that was read.
    void set_drawing(std::unique_ptr<dxf::drawing> drawing);
    bool has_drawing() const { return drawing_ != nullptr; }
    dxf::drawing& drawing() const { return *drawing_; }
    dxf::record_table& records() const { return drawing_->records(); }

    std::wstring file_name; // read from or last written to

    // ---- ids

    AcDbObjectId id(dxf::record_id record) const;
    // The record that an id of this database names; no_record for others.
    dxf::record_id record(AcDbObjectId id) const;
    // The database and record of an id; null when the database is gone.
    static AcDbImpDatabase* find(AcDbObjectId id, dxf::record_id& record);
    AcDbDatabase& self() const { return self_; }

    // ---- opening and closing

    Acad::ErrorStatus open(AcDbObject*& object, dxf::record_id record, AcDb::OpenMode mode, bool erased);
    // Ends one opening; the object may be gone afterwards.
    Acad::ErrorStatus close(AcDbObject& object, bool keep_changes);
    // Puts an open object's changes into the drawing.
    void commit(AcDbObject& object);
    // Binds a new object to its record. It stays open for write, and the database owns it from now on.
    void adopt(AcDbObject& object, dxf::record_id record);
    // Closes what is still open at the end of a command. Returns how many there were.
    std::size_t close_all();
    bool is_open(dxf::record_id record) const { return open_.contains(record); }
    // An object of its own that looks on a record as it stands there closed, whoever has it open; for
    // reading. Null for records that are no objects.
    std::unique_ptr<AcDbObject> view(dxf::record_id record);
    // The class of the object that opening a record gives.
    AcRxClass* class_of(dxf::record_id record) const;

    // Marks a record as erased, or revives it, with the parts behind an entity.
    void set_erased(dxf::record_id record, bool erased);

    // ---- symbol tables

    // The record of a table: the file's TABLE, or one that stands for it.
    dxf::record_id table(db::table_kind kind);
    db::table_kind kind_of_table(dxf::record_id table) const;
    // Its entries in order, erased ones too.
    std::vector<dxf::record_id> entries(db::table_kind kind);
    // The entry of a name, compared without case; no_record when there is none. Erased ones are not found.
    dxf::record_id find_entry(db::table_kind kind, std::wstring_view name);
    std::wstring name_of(dxf::record_id entry) const;
    // Whether an erased entry can not come back since another one has its name.
    bool name_is_taken(dxf::record_id entry);
    // Where a new entry goes: behind this record. no_record when the drawing has no such table.
    dxf::record_id place_for_entry(db::table_kind kind);

    // ---- layers of entities

    // The name of an entity's layer.
    std::wstring layer_name(dxf::record_id entity) const;
    // The bytes with which a layer is named: as its own record spells it.
    std::string layer_bytes(std::wstring_view name);
    // For each number of record_table::layer_names(), whether it names the layer (compared without case).
    std::vector<bool> layer_numbers(std::wstring_view name) const;
    bool on_locked_layer(dxf::record_id entity);
    // The layer that the drawing calls current.
    dxf::record_id current_layer();

    // ---- containers

    // The record of a block, also of model space in drawings that have no record for it.
    dxf::record_id block(std::wstring_view name);
    // Its entities in the order of the file, parts left out, erased ones too.
    std::vector<dxf::record_id> entities(dxf::record_id block) const;
    // What a reference to a block draws of it: not the definitions of attributes that each reference fills,
    // nothing that is erased.
    std::vector<dxf::record_id> drawn_of_block(dxf::record_id block) const;
    // The extents of that, in the block's coordinates.
    const AcDbExtents& extents_of_block(dxf::record_id block);
    // Whether a block of this name is model space or a sheet.
    static bool is_space_name(std::wstring_view block);
    // Whether an entity, or the entity that a part belongs to, stands in model space or on a sheet.
    bool in_space(dxf::record_id entity) const;
    // The named-objects dictionary; no_record when the drawing has none.
    dxf::record_id root_dictionary() const;

    // ---- undo

    void begin_step(std::string name) { records().begin_step(std::move(name)); }
    std::string undo();
    std::string redo();

private:
    struct names {
        bool known = false;
        std::unordered_map<std::wstring, dxf::record_id> by_name; // folded
    };

    std::unique_ptr<AcDbObject> make(AcRxClass* type, dxf::record_id record);
    void touched(dxf::record_id record);
    void follow_layer_name(const std::string& before, const std::string& after);
    void leave_dictionary(dxf::record_id object);
    void destroy(dxf::record_id record);

    AcDbDatabase& self_;
    std::uint32_t serial_ = 0;
    std::unique_ptr<dxf::drawing> drawing_;
    std::unordered_map<dxf::record_id, std::unique_ptr<AcDbObject>> open_;
    std::array<dxf::record_id, db::table_kinds> implied_tables_;
    std::array<names, db::table_kinds> names_;
    std::unique_ptr<gi::block_extents> block_extents_;
    mutable std::unordered_multimap<std::uint64_t, dxf::record_id>
        begins_;                              // BLOCKs by their records' handles
    mutable std::vector<signed char> spaces_; // by number of owner: 1 a space, 0, or -1 for not asked yet
    std::vector<signed char> locked_;         // by number of layer name: 1, 0, or -1 for not asked yet
};
