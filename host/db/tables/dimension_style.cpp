#include "host/db/tables/dimension_style.h"

#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"

#include <cmath>
#include <optional>

namespace db {

namespace {

// 1001 ACAD, 1000 DSTYLE, 1002 {, and then code (1070) and value by turns.
std::optional<std::string_view> overridden(const AcDbImpObject& entity, int code) {
    const auto& all = entity.groups().groups();
    bool in_style = false;
    for (std::size_t i = 0; i + 1 < all.size(); ++i) {
        if (all[i].code == 1001)
            in_style = false;
        else if (all[i].code == 1000 && dxf::trimmed(all[i].value) == "DSTYLE")
            in_style = true;
        else if (in_style && all[i].code == 1070) {
            if (dxf::leading_real(all[i].value) == code)
                return all[i + 1].value;
            ++i; // its value, which may be of the same code
        }
    }
    return std::nullopt;
}

// The bytes as they stand in the entity or in the style.
std::optional<std::string_view> style_value(const AcDbImpObject& entity, std::string_view style, int code) {
    const auto value = overridden(entity, code);
    if (value || entity.database == nullptr)
        return value;
    const dxf::record_id record =
        entity.database->names().find(table_kind::dim_style, entity.decode(dxf::trimmed(style)));
    if (record == dxf::no_record)
        return std::nullopt;
    const dxf::group_list groups(entity.database->records().text(record));
    return groups.text({"AcDbDimStyleTableRecord"}, code); // looks on the record's text, which stays
}

double with_scale(const AcDbImpObject& entity, std::string_view style, double length) {
    const double scale = style_real(entity, style, 40, 1.0);
    return length * (scale > 0.0 ? scale : 1.0); // nought: fitted to a sheet's view
}

} // namespace

std::string_view dimension_style_of(const AcDbImpObject& entity, const dxf::group_place& place) {
    return entity.groups().text(place, 3).value_or("Standard");
}

AcDbObjectId dimension_style_id(const AcDbImpObject& entity, const dxf::group_place& place) {
    if (entity.database == nullptr)
        return AcDbObjectId::kNull;
    const std::string_view name = dxf::trimmed(dimension_style_of(entity, place));
    return entity.database->id(entity.database->names().find(table_kind::dim_style, entity.decode(name)));
}

double style_real(const AcDbImpObject& entity, std::string_view style, int code, double missing) {
    const auto text = style_value(entity, style, code);
    const auto value = text ? dxf::leading_real(*text) : std::nullopt;
    return value && std::isfinite(*value) ? *value : missing;
}

std::uint64_t style_handle(const AcDbImpObject& entity, std::string_view style, int code) {
    return dxf::parse_handle(style_value(entity, style, code).value_or(""));
}

double arrow_size(const AcDbImpObject& entity, std::string_view style) {
    return with_scale(entity, style, style_real(entity, style, 41, 0.18));
}

double dimension_text_height(const AcDbImpObject& entity, std::string_view style) {
    return with_scale(entity, style, style_real(entity, style, 140, 0.18));
}

double dimension_gap(const AcDbImpObject& entity, std::string_view style) {
    return with_scale(entity, style, std::fabs(style_real(entity, style, 147, 0.09)));
}

} // namespace db
