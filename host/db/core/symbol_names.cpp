#include "host/db/core/symbol_names.h"

#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/core/format_versions.h"
#include "host/dxf/record_header.h"

db::symbol_names& AcDbImpDatabase::names() const {
    return part<db::symbol_names>();
}

namespace db {

namespace {

struct table_row {
    std::string_view dxf_name; // of the table and of its records
    AcRxClass* (*table)();
    AcRxClass* (*record)();
};

// In the order of table_kind.
constexpr table_row tables[table_kinds] = {
    {"BLOCK_RECORD", AcDbBlockTable::desc, AcDbBlockTableRecord::desc},
    {"LAYER", AcDbLayerTable::desc, AcDbLayerTableRecord::desc},
    {"STYLE", AcDbTextStyleTable::desc, AcDbTextStyleTableRecord::desc},
    {"LTYPE", AcDbLinetypeTable::desc, AcDbLinetypeTableRecord::desc},
    {"VIEW", AcDbViewTable::desc, AcDbViewTableRecord::desc},
    {"UCS", AcDbUCSTable::desc, AcDbUCSTableRecord::desc},
    {"VPORT", AcDbViewportTable::desc, AcDbViewportTableRecord::desc},
    {"APPID", AcDbRegAppTable::desc, AcDbRegAppTableRecord::desc},
    {"DIMSTYLE", AcDbDimStyleTable::desc, AcDbDimStyleTableRecord::desc},
};

const table_row& row(table_kind kind) {
    return tables[static_cast<std::size_t>(kind)];
}

} // namespace

AcRxClass* class_of_table(table_kind kind) {
    return row(kind).table();
}

AcRxClass* class_of_entry(std::string_view type) {
    for (const table_row& row : tables)
        if (type == row.dxf_name)
            return row.record();
    return AcDbObject::desc();
}

symbol_names::symbol_names(AcDbImpDatabase& database) : database_(database) {
    implied_tables_.fill(dxf::no_record);
}

bool symbol_names::has_block_records() const {
    const dxf::drawing& drawing = database_.drawing();
    return drawing.table("BLOCK_RECORD") != dxf::no_record ||
           (drawing.version() >= release_13 && drawing.parts().block_begins.empty());
}

dxf::record_id symbol_names::table(table_kind kind) {
    if (kind != table_kind::block || has_block_records())
        if (const dxf::record_id head = database_.drawing().ensure_table(row(kind).dxf_name);
            head != dxf::no_record)
            return head;
    dxf::record_id& implied = implied_tables_[static_cast<std::size_t>(kind)];
    if (implied == dxf::no_record)
        implied = database_.records().append_implied(
            "  0\nTABLE\n  2\n" + std::string(row(kind).dxf_name) + "\n", dxf::type_table);
    return implied;
}

table_kind symbol_names::kind_of_table(dxf::record_id table) const {
    const std::string_view name = dxf::value_of(database_.records().text(table), 2);
    for (std::size_t i = 0; i < table_kinds; ++i)
        if (tables[i].dxf_name == name)
            return static_cast<table_kind>(i);
    return table_kind::regapp;
}

dxf::record_id symbol_names::place_for_entry(table_kind kind) {
    table(kind);
    const dxf::record_id head = database_.drawing().table(row(kind).dxf_name);
    return head == dxf::no_record ? dxf::no_record : database_.drawing().last_in(head);
}

std::vector<dxf::record_id> symbol_names::entries(table_kind kind) const {
    std::vector<dxf::record_id> found;
    const dxf::record_table& all = database_.records();
    if (const dxf::record_id head = database_.drawing().table(row(kind).dxf_name); head != dxf::no_record) {
        for (dxf::record_id id = all.next(head);
             id != dxf::no_record && all.kind(id) == dxf::record_kind::entry; id = all.next(id))
            found.push_back(id);
    } else if (kind == table_kind::block) {
        found = database_.drawing().parts().block_begins;
    }
    if (kind == table_kind::block)
        for (dxf::record_id id = 0; id < all.size(); ++id)
            if (all.kind(id) == dxf::record_kind::implied && all.type(id) == dxf::type_block_record)
                found.push_back(id);
    return found;
}

std::wstring symbol_names::name_of(dxf::record_id entry) const {
    std::wstring name = database_.drawing().codec().decode(dxf::value_of(database_.records().text(entry), 2));
    // Drawings of R12 call the spaces so.
    if (base::equal_no_case(name, L"$MODEL_SPACE"))
        return ACDB_MODEL_SPACE;
    if (base::equal_no_case(name, L"$PAPER_SPACE"))
        return ACDB_PAPER_SPACE;
    return name;
}

bool symbol_names::is_entry(dxf::record_id record, table_kind& kind) const {
    const dxf::record_table& records = database_.records();
    kind = table_kind::block;
    switch (records.kind(record)) {
    case dxf::record_kind::entry: {
        const dxf::record_id table = records.find(records.owner_handle(record));
        if (table != dxf::no_record)
            kind = kind_of_table(table);
        return table != dxf::no_record;
    }
    case dxf::record_kind::block:
        return database_.drawing().table("BLOCK_RECORD") == dxf::no_record;
    case dxf::record_kind::implied:
        return records.type(record) == dxf::type_block_record;
    default:
        return false;
    }
}

// False for a name that another entry has: which of them is found depends on their order.
bool symbol_names::add(names& known, const std::wstring& name, dxf::record_id entry) {
    const auto [at, added] = known.by_name.try_emplace(name, entry);
    if (added)
        known.by_entry[entry] = &at->first;
    return added;
}

dxf::record_id symbol_names::find(table_kind kind, std::wstring_view name) {
    follow_changes();
    names& known = names_[static_cast<std::size_t>(kind)];
    if (known.known && known.answered == revision_ && known.asked == name)
        return known.answer;
    if (!known.known) {
        known = {};
        for (const dxf::record_id entry : entries(kind))
            if (!database_.records().gone(entry) && !add(known, base::folded(name_of(entry)), entry))
                known.doubles = true;
        known.known = knows_any_ = true;
    }
    const auto at = known.by_name.find(base::folded(name));
    known.asked = name;
    known.answer = at == known.by_name.end() ? dxf::no_record : at->second;
    known.answered = revision_;
    return known.answer;
}

bool symbol_names::is_taken(dxf::record_id entry) {
    table_kind kind{};
    return database_.records().kind(entry) == dxf::record_kind::entry && is_entry(entry, kind) &&
           find(kind, name_of(entry)) != dxf::no_record;
}

std::size_t symbol_names::revision() {
    follow_changes();
    return revision_;
}

std::size_t symbol_names::changes() {
    follow_changes();
    return changes_;
}

void symbol_names::follow_changes() {
    const dxf::record_table& records = database_.records();
    if (!knows_any_) {
        records_seen_ = records.size();
        journal_read_ = records.journal().size();
        return;
    }
    for (; records_seen_ < records.size(); ++records_seen_) // what the file leaves out is in no journal
        look_again(records_seen_);
    for (const auto& journal = records.journal(); journal_read_ < journal.size(); ++journal_read_)
        look_again(journal[journal_read_]);
}

// One name more or less rather than all names anew, unless several entries have it.
void symbol_names::look_again(dxf::record_id record) {
    const dxf::record_table& records = database_.records();
    if (records.kind(record) == dxf::record_kind::table) {
        ++revision_;
        ++changes_;
        for (names& known : names_)
            known.known = false;
        return;
    }
    table_kind kind{};
    if (!is_entry(record, kind))
        return;
    ++changes_;
    names& known = names_[static_cast<std::size_t>(kind)];
    if (!known.known)
        return;
    const bool gone = records.gone(record);
    const std::wstring name = gone ? std::wstring() : base::folded(name_of(record));
    const auto before = known.by_entry.find(record);
    if (before != known.by_entry.end()) {
        if (!gone && *before->second == name)
            return;
        known.by_name.erase(known.by_name.find(*before->second));
        known.by_entry.erase(before);
        known.known = !known.doubles;
    }
    ++revision_;
    if (!gone && known.known)
        known.known = add(known, name, record);
}

} // namespace db
