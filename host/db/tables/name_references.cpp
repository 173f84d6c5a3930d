#include "host/db/tables/name_references.h"

#include "base/case_fold.h"
#include "host/db/core/blocks.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/rules.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace db {

namespace {

// A group that holds a name: in records of a type ("": of all that stand on layers; "*": of all), behind a
// marker of the class that it belongs to ("*": wherever it stands). Records without markers (R12) have it
// anywhere, and what all entities have in common is theirs behind other markers too. Source: the DXF
// reference's group tables.
struct reference_row {
    table_kind kind;
    std::string_view type;
    std::string_view marker;
    int code;
};

constexpr reference_row references[] = {
    {table_kind::layer, "", "AcDbEntity", 8},
    {table_kind::layer, "*", "*", 1003},
    {table_kind::linetype, "", "AcDbEntity", 6},
    {table_kind::linetype, "LAYER", "AcDbLayerTableRecord", 6},
    {table_kind::linetype, "MLINESTYLE", "AcDbMlineStyle", 6},
    {table_kind::text_style, "TEXT", "AcDbText", 7},
    {table_kind::text_style, "ATTRIB", "AcDbText", 7},
    {table_kind::text_style, "ATTDEF", "AcDbText", 7},
    {table_kind::text_style, "MTEXT", "AcDbMText", 7},
    {table_kind::text_style, "ACAD_TABLE", "AcDbTable", 7},
    {table_kind::text_style, "TABLESTYLE", "AcDbTableStyle", 7},
    {table_kind::block, "INSERT", "AcDbBlockReference", 2},
    {table_kind::block, "INSERT", "AcDbMInsertBlock", 2},
    {table_kind::block, "ACAD_TABLE", "AcDbBlockReference", 2},
    {table_kind::block, "DIMENSION", "AcDbDimension", 2},
    {table_kind::block, "ARC_DIMENSION", "AcDbDimension", 2},
    {table_kind::block, "LARGE_RADIAL_DIMENSION", "AcDbDimension", 2},
    {table_kind::block, "DIMSTYLE", "AcDbDimStyleTableRecord", 5},
    {table_kind::block, "DIMSTYLE", "AcDbDimStyleTableRecord", 6},
    {table_kind::block, "DIMSTYLE", "AcDbDimStyleTableRecord", 7},
    {table_kind::block, "BLOCK", "AcDbBlockBegin", 2},
    {table_kind::block, "BLOCK", "AcDbBlockBegin", 3},
    {table_kind::dim_style, "DIMENSION", "AcDbDimension", 3},
    {table_kind::dim_style, "ARC_DIMENSION", "AcDbDimension", 3},
    {table_kind::dim_style, "LARGE_RADIAL_DIMENSION", "AcDbDimension", 3},
    {table_kind::dim_style, "LEADER", "AcDbLeader", 3},
    {table_kind::dim_style, "TOLERANCE", "AcDbFcf", 3},
    {table_kind::view, "LAYOUT", "AcDbPlotSettings", 6},
    {table_kind::view, "PLOTSETTINGS", "AcDbPlotSettings", 6},
    {table_kind::regapp, "*", "*", 1001},
};

struct variable_row {
    table_kind kind;
    std::string_view name;
    int code;
};

constexpr variable_row variables[] = {
    {table_kind::layer, "$CLAYER", 8},        {table_kind::linetype, "$CELTYPE", 6},
    {table_kind::linetype, "$DIMLTYPE", 6},   {table_kind::linetype, "$DIMLTEX1", 6},
    {table_kind::linetype, "$DIMLTEX2", 6},   {table_kind::text_style, "$TEXTSTYLE", 7},
    {table_kind::text_style, "$DIMTXSTY", 7}, {table_kind::dim_style, "$DIMSTYLE", 2},
    {table_kind::block, "$DIMBLK", 1},        {table_kind::block, "$DIMBLK1", 1},
    {table_kind::block, "$DIMBLK2", 1},       {table_kind::block, "$DIMLDRBLK", 1},
    {table_kind::ucs, "$UCSNAME", 2},         {table_kind::ucs, "$PUCSNAME", 2},
    {table_kind::ucs, "$UCSBASE", 2},         {table_kind::ucs, "$PUCSBASE", 2},
};

bool concerns(const reference_row& row, std::string_view type, dxf::record_kind kind) {
    return row.type == "*" || (row.type.empty() ? dxf::stands_on_layer(kind) : row.type == type);
}

// Calls `found(row, index)` for each group that names something.
template<class Found>
void for_references(const dxf::group_list& list, std::string_view type, dxf::record_kind kind, Found found) {
    const auto& groups = list.groups();
    const dxf::common_set of_class = dxf::codes_of_class(type);
    const auto is_at = [&](const reference_row& row, std::string_view marker) {
        return row.marker == "*" || marker.empty() || row.marker == marker ||
               (row.marker == dxf::common_marker && (dxf::common_bit(row.code) & ~of_class) != 0);
    };
    std::string_view marker;
    bool in_braces = false;
    for (std::size_t i = 1; i < groups.size(); ++i) {
        const int code = groups[i].code;
        if (code == 100) {
            marker = dxf::trimmed(groups[i].value);
            continue;
        }
        if (code == 102)
            in_braces = groups[i].value.starts_with('{');
        if (in_braces || (code > 8 && code < 1000))
            continue;
        for (const reference_row& row : references)
            if (row.code == code && is_at(row, marker) && concerns(row, type, kind)) {
                found(row, i);
                break;
            }
    }
}

// The records that may name what a kind of table holds.
std::vector<dxf::record_id> candidates(AcDbImpDatabase& database, table_kind kind, std::wstring_view name) {
    const dxf::record_table& records = database.records();
    std::vector<dxf::record_id> found;
    if (kind == table_kind::layer) {
        const std::vector<bool> numbers = database.layers().numbers_of(name);
        for (dxf::record_id id = 0; id < records.size(); ++id)
            if (dxf::stands_on_layer(records.kind(id)) && numbers[records.layer(id)])
                found.push_back(id);
        const auto& more = database.layers().name_holders();
        found.insert(found.end(), more.begin(), more.end());
        std::sort(found.begin(), found.end());
        found.erase(std::unique(found.begin(), found.end()), found.end());
        return found;
    }
    bool of_all_types = false;
    bool of_all_entities = false;
    std::vector<bool> types(records.type_names().size());
    for (const reference_row& row : references) {
        if (row.kind != kind)
            continue;
        of_all_types = of_all_types || row.type == "*";
        of_all_entities = of_all_entities || row.type.empty();
        for (std::uint32_t type = 0; type < types.size(); ++type)
            types[type] = types[type] || records.type_names()[type] == row.type;
    }
    for (dxf::record_id id = 0; id < records.size(); ++id) {
        const dxf::record_kind kind_of_record = records.kind(id);
        if (kind_of_record == dxf::record_kind::structure || kind_of_record == dxf::record_kind::header)
            continue;
        if (of_all_types || types[records.type(id)] ||
            (of_all_entities && dxf::stands_on_layer(kind_of_record)))
            found.push_back(id);
    }
    return found;
}

} // namespace

