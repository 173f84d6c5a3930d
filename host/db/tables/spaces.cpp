#include "host/db/tables/spaces.h"

#include "base/case_fold.h"
#include "host/db/core/blocks.h"
#include "host/db/core/notifier.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/viewport_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace db {

namespace {

constexpr dxf::group_place layout_place{"AcDbLayout"};
constexpr int sheet_number = 1;
constexpr int first_of_model = 2; // the first viewport that shows model space

// What the user works in, as far as the file does not tell.
struct chosen {
    explicit chosen(AcDbImpDatabase& /*database*/) {}

    dxf::record_id sheet = dxf::no_record;
    dxf::record_id viewport = dxf::no_record; // on a sheet, or one of the table's
};

chosen& chosen_in(const AcDbImpDatabase& database) {
    return database.part<chosen>();
}

dxf::record_id model_space(AcDbImpDatabase& database) {
    return database.blocks().find(ACDB_MODEL_SPACE);
}

bool there(const AcDbImpDatabase& database, dxf::record_id record) {
    return record != dxf::no_record && !database.records().gone(record);
}

// Layouts in the order of the file.
std::vector<dxf::record_id> layouts(const AcDbImpDatabase& database) {
    const dxf::record_table& records = database.records();
    std::vector<dxf::record_id> found;
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.type(id) == dxf::type_layout && records.kind(id) == dxf::record_kind::object &&
            !records.gone(id))
            found.push_back(id);
    return found;
}

dxf::record_id space_of(const AcDbImpDatabase& database, dxf::record_id layout) {
    return database.records().find(
        dxf::group_list(database.records().text(layout)).handle(layout_place, 330));
}

// The viewports of the Model tab: records of the table with the name that all of them have.
std::vector<dxf::record_id> tiled_viewports(AcDbImpDatabase& database) {
    std::vector<dxf::record_id> found = database.names().entries(table_kind::viewport);
    std::erase_if(found, [&](dxf::record_id entry) {
        return database.records().gone(entry) ||
               !base::equal_no_case(database.names().name_of(entry), L"*Active");
    });
    return found;
}

bool is_on(const AcDbImpDatabase& database, dxf::record_id viewport) {
    return viewport_is_on(dxf::group_list(database.records().text(viewport)));
}

// Whether the user has gone into a viewport of the current sheet, which is still there and on.
bool through_viewport(AcDbImpDatabase& database) {
    const dxf::record_id chosen = chosen_in(database).viewport;
    const dxf::record_table& records = database.records();
    return there(database, chosen) && records.type(chosen) == dxf::type_viewport &&
           records.owner_handle(chosen) == records.handle(current_sheet(database)) && is_on(database, chosen);
}

// Their numbers in the order of viewports(): the file's where they are of use, else the next that is free.
std::vector<int> numbers(const AcDbImpDatabase& database, const std::vector<dxf::record_id>& all) {
    std::vector<int> given(all.size(), 0);
    const auto taken = [&](int number) {
        return std::find(given.begin(), given.end(), number) != given.end();
    };
    for (std::size_t i = 0; i < all.size(); ++i) {
        const auto number = static_cast<int>(
            dxf::group_list(database.records().text(all[i])).integer(viewport_place, 69).value_or(0));
        given[i] = i == 0 ? sheet_number : number >= first_of_model && !taken(number) ? number : 0;
    }
    int next = first_of_model;
    for (int& number : given)
        if (number == 0) {
            while (taken(next))
                ++next;
            number = next;
        }
    return given;
}

} // namespace

bool in_tile_mode(const AcDbImpDatabase& database) {
    return database.drawing().header_value("$TILEMODE").value_or("1") != "0";
}

bool set_tile_mode(AcDbImpDatabase& database, bool tiled) {
    return in_tile_mode(database) == tiled ||
           database.notifier().set_header_value("$TILEMODE", 70, tiled ? "1" : "0");
}

dxf::record_id layout_of(AcDbImpDatabase& database, dxf::record_id space) {
    const dxf::record_table& records = database.records();
    const dxf::record_id named =
        records.find(dxf::group_list(records.text(space)).handle({"AcDbBlockTableRecord"}, 340));
    if (there(database, named) && records.type(named) == dxf::type_layout)
        return named;
    for (const dxf::record_id layout : layouts(database))
        if (space_of(database, layout) == space)
            return layout;
    return dxf::no_record;
}

