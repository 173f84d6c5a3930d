#include "host/db/inserted_drawing.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/imp_object.h"
#include "host/db/new_block.h"
#include "host/db/properties.h"
#include "host/db/record_text.h"
#include "host/db/xrefs.h"
#include "host/dxf/record_header.h"
#include "sys/folders.h"

#include <map>
#include <set>

namespace db {

namespace {

constexpr dxf::group_place begin_place{"AcDbBlockBegin"};
constexpr dxf::group_place anywhere{"*"};

// Groups of all entities and layers that say how they are plotted or shaded: nothing is lost without them.
bool is_of_appearance(int code) {
    return code == 347 || code == 348 || code == 390;
}

class transfer {
public:
    transfer(AcDbImpDatabase& from, AcDbImpDatabase& to) : from_(from), to_(to) {}

    // Puts copies of a block's entities into a block of the other drawing.
    void copy_entities(dxf::record_id block, AcDbObjectId target) {
        for (const dxf::record_id entity : from_.entities(block))
            if (!from_.records().gone(entity) && !copy_entity(entity, target))
                ++left_out_[std::string(from_.records().type_name(entity))];
    }

    std::vector<std::wstring> told() const {
        std::vector<std::wstring> lines;
        for (const auto& [type, count] : left_out_)
            lines.push_back(std::to_wstring(count) + L" " + std::wstring(type.begin(), type.end()) +
                            L" left out: it can not be copied to another drawing.");
        return lines;
    }

private:
    struct named_group {
        int code;
        table_kind kind;
    };

    bool copy_entity(dxf::record_id entity, AcDbObjectId target) {
        const AcDbEntityPointer original(from_.id(entity));
        if (original.openStatus() != Acad::eOk)
            return false;
        std::unique_ptr<AcDbEntity> copy(static_cast<AcDbEntity*>(original->clone()));
        if (copy == nullptr || !settle(copy->imp()))
            return false;
        for (const std::unique_ptr<AcDbObject>& part : copy->imp().parts)
            if (!settle(part->imp()))
                return false;
        const AcDbObjectPointer<AcDbBlockTableRecord> block(target, AcDb::kForWrite);
        if (block.openStatus() != Acad::eOk || block->appendAcDbEntity(copy.get()) != Acad::eOk)
            return false;
        copy.release()->close(); // the drawing's now
        return true;
    }

    // Makes sure of what a copy names, by name or by handle. False when it holds on to something else.
    bool settle(AcDbImpObject& copy) {
        take_off_boundaries(copy);
        if (!settle_handles(copy))
            return false;
        const std::string type(dxf::trimmed(copy.groups().groups().front().value));
        std::vector<named_group> names = {{8, table_kind::layer}, {6, table_kind::linetype}};
        if (type == "TEXT" || type == "ATTRIB" || type == "ATTDEF" || type == "MTEXT")
            names.push_back({7, table_kind::text_style});
        if (type == "DIMENSION" || type == "LEADER" || type == "TOLERANCE")
            names.push_back({3, table_kind::dim_style});
        if (type == "INSERT" || type == "DIMENSION")
            names.push_back({2, table_kind::block});
        for (const named_group& named : names) {
            const auto groups = copy.groups().groups();
            for (std::size_t i = 0; i < groups.size() && groups[i].code < 1000; ++i) {
                if (groups[i].code != named.code)
                    continue;
                const std::wstring name = copy.decode(dxf::trimmed(groups[i].value));
                const dxf::record_id entry = ensure(named.kind, name);
                if (entry == dxf::no_record && named.kind == table_kind::block)
                    return false;
                if (entry != dxf::no_record && !base::equal_no_case(to_.name_of(entry), name)) {
                    const dxf::group_list::fresh_group renamed{named.code, copy.encode(to_.name_of(entry))};
                    copy.edit().splice(i, i + 1, {&renamed, 1});
                }
                break;
            }
        }
        return true;
    }

