// The text styles of a drawing as texts are drawn with them.
#pragma once

#include "acgi.h"
#include "host/db/core/imp_object.h"

#include <string>
#include <string_view>
#include <unordered_map>

class AcDbImpDatabase;

namespace db {

class text_styles {
public:
    explicit text_styles(AcDbImpDatabase& database) : database_(database) {}

    // The style that texts name by these bytes (group 7); Standard for none. A name that the drawing does not
    // know is the font txt. Looked up once, and again when a style was changed; valid until then.
    const AcGiTextStyle& of(std::string_view name);

private:
    void follow_changes();

    struct hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };

    AcDbImpDatabase& database_;
    std::unordered_map<std::string, AcGiTextStyle, hash, std::equal_to<>> known_;
    std::size_t read_ = 0; // of the journal of records
};

// The style by its bytes in the drawing of an object; the font txt when it has none.
const AcGiTextStyle& text_style(AcDbImpDatabase* database, std::string_view name);

// The style that an object names in group 7: null when its drawing has none of that name.
AcDbObjectId style_of(const AcDbImpObject& object, const dxf::group_place& place);
// Names a style. eWrongObjectType, eWrongDatabase; nothing is changed then.
Acad::ErrorStatus set_style(AcDbImpObject& object, const dxf::group_place& place, AcDbObjectId style);

} // namespace db
