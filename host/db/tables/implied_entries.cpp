#include "host/db/tables/implied_entries.h"

#include "base/utf.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/rules.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

namespace db {

namespace {

constexpr int style_of_text = 340; // of a linetype's element

} // namespace

dxf::record_id add_implied_entry(AcDbImpDatabase& drawing, table_kind kind, const AcDbImpObject& entry) {
    const dxf::record_id previous = drawing.names().place_for_entry(kind);
    if (previous == dxf::no_record)
        return dxf::no_record;
    return drawing.records().insert_implied(previous, entry_text(drawing, kind, entry),
                                            dxf::record_kind::entry,
                                            drawing.records().handle(drawing.names().table(kind)));
}

void imply_layers(AcDbImpDatabase& drawing, bool dependent) {
    const auto imply = [&](const std::wstring& name) {
        if (drawing.names().find(table_kind::layer, name) != dxf::no_record)
            return;
        AcDbImpObject layer;
        layer.begin_new(new_entry_text("AcDbLayerTableRecord"));
        layer.edit().set_text(name_place, 2, base::narrow(name));
        add_implied_entry(drawing, table_kind::layer, layer);
    };
    imply(L"0");
    const dxf::name_set& names = drawing.records().layer_names();
    const std::uint32_t named = names.size();
    for (std::uint32_t number = 0; number < named; ++number) {
        const std::wstring name = drawing.drawing().codec().decode(dxf::trimmed(names[number]));
        if (!name.empty() && (dependent || name.find(L'|') == name.npos))
            imply(name);
    }
}

void settle_entry(AcDbImpDatabase& drawing, dxf::record_id entry) {
    dxf::record_table& records = drawing.records();
    const auto settle_implied = [&](dxf::record_id named) {
        if (named != dxf::no_record && records.implied(named))
            settle_entry(drawing, named);
    };
    const bool settled = records.settle(entry);
    const dxf::group_list groups(records.text(entry));
    if (records.type(entry) == dxf::type_layer) {
        const std::wstring linetype =
            drawing.drawing().codec().decode(dxf::trimmed(groups.text(layer_place, 6).value_or("")));
        settle_implied(drawing.names().find(table_kind::linetype, linetype));
        if (settled)
            settle_layer_zero(drawing);
    } else if (records.type(entry) == dxf::type_ltype)
        for (const dxf::group& group : groups.groups())
            if (group.code == style_of_text)
                settle_implied(records.find(dxf::parse_handle(group.value)));
}

void drawing_came(AcDbImpDatabase& database) {
    imply_layers(database, false);
}

void entry_changed(AcDbImpDatabase& database, dxf::record_id entry, bool was_implied) {
    settle_entry(database, entry);
    if (was_implied && database.records().type(entry) == dxf::type_layer)
        settle_layer_zero(database);
}

void settle_layer_zero(AcDbImpDatabase& drawing) {
    const dxf::record_id zero = drawing.names().find(table_kind::layer, L"0");
    if (zero != dxf::no_record && drawing.records().implied(zero))
        settle_entry(drawing, zero);
}

} // namespace db