    // A hatch need not follow its boundary.
    static void take_off_boundaries(AcDbImpObject& copy) {
        if (dxf::trimmed(copy.groups().groups().front().value) != "HATCH")
            return;
        for (std::size_t i = 0; i < copy.groups().groups().size(); ++i) {
            const dxf::group& group = copy.groups().groups()[i];
            if (group.code == 330)
                copy.edit().splice(i, i + 1, {}), --i;
            else if (group.code == 97 || group.code == 71)
                copy.edit().set_integer_at(i, 0);
        }
    }

    // Handles of the old drawing become those of the new one.
    bool settle_handles(AcDbImpObject& copy) {
        for (std::size_t i = 1; i < copy.groups().groups().size(); ++i) {
            const dxf::group group = copy.groups().groups()[i];
            const bool extended = group.code == 1005;
            if (!extended && dxf::kind_of_code(group.code) != dxf::value_kind::handle)
                continue;
            const std::uint64_t old = AcDbHandle(copy.decode(dxf::trimmed(group.value)).c_str());
            if (old == 0)
                continue;
            const dxf::record_id entry = is_of_appearance(group.code) ? dxf::no_record : entry_of(old);
            if (entry != dxf::no_record) {
                const dxf::group_list::fresh_group fresh{group.code,
                                                         handle_text(to_.records().handle(entry))};
                copy.edit().splice(i, i + 1, {&fresh, 1});
            } else if (extended) {
                const dxf::group_list::fresh_group none{group.code, "0"};
                copy.edit().splice(i, i + 1, {&none, 1});
            } else if (is_of_appearance(group.code)) {
                copy.edit().splice(i, i + 1, {});
                --i;
            } else {
                return false;
            }
        }
        return true;
    }

    // What the new drawing has for an entry of a symbol table of the old one.
    dxf::record_id entry_of(std::uint64_t handle) {
        const dxf::record_id old = from_.records().find(handle);
        table_kind kind{};
        if (old == dxf::no_record || !from_.is_table_entry(old, kind))
            return dxf::no_record;
        return ensure(kind, from_.name_of(old));
    }

    // The entry of a name in the new drawing, copied from the old one when it is not there.
    dxf::record_id ensure(table_kind kind, const std::wstring& name) {
        const auto key = std::pair(kind, base::folded(name));
        if (const auto known = settled_.find(key); known != settled_.end())
            return known->second;
        const bool anonymous = kind == table_kind::block && name.starts_with(L"*");
        dxf::record_id found = anonymous ? dxf::no_record : to_.find_entry(kind, name);
        settled_[key] = found; // while it is being copied too: what leads back to it ends there
        const dxf::record_id old = found == dxf::no_record ? from_.find_entry(kind, name) : dxf::no_record;
        if (old != dxf::no_record)
            found = kind == table_kind::block ? copy_block(old, anonymous ? name.substr(0, 2) : name, key)
                                              : copy_entry(kind, old);
        return settled_[key] = found;
    }

    using name_key = std::pair<table_kind, std::wstring>;

    dxf::record_id copy_block(dxf::record_id old, const std::wstring& name, const name_key& key) {
        const AcDbObjectPointer<AcDbBlockTableRecord> original(from_.id(old));
        if (original.openStatus() != Acad::eOk || original->isFromExternalReference())
            return dxf::no_record;
        auto block = std::make_unique<AcDbBlockTableRecord>();
        block->setName(name.c_str());
        block->setOrigin(original->origin());
        AcDbObjectId id;
        AcDbBlockTablePointer table(to_.self().blockTableId(), AcDb::kForWrite);
        if (table.openStatus() != Acad::eOk || table->add(id, block.get()) != Acad::eOk)
            return dxf::no_record;
        block.release()->close(); // the table's now
        table.close();
        settled_[key] = to_.record(id);
        copy_entities(old, id);
        return to_.record(id);
    }

