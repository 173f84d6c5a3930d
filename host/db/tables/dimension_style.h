// What a dimension style says, with what an entity overrides of it.
#pragma once

#include "host/db/core/imp_object.h"

#include <cstdint>
#include <string_view>

namespace db {

// The style that an entity names in group 3: its bytes, and its id; null when its drawing has none of that
// name.
std::string_view dimension_style_of(const AcDbImpObject& entity, const dxf::group_place& place);
AcDbObjectId dimension_style_id(const AcDbImpObject& entity, const dxf::group_place& place);

// The value of a style's group for an entity (a dimension, a leader, a tolerance) that names its style by
// these bytes: what its extended data override, else what the style says, else `missing`.
double style_real(const AcDbImpObject& entity, std::string_view style, int code, double missing);

// The same for a handle; nought when there is none.
std::uint64_t style_handle(const AcDbImpObject& entity, std::string_view style, int code);

// Lengths as they are drawn, with the style's overall scale.
double arrow_size(const AcDbImpObject& entity, std::string_view style);
double dimension_text_height(const AcDbImpObject& entity, std::string_view style);
double dimension_gap(const AcDbImpObject& entity, std::string_view style); // between text and lines

} // namespace db
