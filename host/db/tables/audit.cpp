#include "host/db/tables/audit.h"

#include "base/utf.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/name_references.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

#include <cstdlib>
#include <utility>

namespace db {

namespace {

constexpr int by_layer_color = 256;
constexpr int by_entity_color = 257;

// What stands in the place of a name without a record; null where nothing can.
const char* replacement(table_kind kind, std::string_view type) {
    switch (kind) {
    case table_kind::linetype:
        return type == "LAYER" ? "Continuous" : "ByLayer";
    case table_kind::text_style:
    case table_kind::dim_style:
        return "Standard";
    case table_kind::layer:
        return "0";
    default:
        return nullptr;
    }
}

std::wstring called(table_kind kind) {
    switch (kind) {
    case table_kind::linetype:
        return L"Linetype";
    case table_kind::text_style:
        return L"Text style";
    case table_kind::dim_style:
        return L"Dimension style";
    case table_kind::block:
        return L"Block";
    case table_kind::layer:
        return L"Layer";
    default:
        return L"Application";
    }
}

class audit_run {
public:
    audit_run(AcDbImpDatabase& database, bool mends) : database_(database), mends_(mends) {}

    std::vector<audit_finding> run() {
        audit_header();
        dxf::record_table& records = database_.records();
        for (dxf::record_id id = 0; id < records.size(); ++id)
            if (!records.gone(id) && records.kind(id) != dxf::record_kind::structure)
                audit_record(id);
        return std::move(findings_);
    }

private:
    bool is_missing(table_kind kind, const std::wstring& name) {
        return !name.empty() && !is_fixed_name(kind, name) &&
               database_.names().find(kind, name) == dxf::no_record;
    }
    std::wstring decoded(std::string_view value) const {
        return database_.drawing().codec().decode(dxf::trimmed(value));
    }
    void find(dxf::record_id record, std::wstring what, std::wstring remedy) {
        findings_.push_back({record, std::move(what), std::move(remedy), false});
    }
    static std::wstring not_there(table_kind kind, const std::wstring& name) {
        return called(kind) + L" \"" + name + L"\" is not in the table";
    }

    void audit_header() {
        for_header_names(
            database_, [&](table_kind kind, const std::string& variable, int code, const std::string& value) {
                const std::wstring name = decoded(value);
                const char* const instead = replacement(kind, "");
                if (instead == nullptr || !is_missing(kind, name))
                    return;
                find(dxf::no_record, not_there(kind, name) + L" (" + base::widen(variable) + L")",
                     L"set to " + base::widen(instead));
                if (mends_)
                    database_.drawing().set_header_value(variable, code, instead);
            });
    }

    void audit_record(dxf::record_id id) {
        dxf::group_list groups(database_.records().text(id));
        bool erased = false;
        const std::string type(database_.records().type_name(id));
        std::vector<std::pair<std::size_t, dxf::group_list::fresh_group>> changes;
        for_names(database_, id, groups, [&](table_kind kind, std::size_t at) {
            erased = audit_name(id, kind, type, groups.groups()[at], changes, at) || erased;
        });
        audit_numbers(id, groups, changes);
        if (database_.records().type(id) == dxf::type_dictionary)
            audit_entries(id, groups);
        if (!mends_)
            return;
        if (erased) {
            database_.objects().set_erased(id, true);
            return;
        }
        for (const auto& [at, fresh] : changes)
            groups.splice(at, at + 1, std::span(&fresh, 1));
        if (groups.changed())
            database_.records().replace(id, groups.write(database_.drawing().style()));
    }

    // A key (3) and the handle behind it are an entry.
    void audit_entries(dxf::record_id id, dxf::group_list& groups) {
        for (std::size_t i = groups.groups().size(); i-- > 1;) {
            const dxf::group key = groups.groups()[i - 1];
            const dxf::group& value = groups.groups()[i];
            if (key.code != 3 || (value.code != 350 && value.code != 360) ||
                database_.records().find(dxf::parse_handle(value.value)) != dxf::no_record)
                continue;
            find(id, L"Entry \"" + decoded(key.value) + L"\" names no object", L"removed");
            groups.splice(i - 1, i + 1, {});
        }
    }

    using change_list = std::vector<std::pair<std::size_t, dxf::group_list::fresh_group>>;

    // True when the record is to be erased.
    bool audit_name(dxf::record_id id, table_kind kind, const std::string& type, const dxf::group& group,
                    change_list& changes, std::size_t at) {
        if (kind == table_kind::layer)
            return false;
        const std::wstring name = decoded(group.value);
        if (!is_missing(kind, name))
            return false;
        if (kind == table_kind::regapp) {
            find(id, not_there(kind, name), L"added");
            if (mends_)
                register_application(database_, name.c_str());
            return false;
        }
        if (kind == table_kind::block) {
            if (type != "INSERT")
                return false;
            find(id, not_there(kind, name), L"erased");
            findings_.back().erases = true;
            return true;
        }
        if (const char* const instead = replacement(kind, type)) {
            find(id, not_there(kind, name), L"set to " + base::widen(instead));
            changes.push_back({at, {group.code, instead}});
        }
        return false;
    }

    void audit_numbers(dxf::record_id id, const dxf::group_list& groups, change_list& changes) {
        const bool is_layer = database_.records().type(id) == dxf::type_layer;
        if (!is_layer && !dxf::stands_on_layer(database_.records().kind(id)))
            return;
        const auto check = [&](std::size_t at, bool good, const wchar_t* what, const char* instead) {
            if (good)
                return;
            find(id, what + (L" " + decoded(groups.groups()[at].value)) + L" is none",
                 L"set to " + base::widen(instead));
            changes.push_back({at, {groups.groups()[at].code, instead}});
        };
        const dxf::group_place& place = is_layer ? layer_place : entity_place;
        if (const std::size_t at = groups.find(place, 62); at != dxf::group_list::npos) {
            const std::int64_t color = std::llabs(groups.integer(place, 62).value_or(-1));
            check(at, is_layer ? color > 0 && color < by_layer_color : color <= by_entity_color, L"Color",
                  is_layer ? "7" : "256");
        }
        if (const std::size_t at = groups.find(place, 370); at != dxf::group_list::npos)
            check(at, is_line_weight(static_cast<int>(groups.integer(place, 370).value_or(1))), L"Lineweight",
                  is_layer ? "-3" : "-1");
        if (const std::size_t at = groups.find(place, 48); !is_layer && at != dxf::group_list::npos)
            check(at, groups.real(place, 48).value_or(0.0) > 0.0, L"Linetype scale", "1.0");
    }

    AcDbImpDatabase& database_;
    bool mends_;
    std::vector<audit_finding> findings_;
};

} // namespace

std::vector<audit_finding> audit(AcDbImpDatabase& database, bool mends) {
    return audit_run(database, mends).run();
}

} // namespace db
