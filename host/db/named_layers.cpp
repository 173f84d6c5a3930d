#include "host/db/named_layers.h"

#include "base/utf.h"
#include "host/db/imp_object.h"
#include "host/db/properties.h"
#include "host/db/symbol_entry.h"
#include "host/db/xref_names.h"
#include "host/dxf/record_header.h"

namespace db {

void imply_layers(AcDbImpDatabase& drawing, bool dependent) {
    const auto imply = [&](const std::wstring& name) {
        if (drawing.find_entry(table_kind::layer, name) != dxf::no_record)
            return;
        AcDbImpObject layer;
        layer.begin_new(new_entry_text("AcDbLayerTableRecord"));
        layer.edit().set_text(name_place, 2, base::narrow(name));
        drawing.add_implied_entry(table_kind::layer, layer);
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

void settle_layer_zero(AcDbImpDatabase& drawing) {
    const dxf::record_id zero = drawing.find_entry(table_kind::layer, L"0");
    if (zero != dxf::no_record && drawing.records().implied(zero))
        settle_entry(drawing, zero);
}

} // namespace db
