#include "host/ed/view.h"

#include "base/number_text.h"
#include "dbmain.h"
#include "host/db/core/blocks.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"
#include "host/ed/system_variables.h"
#include "host/view/extents.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace ed {

namespace {

view view_of(const dxf::group_list& groups, const dxf::group_place& place, int height_code) {
    return {{groups.real(place, 12).value_or(0.0), groups.real(place, 22).value_or(0.0)},
            groups.real(place, height_code).value_or(0.0)};
}

constexpr int view_order[] = {12, 22, 13, 23, 14, 24, 15, 25, 16, 26, 36, 17, 27, 37, 40, 41, 42, 43, 44, 45};

// The record that holds the view of a space, and in which group its height stands.
struct view_place {
    dxf::record_id record = dxf::no_record;
    dxf::group_place groups;
    int height_code = 0;
};

// Of the Model tab: the viewport "*Active"; of several (tiled) ones the first. Of a sheet: its first viewport
// is the sheet itself.
view_place place_of_view(AcDbImpDatabase& database) {
    if (database.self().tilemode())
        return {database.names().find(db::table_kind::viewport, L"*Active"),
                {"AcDbViewportTableRecord", view_order},
                40};
    const dxf::record_id sheet = database.record(database.self().currentSpaceId());
    for (const dxf::record_id entity : database.blocks().entities(sheet))
        if (database.records().type(entity) == dxf::type_viewport && !database.records().gone(entity))
            return {entity, {"AcDbViewport", view_order}, 45};
    return {};
}

view saved_view(AcDbImpDatabase& database) {
    const view_place place = place_of_view(database);
    if (place.record != dxf::no_record)
        return view_of(dxf::group_list(database.records().text(place.record)), place.groups,
                       place.height_code);
    const auto height = database.drawing().header_value("$VIEWSIZE"); // before R12
    return {{}, database.self().tilemode() && height ? dxf::leading_real(*height).value_or(0.0) : 0.0};
}

bool save_view(AcDbImpDatabase& database, const view& wanted) {
    const view_place place = place_of_view(database);
    if (place.record == dxf::no_record || database.records().implied(place.record))
        return false;
    dxf::group_list groups(database.records().text(place.record));
    groups.set_real(place.groups, 12, wanted.center.x);
    groups.set_real(place.groups, 22, wanted.center.y);
    groups.set_real(place.groups, place.height_code, wanted.height);
    return database.records().replace(place.record, groups.write(database.drawing().style()));
}

// The views before the present one, the last one last.
struct past_views {
    explicit past_views(AcDbImpDatabase& /*database*/) {}
    std::vector<std::pair<dxf::record_id, view>> all; // by the record that holds them
};

} // namespace

view current_view(AcDbImpDatabase& database) {
    const dxf::record_id space = database.record(database.self().currentSpaceId());
    const view saved = saved_view(database);
    if (saved.height > 0.0)
        return saved;
    const AcDbExtents& extents = gi::extents_of_block(database, space);
    if (gi::is_empty(extents))
        return {{}, 1.0};
    const AcGePoint3d least = extents.minPoint();
    const AcGePoint3d most = extents.maxPoint();
    return {{(least.x + most.x) / 2.0, (least.y + most.y) / 2.0},
            std::max({most.y - least.y, (most.x - least.x) / width_to_height, 1e-9})};
}

std::optional<view> view_of_window(const AcGePoint3d& first, const AcGePoint3d& second) {
    const double height =
        std::max(std::fabs(second.y - first.y), std::fabs(second.x - first.x) / width_to_height);
    if (!(height > 0.0) || !std::isfinite(height))
        return std::nullopt;
    return view{{(first.x + second.x) / 2.0, (first.y + second.y) / 2.0}, height};
}

bool set_current_view(AcDbImpDatabase& database, const view& wanted) {
    const view before = current_view(database);
    if (!save_view(database, wanted))
        return false;
    database.part<past_views>().all.emplace_back(place_of_view(database).record, before);
    return true;
}

bool take_back_view(AcDbImpDatabase& database) {
    auto& all = database.part<past_views>().all;
    const dxf::record_id record = place_of_view(database).record;
    const auto last =
        std::find_if(all.rbegin(), all.rend(), [&](const auto& past) { return past.first == record; });
    if (last == all.rend() || !save_view(database, last->second))
        return false;
    all.erase(std::next(last).base());
    return true;
}

double pick_reach(AcDbImpDatabase& database) {
    constexpr double pixels_high = 1080.0;
    variable_value pickbox = 3;
    get_variable(L"PICKBOX", pickbox);
    return std::max(std::get<int>(pickbox), 1) * current_view(database).height / pixels_high;
}

} // namespace ed
