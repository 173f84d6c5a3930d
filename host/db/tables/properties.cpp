#include "host/db/tables/properties.h"
#include "host/db/core/format_versions.h"

#include "base/number_text.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/references.h"
#include "host/db/tables/dependent_names.h"
#include "host/dxf/common_groups.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <array>

namespace db {

namespace {

constexpr int entity_order[] = {67, 410, 8, 6, 347, 62, 370, 48, 60, 92, 160, 310, 420, 430, 440, 390, 284};

} // namespace

const dxf::group_place entity_place{dxf::common_marker, entity_order};
const dxf::group_place name_place{"*"};

AcCmColor read_color(const AcDbImpObject& object, const dxf::group_place& place, int missing) {
    AcCmColor color;
    const auto& groups = object.groups();
    if (const auto rgb = groups.integer(place, 420)) {
        color.setRGB(static_cast<Adesk::UInt8>(*rgb >> 16), static_cast<Adesk::UInt8>(*rgb >> 8),
                     static_cast<Adesk::UInt8>(*rgb));
        if (const auto names = groups.text(place, 430)) {
            // "BOOK$COLOUR", or a colour's name alone
            const std::wstring text = object.decode(dxf::trimmed(*names));
            const auto dollar = text.find(L'$');
            if (dollar == text.npos)
                color.setNames(text.c_str());
            else
                color.setNames(text.substr(dollar + 1).c_str(), text.substr(0, dollar).c_str());
        }
        return color;
    }
    const auto index = groups.integer(place, 62).value_or(missing);
    color.setColorIndex(
        static_cast<Adesk::UInt16>(std::clamp<std::int64_t>(index < 0 ? -index : index, 0, 257)));
    return color;
}

void write_color(AcDbImpObject& object, const dxf::group_place& place, const AcCmColor& color, int sign) {
    auto& groups = object.edit();
    const bool by_layer = color.isByLayer() && groups.find(place, 62) == dxf::group_list::npos;
    if (!by_layer) // what an entity leaves out is ByLayer
        groups.set_integer(place, 62, sign * static_cast<int>(color.colorIndex()));
    if (!color.isByColor() || !knows_true_colors(object)) { // then the nearest index stands for it
        groups.remove(place, 420);
        groups.remove(place, 430);
        return;
    }
    groups.set_integer(place, 420, color.red() << 16 | color.green() << 8 | color.blue());
    if (color.colorName() == nullptr) {
        groups.remove(place, 430);
        return;
    }
    std::wstring names = color.bookName() != nullptr ? std::wstring(color.bookName()) + L'$' : std::wstring();
    groups.set_text(place, 430, object.encode(names + color.colorName()));
}

void copy_properties(const AcDbImpObject& from, AcDbImpObject& to) {
    constexpr int copied[] = {8, 6, 62, 370, 48, 60, 420, 430, 440};
    constexpr int handles[] = {347, 390, 284}; // which mean something in one drawing
    const bool leaves_reference = from.database != to.database && from.database != nullptr &&
                                  from.database->references().host() != nullptr;
    const auto copy = [&](int code) {
        const auto value = from.groups().text(entity_place, code);
        if (!value) {
            to.edit().remove(entity_place, code);
        } else if (dxf::kind_of_code(code) == dxf::value_kind::text) {
            std::wstring text = from.decode(dxf::trimmed(*value));
            if (leaves_reference && (code == 8 || code == 6))
                text = dependent_name(code == 8 ? table_kind::layer : table_kind::linetype,
                                      from.database->references().name(), text);
            to.edit().set_text(entity_place, code, to.encode(text));
        } else
            to.edit().set_text(entity_place, code, dxf::trimmed(*value));
    };
    for (const int code : copied)
        copy(code);
    if (from.database == to.database)
        for (const int code : handles)
            copy(code);
    to.given = ~0u;
}

bool is_line_weight(int weight) {
    static constexpr std::array legal = {-3, -2, -1, 0,  5,  9,  13,  15,  18,  20,  25,  30,  35, 40,
                                         50, 53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    return std::find(legal.begin(), legal.end(), weight) != legal.end();
}

bool knows_line_weights(const AcDbImpObject& object) {
    return object.database == nullptr || object.database->drawing().version() >= release_2000;
}

bool knows_true_colors(const AcDbImpObject& object) {
    return object.database == nullptr || object.database->drawing().version() >= release_2004;
}

} // namespace db