bool is_fixed_name(table_kind kind, std::wstring_view name) {
    const auto is = [&](std::wstring_view fixed) { return base::equal_no_case(name, fixed); };
    if (name.starts_with(L'*'))
        return true;
    switch (kind) {
    case table_kind::layer:
        return is(L"0");
    case table_kind::linetype:
        return is(L"ByLayer") || is(L"ByBlock") || is(L"Continuous");
    case table_kind::text_style:
        return is(L"Standard");
    case table_kind::regapp:
        return is(L"ACAD");
    default:
        return false;
    }
}

void follow_name(AcDbImpDatabase& database, table_kind kind, std::string_view before,
                 std::string_view after) {
    const dxf::text_codec& codec = database.drawing().codec();
    dxf::record_table& records = database.records();
    const std::wstring old_name = codec.decode(before);
    // Names are mostly spelled as their record spells them.
    const auto is_old = [&](std::string_view value) {
        value = dxf::trimmed(value);
        return value == before || base::equal_no_case(codec.decode(value), old_name);
    };
    const auto follow = [&](dxf::record_id id, dxf::group_list& groups) {
        for_references(groups, records.type_name(id), records.kind(id),
                       [&](const reference_row& row, std::size_t i) {
                           const dxf::group_list::fresh_group fresh[] = {{row.code, std::string(after)}};
                           if (row.kind == kind && is_old(groups.groups()[i].value))
                               groups.splice(i, i + 1, fresh);
                       });
    };
    for (const dxf::record_id id : candidates(database, kind, old_name)) {
        dxf::group_list groups(records.text(id));
        follow(id, groups);
        AcDbImpObject* const open = database.objects().opened(id);
        if (open != nullptr && open->changed())
            follow(id, open->edit());
        if (groups.changed()) {
            records.replace(id, groups.write(database.drawing().style()));
            if (open != nullptr && !open->changed())
                open->forget(); // it is read anew when it is asked next
        }
    }
    for (const variable_row& row : variables)
        if (const auto value = database.drawing().header_value(row.name);
            row.kind == kind && value && is_old(*value))
            database.drawing().set_header_value(row.name, row.code, after);
}