    dxf::record_id copy_entry(table_kind kind, dxf::record_id old) {
        const AcDbObjectPointer<AcDbSymbolTableRecord> original(from_.id(old));
        if (original.openStatus() != Acad::eOk)
            return dxf::no_record;
        std::unique_ptr<AcDbSymbolTableRecord> copy(static_cast<AcDbSymbolTableRecord*>(original->clone()));
        if (copy == nullptr)
            return dxf::no_record;
        AcDbImpObject& imp = copy->imp();
        if (kind == table_kind::layer) {
            const std::wstring linetype =
                imp.decode(dxf::trimmed(imp.groups().text(anywhere, 6).value_or("")));
            if (!linetype.empty() && ensure(table_kind::linetype, linetype) == dxf::no_record)
                imp.edit().set_text(anywhere, 6, "Continuous");
        }
        AcDbObjectId id;
        const AcDbObjectPointer<AcDbSymbolTable> table(to_.id(to_.table(kind)), AcDb::kForWrite);
        if (!settle_handles(imp) || table.openStatus() != Acad::eOk ||
            table->add(id, copy.get()) != Acad::eOk)
            return dxf::no_record;
        copy.release()->close(); // the table's now
        return to_.record(id);
    }

    AcDbImpDatabase& from_;
    AcDbImpDatabase& to_;
    std::map<name_key, dxf::record_id> settled_;
    std::map<std::string, std::size_t> left_out_;
};

void empty_block(AcDbImpDatabase& drawing, dxf::record_id block) {
    for (const dxf::record_id entity : drawing.entities(block))
        if (!drawing.records().gone(entity))
            drawing.set_erased(entity, true);
}

} // namespace

base::result<inserted_drawing> insert_drawing(AcDbImpDatabase& drawing, const std::filesystem::path& file,
                                              const std::wstring& name) {
    AcDbDatabase source(false, true);
    if (auto read = source.imp().read(sys::from_path(file)); !read)
        return base::failure{read.error()};
    inserted_drawing made;
    const dxf::record_id known = drawing.find_entry(table_kind::block, name);
    made.redefined = known != dxf::no_record;
    if (made.redefined) {
        made.block = drawing.id(known);
        const AcDbObjectPointer<AcDbBlockTableRecord> block(made.block, AcDb::kForWrite);
        if (block.openStatus() != Acad::eOk || block->isLayout() || block->isFromExternalReference())
            return base::failure{L"The block \"" + name + L"\" can not be redefined."};
        empty_block(drawing, known);
        block->setOrigin(insertion_base(source.imp()));
    } else {
        auto block = std::make_unique<AcDbBlockTableRecord>();
        const AcDbBlockTablePointer table(drawing.self().blockTableId(), AcDb::kForWrite);
        if (block->setName(name.c_str()) != Acad::eOk ||
            block->setOrigin(insertion_base(source.imp())) != Acad::eOk || table.openStatus() != Acad::eOk ||
            table->add(made.block, block.get()) != Acad::eOk)
            return base::failure{L"The drawing can not hold a block \"" + name + L"\"."};
        block.release()->close(); // the table's now
    }
    transfer copying(source.imp(), drawing);
    copying.copy_entities(source.imp().block(ACDB_MODEL_SPACE), made.block);
    made.told = copying.told();
    return made;
}

Acad::ErrorStatus add_reference_block(AcDbImpDatabase& drawing, const std::wstring& name,
                                      const std::wstring& path, bool overlay, AcDbObjectId& id) {
    constexpr std::int64_t external = 4;
    constexpr std::int64_t overlaid = 8;
    auto block = std::make_unique<AcDbBlockTableRecord>();
    if (const Acad::ErrorStatus status = block->setName(name.c_str()); status != Acad::eOk)
        return status;
    block->imp().edit().set_integer(begin_place, 70, overlay ? external | overlaid : external);
    block->imp().edit().set_text(begin_place, 1, block->imp().encode(path));
    const AcDbBlockTablePointer table(drawing.self().blockTableId(), AcDb::kForWrite);
    if (table.openStatus() != Acad::eOk)
        return table.openStatus();
    const Acad::ErrorStatus status = table->add(id, block.get());
    if (status == Acad::eOk)
        block.release()->close(); // the table's now
    return status;
}

} // namespace db
