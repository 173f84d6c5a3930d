#include "host/db/tables/viewport_groups.h"
#include "host/db/core/format_versions.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <functional>

namespace db {

namespace {

// Source: the DXF reference's group table, in the order in which the files of the big programs show it.
constexpr field viewport_fields[] = {
    point(10, "0.0"),  number(40, "1.0"),   number(41, "1.0"), number(68, "1"),   number(69, "0"),
    pair(12, "0.0"),   pair(13, "0.0"),     pair(14, "10.0"),  pair(15, "10.0"),  point(16, "0.0 0.0 1.0"),
    point(17, "0.0"),  number(42, "50.0"),  number(43, "0.0"), number(44, "0.0"), number(45, "1.0"),
    number(50, "0.0"), number(51, "0.0"),   number(72, "100"), number(331),       number(341),
    number(340),       number(90, "32864"), number(1),         number(281),       number(71),
    number(74),        point(110),          point(111),        point(112),        number(345),
    number(346),       number(79),          number(146),       number(170),       number(61),
    number(348),       number(292),         number(282),       number(141),       number(142),
    number(63),        number(421),         number(431),       number(332),       number(333),
    number(334),       number(361),         number(335)};

constexpr int soft_layer = 331;
constexpr int hard_layer = 341;
constexpr int application_name = 1001;
constexpr int string_value = 1000;
constexpr int control_string = 1002;
constexpr int layer_name = 1003;

bool is(const dxf::group& group, int code, std::string_view value) {
    return group.code == code && dxf::trimmed(group.value) == value;
}

// The MVIEW list: from behind its opening brace to its closing one, and the list of layers in it, with
// braces.
struct mview {
    std::size_t first = dxf::group_list::npos;
    std::size_t last = 0;
    std::size_t layers = dxf::group_list::npos; // the opening brace
    std::size_t layers_end = 0;                 // the closing one
    bool there() const { return first != dxf::group_list::npos; }
};

mview find_mview(const dxf::group_list& list) {
    const auto& groups = list.groups();
    mview found;
    bool of_acad = false;
    int depth = 0;
    std::size_t opened = 0;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].code == application_name)
            of_acad = is(groups[i], application_name, "ACAD");
        if (!found.there()) {
            if (of_acad && is(groups[i], string_value, "MVIEW") && i + 1 < groups.size() &&
                is(groups[i + 1], control_string, "{"))
                found.first = i + 2;
            continue;
        }
        if (i < found.first)
            continue;
        found.last = i;
        if (groups[i].code == application_name)
            return found; // its closing brace is missing
        if (is(groups[i], control_string, "{")) {
            if (depth++ == 0)
                opened = i;
        } else if (is(groups[i], control_string, "}")) {
            if (depth == 0)
                return found;
            if (--depth == 0) {
                found.layers = opened;
                found.layers_end = i;
            }
        }
    }
    found.last = groups.size();
    return found;
}

// The groups of the viewport itself that name layers; in braces they would belong to others.
void for_layer_handles(const dxf::group_list& list, const std::function<void(std::size_t)>& take) {
    bool in_braces = false;
    const auto& groups = list.groups();
    for (std::size_t i = 0; i < groups.size() && groups[i].code < application_name - 1; ++i) {
        if (groups[i].code == 102)
            in_braces = groups[i].value.find('{') != std::string_view::npos;
        else if (!in_braces && (groups[i].code == soft_layer || groups[i].code == hard_layer))
            take(i);
    }
}

void for_layer_names(const dxf::group_list& list, const std::function<void(std::size_t)>& take) {
    const mview found = find_mview(list);
    if (found.layers == dxf::group_list::npos)
        return;
    for (std::size_t i = found.layers + 1; i < found.layers_end; ++i)
        if (list.groups()[i].code == layer_name)
            take(i);
}