void keep_purgeable(AcDbImpDatabase& database, AcDbObjectIdArray& ids) {
    const dxf::record_table& records = database.records();
    const dxf::text_codec& codec = database.drawing().codec();
    std::unordered_set<std::wstring> used[table_kinds];
    std::unordered_set<std::uint64_t> held; // handles
    const auto use = [&](table_kind kind, std::string_view name) {
        used[static_cast<std::size_t>(kind)].insert(base::folded(codec.decode(dxf::trimmed(name))));
    };
    for (dxf::record_id id = 0; id < records.size(); ++id) {
        if (records.gone(id) || records.kind(id) == dxf::record_kind::structure)
            continue;
        const dxf::group_list groups(records.text(id));
        const bool is_block = records.type(id) == dxf::type_block; // which does not use itself
        for_references(groups, records.type_name(id), records.kind(id),
                       [&](const reference_row& row, std::size_t i) {
                           if (!is_block || row.kind != table_kind::block)
                               use(row.kind, groups.groups()[i].value);
                       });
        for (const dxf::group& group : groups.groups()) {
            const int code = group.code; // of hard pointers
            if ((code >= 340 && code <= 349) || (code >= 390 && code <= 399) || code == 480 || code == 481)
                held.insert(dxf::parse_handle(group.value));
        }
    }
    for (const variable_row& row : variables)
        if (const auto value = database.drawing().header_value(row.name))
            use(row.kind, *value);

    AcDbObjectIdArray kept;
    for (const AcDbObjectId& id : ids) {
        const dxf::record_id record = database.record(id);
        table_kind kind{};
        if (record == dxf::no_record || records.gone(record) || !database.names().is_entry(record, kind))
            continue;
        const std::wstring name = database.names().name_of(record);
        if (is_fixed_name(kind, name) && !(kind == table_kind::block && !db::blocks::is_space_name(name)))
            continue;
        const bool dependent = name.find(L'|') != name.npos;
        if (!dependent && !held.contains(records.handle(record)) &&
            !used[static_cast<std::size_t>(kind)].contains(base::folded(name)))
            kept.append(id);
    }
    ids = kept;
}

void for_names(const AcDbImpDatabase& database, dxf::record_id record, const dxf::group_list& groups,
               const std::function<void(table_kind, std::size_t)>& found) {
    const dxf::record_table& records = database.records();
    for_references(groups, records.type_name(record), records.kind(record),
                   [&](const reference_row& row, std::size_t i) { found(row.kind, i); });
}

void for_header_names(const AcDbImpDatabase& database,
                      const std::function<void(table_kind, const std::string& variable, int code,
                                               const std::string& value)>& found) {
    for (const variable_row& row : variables)
        if (const auto value = database.drawing().header_value(row.name))
            found(row.kind, std::string(row.name), row.code, std::string(*value));
}

} // namespace db
