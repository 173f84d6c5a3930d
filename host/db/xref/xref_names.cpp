#include "host/db/xref/xref_names.h"

#include "base/utf.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/dependent_names.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

namespace db {

namespace {

// Bits of an entry's group 70.
constexpr std::int64_t layer_state_bits = 1 | 2 | 4; // frozen, frozen in new viewports, locked
constexpr std::int64_t dependent_bits = 16 | 32;     // dependent, and resolved

constexpr int style_of_text = 340; // of a linetype's element

std::wstring text_of(const AcDbImpDatabase& database, const dxf::group_list& groups,
                     const dxf::group_place& place, int code) {
    return database.drawing().codec().decode(dxf::trimmed(groups.text(place, code).value_or("")));
}

class adding {
public:
    adding(AcDbImpDatabase& drawing, std::wstring_view reference, AcDbImpDatabase& from, dependents& known)
        : drawing_(drawing), reference_(reference), from_(from), known_(known),
          retains_(drawing.drawing().header_value("$VISRETAIN").value_or("1") != "0") {}

    // Text styles before the linetypes that use them, linetypes before the layers.
    void run() {
        for (const table_kind kind :
             {table_kind::text_style, table_kind::linetype, table_kind::layer, table_kind::block})
            for (const dxf::record_id entry : from_.names().entries(kind))
                if (!from_.records().gone(entry))
                    add(kind, entry);
    }

private:
    void add(table_kind kind, dxf::record_id entry) {
        const std::wstring name = from_.names().name_of(entry);
        // Anonymous blocks and spaces have no names that could be asked for; shape files have none at all.
        if (name.empty() || name.front() == L'*' || is_shared_name(kind, name))
            return;
        if (kind == table_kind::block && from_.references().state(entry) != reference_state::none)
            return;
        const std::wstring known_as = dependent_name(kind, reference_, name);
        const dxf::record_id present = drawing_.names().find(kind, known_as);
        if (present != dxf::no_record) {
            known_.resolved.insert(present);
            if (kind == table_kind::layer && !retains_ && !drawing_.records().implied(present))
                refresh_layer(present, entry);
            return;
        }
        AcDbImpObject made;
        made.begin_new(kind == table_kind::layer   ? new_entry_text("AcDbLayerTableRecord")
                       : kind == table_kind::block ? block_text()
                                                   : copied_text(kind, entry));
        made.edit().set_text(name_place, 2, base::narrow(known_as));
        if (kind == table_kind::layer)
            take_layer_state(made, entry);
        if (kind != table_kind::block) // whose group 70 are its units
            made.edit().set_integer(name_place, 70,
                                    made.groups().integer(name_place, 70).value_or(0) | dependent_bits);
        const dxf::record_id added = add_implied_entry(drawing_, kind, made);
        if (added == dxf::no_record)
            return;
        known_.resolved.insert(added);
        if (kind == table_kind::block)
            known_.blocks.emplace(added, from_.references().place(entry));
    }

    // The state of a layer as the reference has it.
    void take_layer_state(AcDbImpObject& layer, dxf::record_id entry) {
        const dxf::group_list source(from_.records().text(entry));
        dxf::group_list& groups = layer.edit();
        groups.set_integer(layer_place, 70,
                           (groups.integer(layer_place, 70).value_or(0) & ~layer_state_bits) |
                               (source.integer(layer_place, 70).value_or(0) & layer_state_bits));
        std::vector<int> codes = {62};
        if (knows_true_colors(layer))
            codes.push_back(420);
        if (knows_line_weights(layer))
            codes.insert(codes.end(), {290, 370});
        for (const int code : codes) {
            if (const auto value = source.integer(layer_place, code))
                groups.set_integer(layer_place, code, *value);
            else if (code != 62)
                groups.remove(layer_place, code);
        }
        groups.remove(layer_place, 430); // names of colour books say nothing that 420 does not
        const std::wstring linetype = text_of(from_, source, layer_place, 6);
        groups.set_text(
            layer_place, 6,
            layer.encode(dependent_name(table_kind::linetype, reference_,
                                        linetype.empty() ? std::wstring(L"Continuous") : linetype)));
    }

    // Shows the reference's state of a layer that the drawing's file has in another one.
    void refresh_layer(dxf::record_id layer, dxf::record_id entry) {
        AcDbImpObject seen;
        seen.database = &drawing_;
        seen.record = layer;
        take_layer_state(seen, entry);
        if (seen.changed())
            drawing_.records().imply(layer, seen.groups().write(drawing_.drawing().style()));
    }

    std::string block_text() const {
        return "0\nBLOCK_RECORD\n100\nAcDbSymbolTableRecord\n100\nAcDbBlockTableRecord\n2\n\n70\n0\n";
    }

    // A linetype or text style as it stands in the reference, without handles of objects there. The styles
    // that a linetype's texts are in are named by handle: those are the drawing's.
    std::string copied_text(table_kind kind, dxf::record_id entry) {
        const dxf::group_style plain{"\n", false, 0, 0};
        const char* const name =
            kind == table_kind::linetype ? "AcDbLinetypeTableRecord" : "AcDbTextStyleTableRecord";
        std::string text;
        dxf::append_group(text, plain, 0, from_.records().type_name(entry));
        dxf::append_group(text, plain, 100, "AcDbSymbolTableRecord");
        dxf::append_group(text, plain, 100, name);
        const dxf::group_list source(from_.records().text(entry));
        bool in_braces = false;
        for (const dxf::group& group : source.groups()) {
            if (group.code >= 1000)
                break;
            if (group.code == 102) {
                in_braces = group.value.find('{') != std::string_view::npos;
                continue;
            }
            if (in_braces || group.code == 0 || group.code == 100)
                continue;
            switch (dxf::kind_of_code(group.code)) {
            case dxf::value_kind::handle:
                if (const std::string style = style_handle(group); !style.empty())
                    dxf::append_group(text, plain, group.code, style);
                break;
            case dxf::value_kind::text:
                dxf::append_group(text, plain, group.code,
                                  base::narrow(from_.drawing().codec().decode(group.value)));
                break;
            default:
                dxf::append_group(text, plain, group.code, dxf::trimmed(group.value));
            }
        }
        return text;
    }

    std::string style_handle(const dxf::group& group) {
        if (group.code != style_of_text)
            return {};
        const dxf::record_id style = from_.records().find(dxf::parse_handle(group.value));
        if (style == dxf::no_record || from_.records().type(style) != dxf::type_style)
            return {};
        const dxf::record_id own =
            drawing_.names().find(table_kind::text_style, dependent_name(table_kind::text_style, reference_,
                                                                         from_.names().name_of(style)));
        return own == dxf::no_record ? std::string() : handle_text(drawing_.records().handle(own));
    }

    AcDbImpDatabase& drawing_;
    std::wstring_view reference_;
    AcDbImpDatabase& from_;
    dependents& known_;
    bool retains_;
};

} // namespace

void add_dependent_names(AcDbImpDatabase& drawing, std::wstring_view reference, AcDbImpDatabase& from,
                         dependents& known) {
    adding(drawing, reference, from, known).run();
}

} // namespace db