// The MVIEW list of a viewport that has none: the view as the editor begins with it. Source: the DXF
// reference's table of viewport data, with the values that drawings hold.
std::vector<dxf::group_list::fresh_group> new_mview(const dxf::group_list& list) {
    const std::string height = base::real_text(list.real(viewport_place, 41).value_or(1.0));
    return {{string_value, "MVIEW"},
            {control_string, "{"},
            {1070, "16"},
            {1010, "0.0"},
            {1020, "0.0"},
            {1030, "0.0"}, // target
            {1010, "0.0"},
            {1020, "0.0"},
            {1030, "1.0"}, // direction
            {1040, "0.0"},
            {1040, height},
            {1040, "0.0"},
            {1040, "0.0"}, // twist, height, centre
            {1040, "50.0"},
            {1040, "0.0"},
            {1040, "0.0"}, // lens, clipping
            {1070, "0"},
            {1070, "100"},
            {1070, "1"},
            {1070, "1"}, // mode, circle zoom, fast zoom, icon
            {1070, "0"},
            {1070, "0"},
            {1070, "0"},
            {1070, "0"}, // snap, grid, style, pair
            {1040, "0.0"},
            {1040, "0.0"},
            {1040, "0.0"}, // snap angle and base
            {1040, "10.0"},
            {1040, "10.0"},
            {1040, "10.0"},
            {1040, "10.0"}, // snap and grid spacing
            {1070, "0"},
            {control_string, "{"},
            {control_string, "}"},
            {control_string, "}"}};
}

void add_mview(dxf::group_list& groups) {
    const auto& all = groups.groups();
    const auto acad = std::find_if(
        all.begin(), all.end(), [](const dxf::group& group) { return is(group, application_name, "ACAD"); });
    auto fresh = new_mview(groups);
    auto at = static_cast<std::size_t>(acad - all.begin());
    if (acad == all.end())
        fresh.insert(fresh.begin(), {application_name, "ACAD"});
    else
        ++at;
    groups.splice(at, at, fresh);
}

void freeze_by_name(AcDbImpObject& viewport, dxf::record_id layer) {
    dxf::group_list& groups = viewport.edit();
    if (!find_mview(groups).there())
        add_mview(groups);
    const mview found = find_mview(groups);
    std::vector<dxf::group_list::fresh_group> fresh = {
        {layer_name, viewport.database->layers().bytes_of(viewport.database->names().name_of(layer))}};
    if (found.layers != dxf::group_list::npos) {
        groups.splice(found.layers_end, found.layers_end, fresh);
        return;
    }
    fresh.insert(fresh.begin(), {control_string, "{"});
    fresh.push_back({control_string, "}"});
    groups.splice(found.last, found.last, fresh);
}

void freeze_by_handle(AcDbImpObject& viewport, dxf::record_id layer) {
    std::size_t last = dxf::group_list::npos;
    for_layer_handles(viewport.groups(), [&](std::size_t at) { last = at; });
    const std::string handle = handle_text(viewport.database->records().handle(layer));
    if (last == dxf::group_list::npos) {
        viewport.edit().set_text(viewport_place, soft_layer, handle);
        return;
    }
    const dxf::group_list::fresh_group fresh[] = {{viewport.groups().groups()[last].code, handle}};
    viewport.edit().splice(last + 1, last + 1, fresh);
}

// Takes away the groups that name layers, by handle and by name, for which `wanted` answers true.
void remove_layers(AcDbImpObject& viewport, const std::function<bool(const dxf::group&)>& wanted) {
    std::vector<std::size_t> unwanted;
    const auto note = [&](std::size_t at) {
        if (wanted(viewport.groups().groups()[at]))
            unwanted.push_back(at);
    };
    for_layer_handles(viewport.groups(), note);
    for_layer_names(viewport.groups(), note);
    for (auto at = unwanted.rbegin(); at != unwanted.rend(); ++at)
        viewport.edit().splice(*at, *at + 1, {});
}

dxf::record_id layer_named_by(const AcDbImpObject& viewport, const dxf::group& group) {
    if (group.code == layer_name)
        return viewport.database->names().find(table_kind::layer, viewport.decode(dxf::trimmed(group.value)));
    const dxf::record_id found = viewport.database->records().find(dxf::parse_handle(group.value));
    return found != dxf::no_record && viewport.database->records().type(found) == dxf::type_layer
               ? found
               : dxf::no_record;
}

} // namespace