std::wstring tab_name(AcDbImpDatabase& database, dxf::record_id space) {
    const dxf::record_id layout = layout_of(database, space);
    if (layout == dxf::no_record)
        return space == model_space(database) ? L"Model" : L"Layout1";
    return database.drawing().codec().decode(
        dxf::trimmed(dxf::group_list(database.records().text(layout)).text(layout_place, 1).value_or("")));
}

dxf::record_id current_sheet(AcDbImpDatabase& database) {
    return there(database, chosen_in(database).sheet) ? chosen_in(database).sheet
                                                      : database.blocks().find(ACDB_PAPER_SPACE);
}

dxf::record_id current_tab(AcDbImpDatabase& database) {
    return in_tile_mode(database) ? model_space(database) : current_sheet(database);
}

bool set_current_tab(AcDbImpDatabase& database, std::wstring_view name) {
    std::vector<dxf::record_id> spaces = {model_space(database), database.blocks().find(ACDB_PAPER_SPACE)};
    for (const dxf::record_id layout : layouts(database))
        spaces.push_back(space_of(database, layout));
    const auto wanted = std::find_if(spaces.begin(), spaces.end(), [&](dxf::record_id space) {
        return there(database, space) && base::equal_no_case(tab_name(database, space), name);
    });
    if (wanted == spaces.end() || !set_tile_mode(database, *wanted == model_space(database)))
        return false;
    if (*wanted != model_space(database))
        chosen_in(database).sheet = *wanted;
    chosen_in(database).viewport = dxf::no_record;
    return true;
}

dxf::record_id current_space(AcDbImpDatabase& database) {
    return in_tile_mode(database) || through_viewport(database) ? model_space(database)
                                                                : current_sheet(database);
}

std::vector<dxf::record_id> viewports(AcDbImpDatabase& database, dxf::record_id sheet) {
    const dxf::record_table& records = database.records();
    std::vector<dxf::record_id> found;
    if (sheet == dxf::no_record)
        return found;
    const std::uint64_t owner = records.handle(sheet);
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.type(id) == dxf::type_viewport && records.owner_handle(id) == owner && !records.gone(id))
            found.push_back(id);
    return found;
}

bool is_sheet_itself(const AcDbImpDatabase& database, dxf::record_id viewport) {
    const dxf::record_table& records = database.records();
    for (dxf::record_id id = 0; id < viewport; ++id)
        if (records.type(id) == dxf::type_viewport && records.owner(id) == records.owner(viewport) &&
            !records.gone(id))
            return false;
    return true;
}

int viewport_number(AcDbImpDatabase& database, dxf::record_id viewport) {
    if (in_tile_mode(database))
        return -1;
    const auto all = viewports(database, current_sheet(database));
    const auto at = std::find(all.begin(), all.end(), viewport);
    return at == all.end() ? -1 : numbers(database, all)[static_cast<std::size_t>(at - all.begin())];
}

dxf::record_id viewport_by_number(AcDbImpDatabase& database, int number) {
    if (in_tile_mode(database)) {
        const auto all = tiled_viewports(database);
        const auto index = static_cast<std::size_t>(number - first_of_model);
        return number >= first_of_model && index < all.size() ? all[index] : dxf::no_record;
    }
    const auto all = viewports(database, current_sheet(database));
    const auto given = numbers(database, all);
    const auto at = std::find(given.begin(), given.end(), number);
    return at == given.end() ? dxf::no_record : all[static_cast<std::size_t>(at - given.begin())];
}

int current_viewport_number(AcDbImpDatabase& database) {
    if (!in_tile_mode(database))
        return through_viewport(database) ? viewport_number(database, chosen_in(database).viewport)
                                          : sheet_number;
    const auto all = tiled_viewports(database);
    const auto at = std::find(all.begin(), all.end(), chosen_in(database).viewport);
    return first_of_model + (at == all.end() ? 0 : static_cast<int>(at - all.begin()));
}

dxf::record_id current_viewport(AcDbImpDatabase& database) {
    return viewport_by_number(database, current_viewport_number(database));
}

bool set_current_viewport(AcDbImpDatabase& database, int number) {
    const bool tiled = in_tile_mode(database);
    if (!tiled && number == sheet_number) {
        chosen_in(database).viewport = dxf::no_record;
        return true;
    }
    const dxf::record_id wanted = viewport_by_number(database, number);
    if (wanted == dxf::no_record || (!tiled && !is_on(database, wanted)))
        return false;
    chosen_in(database).viewport = wanted;
    return true;
}

} // namespace db
