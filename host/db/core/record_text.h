// Writes a new record in the manner of a drawing's file.
#pragma once

#include "host/db/core/format_versions.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/dxf/handle_text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace db {

using dxf::handle_text;

class record_text {
public:
    explicit record_text(AcDbImpDatabase& database) : database_(database) {}

    void add(int code, std::string_view value) {
        dxf::append_group(text_, database_.drawing().style(), code, value);
    }
    void add_handle(int code, std::uint64_t handle) { add(code, handle_text(handle)); }
    // Type, a new handle where the drawing has handles, and from R13 on the owner, unless that is 0.
    void head(std::string_view type, std::uint64_t owner) {
        add(0, type);
        const bool modern = database_.drawing().version() >= release_13;
        const auto handling = database_.drawing().header_value("$HANDLING");
        if (modern || (handling && *handling == "1"))
            add_handle(type == "DIMSTYLE" ? 105 : 5, database_.records().new_handle());
        if (modern && owner != 0)
            add_handle(330, owner);
    }
    // A group of a new object, its text in the encoding of the file.
    void transcoded(const AcDbImpObject& object, const dxf::group& group) {
        if (dxf::kind_of_code(group.code) == dxf::value_kind::text && !is_plain(group.value))
            add(group.code, database_.drawing().codec().encode(object.decode(group.value)));
        else
            add(group.code, group.value);
    }
    // An entity's layer, as the layer's own record spells it.
    void layer(const AcDbImpObject& object, const dxf::group& group) {
        add(group.code, database_.layers().bytes_of(object.decode(dxf::trimmed(group.value))));
    }
    const std::string& text() const { return text_; }
    int version() const { return database_.drawing().version(); }

private:
    // Whether a text is the same bytes in all encodings, and none that stand for another character.
    static bool is_plain(std::string_view text) {
        return std::all_of(text.begin(), text.end(), [](char byte) {
            return byte >= ' ' && byte <= '~' && byte != '\\' && byte != '^';
        });
    }

    AcDbImpDatabase& database_;
    std::string text_;
};

} // namespace db
