#include "host/ed/view.h"

#include "base/number_text.h"
#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"
#include "host/ed/system_variables.h"
#include "host/view/extents.h"

#include <algorithm>

namespace ed {

namespace {

view view_of(const dxf::group_list& groups, const dxf::group_place& place, int height_code) {
    return {{groups.real(place, 12).value_or(0.0), groups.real(place, 22).value_or(0.0)},
            groups.real(place, height_code).value_or(0.0)};
}

// Of the Model tab: the viewport "*Active"; of several (tiled) ones the first.
view saved_model_view(AcDbImpDatabase& database) {
    const dxf::record_id active = database.names().find(db::table_kind::viewport, L"*Active");
    if (active != dxf::no_record) {
        constexpr dxf::group_place place{"AcDbViewportTableRecord"};
        return view_of(dxf::group_list(database.records().text(active)), place, 40);
    }
    const auto height = database.drawing().header_value("$VIEWSIZE"); // before R12
    return {{}, height ? dxf::leading_real(*height).value_or(0.0) : 0.0};
}

// Of a sheet: its first viewport is the sheet itself.
view saved_sheet_view(AcDbImpDatabase& database, dxf::record_id sheet) {
    for (const dxf::record_id entity : database.blocks().entities(sheet))
        if (database.records().type(entity) == dxf::type_viewport && !database.records().gone(entity)) {
            constexpr dxf::group_place place{"AcDbViewport"};
            return view_of(dxf::group_list(database.records().text(entity)), place, 45);
        }
    return {};
}

} // namespace

view current_view(AcDbImpDatabase& database) {
    const dxf::record_id space = database.record(database.self().currentSpaceId());
    view saved = database.self().tilemode() ? saved_model_view(database) : saved_sheet_view(database, space);
    if (saved.height > 0.0)
        return saved;
    const AcDbExtents& extents = gi::extents_of_block(database, space);
    if (gi::is_empty(extents))
        return {{}, 1.0};
    const AcGePoint3d least = extents.minPoint();
    const AcGePoint3d most = extents.maxPoint();
    constexpr double width_to_height = 16.0 / 9.0;
    return {{(least.x + most.x) / 2.0, (least.y + most.y) / 2.0},
            std::max({most.y - least.y, (most.x - least.x) / width_to_height, 1e-9})};
}

double pick_reach(AcDbImpDatabase& database) {
    constexpr double pixels_high = 1080.0;
    variable_value pickbox = 3;
    get_variable(L"PICKBOX", pickbox);
    return std::max(std::get<int>(pickbox), 1) * current_view(database).height / pixels_high;
}

} // namespace ed
