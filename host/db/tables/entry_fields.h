// The fields of the records of symbol tables. Source of what a new one says: the DXF reference's defaults.
#pragma once

#include "host/db/core/fields.h"

namespace db {

inline constexpr field layer_fields[] = {
    number(2, ""), number(70, "0"),   number(62, "7"), number(420), number(430), number(6, "Continuous"),
    number(290),   number(370, "-3"), number(390),     number(347), number(348),
};
inline constexpr auto layer_place = section_of<layer_fields>("AcDbLayerTableRecord");

inline constexpr field linetype_fields[] = {number(2, ""),    number(70, "0"), number(3, ""),
                                            number(72, "65"), number(73, "0"), number(40, "0.0")};
inline constexpr auto linetype_place = section_of<linetype_fields>("AcDbLinetypeTableRecord");

inline constexpr field text_style_fields[] = {
    number(2, ""),    number(70, "0"), number(40, "0.0"), number(41, "1.0").or_else(1.0),
    angle(50, "0.0"), number(71, "0"), number(42, "2.5"), number(3, "txt"),
    number(4, ""),
};
inline constexpr auto text_style_place = section_of<text_style_fields>("AcDbTextStyleTableRecord");

// Of these the host knows what a new one says.
inline constexpr field plain_entry_fields[] = {number(2, ""), number(70, "0")};
inline constexpr auto application_place = section_of<plain_entry_fields>("AcDbRegAppTableRecord");
inline constexpr auto dimension_style_place = section_of<plain_entry_fields>("AcDbDimStyleTableRecord");
inline constexpr field view_fields[] = {
    number(2, ""),     number(70, "0"),          number(40, "1.0"), pair(10, "0.0"),
    number(41, "1.0"), point(11, "0.0 0.0 1.0"), point(12, "0.0"),  number(42, "50.0"),
    number(43, "0.0"), number(44, "0.0"),        number(50, "0.0"), number(71, "0"),
};
inline constexpr auto view_place = section_of<view_fields>("AcDbViewTableRecord");
inline constexpr field ucs_fields[] = {number(2, ""), number(70, "0"), point(10, "0.0"),
                                       point(11, "1.0 0.0 0.0"), point(12, "0.0 1.0 0.0")};
inline constexpr auto ucs_place = section_of<ucs_fields>("AcDbUCSTableRecord");

} // namespace db