constexpr section viewport_place = section_of<viewport_fields>("AcDbViewport");

bool uses_list(const AcDbImpObject& viewport) {
    constexpr int view_height = 45;
    if (viewport.database == nullptr ||
        viewport.groups().find(viewport_place, view_height) != dxf::group_list::npos)
        return false;
    return viewport.database->drawing().version() < release_2000 || find_mview(viewport.groups()).there();
}

double viewport_real(const dxf::group_list& groups, const viewport_field& field, double missing) {
    if (const auto value = groups.real(viewport_place, field.code))
        return *value;
    const mview found = field.in_list != 0 ? find_mview(groups) : mview();
    if (!found.there() || found.first + field.in_list >= found.last)
        return missing;
    return dxf::leading_real(groups.groups()[found.first + field.in_list].value).value_or(missing);
}

void set_viewport_real(AcDbImpObject& viewport, const viewport_field& field, double value) {
    dxf::group_list& groups = viewport.edit();
    if (field.in_list == 0 || !uses_list(viewport) || groups.real(viewport_place, field.code)) {
        groups.set_real(viewport_place, field.code, value);
        return;
    }
    if (viewport_real(groups, field, value + 1.0) == value)
        return;
    if (!find_mview(groups).there())
        add_mview(groups);
    const mview found = find_mview(groups);
    const std::size_t at = found.first + field.in_list;
    if (at >= found.last) // a list that breaks off
        return;
    const dxf::group_list::fresh_group fresh[] = {{groups.groups()[at].code, base::real_text(value)}};
    groups.splice(at, at + 1, fresh);
}

bool viewport_is_on(const dxf::group_list& groups) {
    constexpr std::int64_t off_bit = 0x20000;
    if (const auto flags = groups.integer(viewport_place, 90))
        return (*flags & off_bit) == 0;
    return groups.integer(viewport_place, 68).value_or(1) != 0;
}

std::vector<dxf::record_id> frozen_layers(const AcDbImpObject& viewport) {
    std::vector<dxf::record_id> found;
    if (viewport.database == nullptr)
        return found;
    const auto take = [&](std::size_t at) {
        const dxf::record_id layer = layer_named_by(viewport, viewport.groups().groups()[at]);
        if (layer != dxf::no_record && !viewport.database->records().gone(layer) &&
            std::find(found.begin(), found.end(), layer) == found.end())
            found.push_back(layer);
    };
    for_layer_handles(viewport.groups(), take);
    for_layer_names(viewport.groups(), take);
    return found;
}

void freeze_in_viewport(AcDbImpObject& viewport, dxf::record_id layer) {
    settle_entry(*viewport.database, layer); // what is saved must not name what is not
    if (uses_list(viewport))
        freeze_by_name(viewport, layer);
    else
        freeze_by_handle(viewport, layer);
}

void thaw_in_viewport(AcDbImpObject& viewport, dxf::record_id layer) {
    remove_layers(viewport,
                  [&](const dxf::group& group) { return layer_named_by(viewport, group) == layer; });
}

void thaw_all_in_viewport(AcDbImpObject& viewport) {
    remove_layers(viewport, [](const dxf::group&) { return true; });
}

void begin_viewport(AcDbImpObject& viewport) {
    AcDbImpDatabase& database = *viewport.database;
    const dxf::record_table& records = database.records();
    const dxf::record_id sheet = records.find(records.owner_handle(viewport.record));
    std::int64_t number = 1;
    for (const dxf::record_id other : viewports(database, sheet))
        if (other != viewport.record)
            number = std::max(number,
                              dxf::group_list(records.text(other)).integer(viewport_place, 69).value_or(0)) +
                     1;
    viewport.edit().set_integer(viewport_place, 68, number);
    viewport.edit().set_integer(viewport_place, 69, number);
    constexpr std::int64_t frozen_in_new = 2;
    for (const dxf::record_id layer : database.names().entries(table_kind::layer))
        if (!records.gone(layer) &&
            (dxf::group_list(records.text(layer)).integer(layer_place, 70).value_or(0) & frozen_in_new) != 0)
            freeze_in_viewport(viewport, layer);
}

} // namespace db
