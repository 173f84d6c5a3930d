#include "host/db/creation/transfer.h"

#include "base/case_fold.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/needed_records.h"
#include "host/db/tables/name_references.h"
#include "host/dxf/record_header.h"

namespace db {

namespace {

constexpr dxf::group_place anywhere{"*"};

// Groups of all entities and layers that say how they are plotted or shaded: nothing is lost without them.
bool is_of_appearance(int code) {
    return code == 347 || code == 348 || code == 390;
}

struct named_group {
    int code;
    table_kind kind;
};

std::vector<named_group> named_groups(std::string_view type) {
    std::vector<named_group> names = {{8, table_kind::layer}, {6, table_kind::linetype}};
    if (type == "TEXT" || type == "ATTRIB" || type == "ATTDEF" || type == "MTEXT")
        names.push_back({7, table_kind::text_style});
    if (type == "DIMENSION" || type == "LEADER" || type == "TOLERANCE")
        names.push_back({3, table_kind::dim_style});
    if (type == "INSERT" || type == "DIMENSION")
        names.push_back({2, table_kind::block});
    return names;
}

} // namespace

void transfer::copy_entities(dxf::record_id block, AcDbObjectId target) {
    const AcDbObjectPointer<AcDbBlockTableRecord> open(target, AcDb::kForWrite);
    if (open.openStatus() != Acad::eOk)
        return;
    for (const dxf::record_id entity : from_.blocks().entities(block))
        if (!from_.records().gone(entity))
            copy_entity(entity, *open.object());
}

AcDbObjectId transfer::copy_entity(dxf::record_id entity, AcDbBlockTableRecord& target) {
    const AcDbObjectId copy = try_copy(entity, target);
    if (copy.isNull())
        ++left_out_[std::string(from_.records().type_name(entity))];
    return copy;
}

std::vector<std::wstring> transfer::told() const {
    std::vector<std::wstring> lines;
    for (const auto& [type, count] : left_out_)
        lines.push_back(std::to_wstring(count) + L" " + std::wstring(type.begin(), type.end()) +
                        L" left out: it can not be copied to another drawing.");
    return lines;
}

AcDbObjectId transfer::try_copy(dxf::record_id entity, AcDbBlockTableRecord& target) {
    AcDbObjectId id;
    const AcDbEntityPointer original(from_.id(entity));
    if (original.openStatus() != Acad::eOk)
        return id;
    std::unique_ptr<AcDbEntity> copy(static_cast<AcDbEntity*>(original->clone()));
    if (copy == nullptr || !settle(copy->imp()))
        return id;
    for (const std::unique_ptr<AcDbObject>& part : copy->imp().parts)
        if (!settle(part->imp()))
            return id;
    if (target.appendAcDbEntity(id, copy.get()) != Acad::eOk)
        return {};
    copy.release()->close(); // the drawing's now
    return id;
}

// Makes sure of what a copy names, by name or by handle. False when it holds on to something else.
bool transfer::settle(AcDbImpObject& copy) {
    const std::string type(dxf::trimmed(copy.groups().groups().front().value));
    if (type == "HATCH")
        free_from_boundary(copy.edit());
    if (!settle_handles(copy))
        return false;
    for (const named_group& named : named_groups(type)) {
        const auto groups = copy.groups().groups();
        for (std::size_t i = 0; i < groups.size() && groups[i].code < 1000; ++i) {
            if (groups[i].code != named.code)
                continue;
            const std::wstring name = copy.decode(dxf::trimmed(groups[i].value));
            const dxf::record_id entry = ensure(named.kind, name);
            if (entry == dxf::no_record && named.kind == table_kind::block)
                return false;
            if (entry != dxf::no_record && !base::equal_no_case(to_.names().name_of(entry), name)) {
                const dxf::group_list::fresh_group renamed{named.code,
                                                           copy.encode(to_.names().name_of(entry))};
                copy.edit().splice(i, i + 1, {&renamed, 1});
            }
            break;
        }
    }
    return true;
}

// Handles of the old drawing become those of the new one.
bool transfer::settle_handles(AcDbImpObject& copy) {
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
            const dxf::group_list::fresh_group fresh{group.code, handle_text(to_.records().handle(entry))};
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
dxf::record_id transfer::entry_of(std::uint64_t handle) {
    const dxf::record_id old = from_.records().find(handle);
    table_kind kind{};
    if (old == dxf::no_record || !from_.names().is_entry(old, kind))
        return dxf::no_record;
    return ensure(kind, from_.names().name_of(old));
}

std::wstring transfer::name_there(table_kind kind, const std::wstring& name) const {
    const bool named_alike = is_fixed_name(kind, name) || kind == table_kind::regapp;
    std::wstring there = prefix_.empty() || named_alike ? name : prefix_ + L"$0$" + name;
    // Names that depend on a reference of the old drawing are the new one's own.
    if (const std::size_t bar = there.find(L'|'); bar != there.npos)
        there.replace(bar, 1, L"$0$");
    return there;
}

// The entry of a name in the new drawing, copied from the old one when it is not there.
dxf::record_id transfer::ensure(table_kind kind, const std::wstring& name) {
    const auto key = std::pair(kind, base::folded(name));
    if (const auto known = settled_.find(key); known != settled_.end())
        return known->second;
    const bool anonymous = kind == table_kind::block && name.starts_with(L"*");
    const std::wstring there = name_there(kind, name);
    dxf::record_id found = anonymous ? dxf::no_record : to_.names().find(kind, there);
    settled_[key] = found; // while it is being copied too: what leads back to it ends there
    const dxf::record_id old = found == dxf::no_record ? from_.names().find(kind, name) : dxf::no_record;
    if (old != dxf::no_record)
        found = kind == table_kind::block ? copy_block(old, anonymous ? name.substr(0, 2) : there, key)
                                          : copy_entry(kind, old, there);
    return settled_[key] = found;
}

dxf::record_id transfer::copy_block(dxf::record_id old, const std::wstring& name, const name_key& key) {
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

dxf::record_id transfer::copy_entry(table_kind kind, dxf::record_id old, const std::wstring& name) {
    const AcDbObjectPointer<AcDbSymbolTableRecord> original(from_.id(old));
    if (original.openStatus() != Acad::eOk)
        return dxf::no_record;
    std::unique_ptr<AcDbSymbolTableRecord> copy(static_cast<AcDbSymbolTableRecord*>(original->clone()));
    if (copy == nullptr)
        return dxf::no_record;
    AcDbImpObject& imp = copy->imp();
    if (name != from_.names().name_of(old))
        copy->setName(name.c_str());
    if (kind == table_kind::layer) {
        const std::wstring linetype = imp.decode(dxf::trimmed(imp.groups().text(anywhere, 6).value_or("")));
        const dxf::record_id there =
            linetype.empty() ? dxf::no_record : ensure(table_kind::linetype, linetype);
        if (!linetype.empty())
            imp.edit().set_text(
                anywhere, 6, there == dxf::no_record ? "Continuous" : imp.encode(to_.names().name_of(there)));
    }
    AcDbObjectId id;
    const AcDbObjectPointer<AcDbSymbolTable> table(to_.id(to_.names().table(kind)), AcDb::kForWrite);
    if (!settle_handles(imp) || table.openStatus() != Acad::eOk || table->add(id, copy.get()) != Acad::eOk)
        return dxf::no_record;
    copy.release()->close(); // the table's now
    return to_.record(id);
}

} // namespace db
