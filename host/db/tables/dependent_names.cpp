#include "host/db/tables/dependent_names.h"

#include "base/case_fold.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"

#include <algorithm>

namespace db {

bool is_shared_name(table_kind kind, std::wstring_view name) {
    const auto is = [&](std::initializer_list<std::wstring_view> names) {
        return std::any_of(names.begin(), names.end(),
                           [&](std::wstring_view shared) { return base::equal_no_case(name, shared); });
    };
    switch (kind) {
    case table_kind::layer:
        return is({L"0", L"DEFPOINTS"});
    case table_kind::linetype:
        return is({L"ByLayer", L"ByBlock", L"Continuous"});
    default:
        return false;
    }
}

std::wstring dependent_name(table_kind kind, std::wstring_view reference, std::wstring_view name) {
    if (name.find(L'|') != name.npos || is_shared_name(kind, name))
        return std::wstring(name);
    return std::wstring(reference) + L'|' + std::wstring(name);
}

dxf::record_id ruling_layer(AcDbImpDatabase& drawing, std::wstring_view reference, std::wstring_view layer) {
    return drawing.names().find(table_kind::layer, dependent_name(table_kind::layer, reference, layer));
}

std::wstring layer_seen(const AcDbImpDatabase& drawing, std::wstring_view layer) {
    return drawing.references().host() == nullptr
               ? std::wstring(layer)
               : dependent_name(table_kind::layer, drawing.references().name(), layer);
}

} // namespace db
