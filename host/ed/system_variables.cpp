#include "host/ed/system_variables.h"
#include "host/db/core/format_versions.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbsymtb.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/notifier.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/record_header.h"
#include "host/ed/profile_variables.h"
#include "host/ed/run_status.h"
#include "host/ed/variable_table.h"
#include "host/rx/editor_reactors.h"
#include "sys/folders.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <unordered_map>

namespace ed {

namespace {

variable_row* find(std::wstring_view name) {
    static const auto by_name = [] {
        std::unordered_map<std::wstring, variable_row*> rows;
        for (variable_row& row : variable_table())
            rows.emplace(base::folded(row.name), &row);
        return rows;
    }();
    const auto at = by_name.find(base::folded(name));
    return at == by_name.end() ? nullptr : at->second;
}

AcDbImpDatabase* drawing() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    return database != nullptr && database->imp().has_drawing() ? &database->imp() : nullptr;
}

// ---- in the header

std::string header_name(const variable_row& row, AcDbImpDatabase& database) {
    const bool on_sheet = row.per_space && !database.self().tilemode() &&
                          db::current_space(database) == db::current_sheet(database);
    return (on_sheet ? "$P" : "$") + base::narrow(row.name);
}

// The groups of a header variable, from the first behind its name to behind the last.
std::pair<std::size_t, std::size_t> place_of(const dxf::group_list& header, std::string_view variable) {
    const auto& groups = header.groups();
    std::size_t first = 0;
    while (first < groups.size() &&
           (groups[first].code != 9 || dxf::trimmed(groups[first].value) != variable))
        ++first;
    if (first == groups.size())
        return {first, first};
    std::size_t last = ++first;
    while (last < groups.size() && groups[last].code != 9)
        ++last;
    return {first, last};
}

AcGePoint3d header_point(AcDbImpDatabase& database, const std::string& variable, const AcGePoint3d& missing) {
    if (!database.drawing().header_value(variable))
        return missing;
    const dxf::group_list header(database.records().text(database.drawing().parts().header));
    const auto [first, last] = place_of(header, variable);
    AcGePoint3d point;
    for (std::size_t i = first; i < last; ++i) {
        const double value = dxf::leading_real(header.groups()[i].value).value_or(0.0);
        switch (header.groups()[i].code) {
        case 10:
            point.x = value;
            break;
        case 20:
            point.y = value;
            break;
        case 30:
            point.z = value;
            break;
        default:
            break;
        }
    }
    return point;
}

bool set_header_point(AcDbImpDatabase& database, const std::string& variable, const AcGePoint3d& point,
                      bool flat) {
    const dxf::record_id id = database.drawing().ensure_section("HEADER");
    if (id == dxf::no_record)
        return false;
    dxf::group_list header(database.records().text(id));
    const auto [first, last] = place_of(header, variable);
    std::vector<dxf::group_list::fresh_group> fresh;
    if (first == header.groups().size()) {
        fresh.push_back({9, variable});
    } else {
        const AcGePoint3d held = header_point(database, variable, point);
        if (held.x == point.x && held.y == point.y && held.z == point.z)
            return true;
    }
    fresh.push_back({10, base::real_text(point.x)});
    fresh.push_back({20, base::real_text(point.y)});
    if (!flat)
        fresh.push_back({30, base::real_text(point.z)});
    header.splice(first, last, fresh);
    database.records().replace(id, header.write(database.drawing().style()));
    return true;
}

variable_value header_value(const variable_row& row, AcDbImpDatabase& database) {
    const std::string name = header_name(row, database);
    if (const AcGePoint3d* const missing = std::get_if<AcGePoint3d>(&row.value))
        return header_point(database, name, *missing);
    const auto text = database.drawing().header_value(name);
    if (!text)
        return row.value;
    if (const int* const missing = std::get_if<int>(&row.value))
        return static_cast<int>(base::parse_integer(*text).value_or(*missing));
    if (const double* const missing = std::get_if<double>(&row.value))
        return dxf::leading_real(*text).value_or(*missing);
    return database.drawing().codec().decode(*text);
}

// False when the drawing can not hold it: without a header, or older than what is asked of it.
bool set_header_value(const variable_row& row, AcDbImpDatabase& database, const variable_value& value) {
    const std::string name = header_name(row, database);
    if (row.code >= 280 && database.drawing().version() < db::release_2000 &&
        !database.drawing().header_value(name))
        return false;
    if (const AcGePoint3d* const point = std::get_if<AcGePoint3d>(&value))
        return set_header_point(database, name, *point, row.flat);
    if (header_value(row, database) == value && database.drawing().header_value(name))
        return true; // "2.50" stays as it is spelled
    const int* const whole = std::get_if<int>(&value);
    const double* const real = std::get_if<double>(&value);
    const std::string text = whole != nullptr ? std::to_string(*whole)
                             : real != nullptr
                                 ? base::real_text(*real)
                                 : database.drawing().codec().encode(std::get<std::wstring>(value));
    return database.drawing().set_header_value(name, row.code, text);
}

// ---- setting

// What is more than a range: names must stand for something, weights be ones that there are.
bool is_allowed(const variable_row& row, const variable_value& value, AcDbImpDatabase* database) {
    if (row.name.ends_with(L"WEIGHT") || row.name == L"DIMLWD" || row.name == L"DIMLWE" ||
        row.name == L"LWDEFAULT")
        return db::is_line_weight(std::get<int>(value));
    const std::wstring* const name = std::get_if<std::wstring>(&value);
    std::error_code ignored;
    if (row.name == L"SAVEFILEPATH")
        return name->empty() || std::filesystem::is_directory(sys::to_path(*name), ignored);
    if (name == nullptr || database == nullptr)
        return true;
    const auto is_entry = [&](db::table_kind kind) {
        return database->names().find(kind, *name) != dxf::no_record;
    };
    if (row.name == L"TEXTSTYLE" || row.name == L"DIMTXSTY")
        return is_entry(db::table_kind::text_style);
    if (row.name == L"CELTYPE")
        return base::equal_no_case(*name, L"ByLayer") || base::equal_no_case(*name, L"ByBlock") ||
               is_entry(db::table_kind::linetype);
    return true;
}

bool in_range(const variable_row& row, const variable_value& value) {
    const int* const whole = std::get_if<int>(&value);
    const double* const real = std::get_if<double>(&value);
    if (whole == nullptr && real == nullptr)
        return true;
    const double number = whole != nullptr ? *whole : *real;
    return number >= row.least && number <= row.most && !(row.above && number == row.least);
}

bool put(variable_row& row, const variable_value& value) {
    AcDbImpDatabase* const database = drawing();
    if (!in_range(row, value) || !is_allowed(row, value, database))
        return false;
    switch (row.where) {
    case kept::session:
        row.value = value;
        if (row.name == L"FINDINGS" && std::get<int>(value) != 0)
            note_findings();
        return true;
    case kept::profile:
        set_profile_value(row, value);
        return true;
    case kept::drawing: {
        if (database == nullptr)
            return false;
        auto& reactors = database->notifier().of_database();
        reactors.tell([&](AcDbDatabaseReactor& reactor) {
            reactor.headerSysVarWillChange(&database->self(), row.name.data());
        });
        const bool done = set_header_value(row, *database, value);
        reactors.tell([&](AcDbDatabaseReactor& reactor) {
            reactor.headerSysVarChanged(&database->self(), row.name.data(), done);
        });
        return done;
    }
    case kept::asked:
        break;
    }
    return asked_variables().set != nullptr && asked_variables().set(row, value);
}

} // namespace

variable_status get_variable(std::wstring_view name, variable_value& value) {
    variable_row* const row = find(name);
    if (row == nullptr)
        return variable_status::unknown;
    AcDbImpDatabase* const database = row->where == kept::drawing ? drawing() : nullptr;
    value = row->where == kept::asked
                ? (asked_variables().get != nullptr ? asked_variables().get(*row) : row->value)
            : row->where == kept::profile ? profile_value(*row)
            : database != nullptr         ? header_value(*row, *database)
                                          : row->value;
    return variable_status::well;
}

variable_status set_variable(std::wstring_view name, const variable_value& value) {
    variable_row* const row = find(name);
    if (row == nullptr)
        return variable_status::unknown;
    if (row->read_only)
        return variable_status::read_only;
    variable_value taken = value;
    if (const int* const number = std::get_if<int>(&value);
        number != nullptr && std::holds_alternative<double>(row->value))
        taken = static_cast<double>(*number);
    if (taken.index() != row->value.index())
        return variable_status::wrong_type;
    const std::wstring known(row->name);
    rx::tell_editor([&](AcEditorReactor& reactor) { reactor.sysVarWillChange(known.c_str()); });
    const bool done = put(*row, taken);
    rx::tell_editor([&](AcEditorReactor& reactor) { reactor.sysVarChanged(known.c_str(), done); });
    return done ? variable_status::well : variable_status::out_of_range;
}

void put_variable(std::wstring_view name, variable_value value) {
    if (variable_row* const row = find(name); row != nullptr && row->where == kept::session)
        row->value = std::move(value);
}

bool has_variable(std::wstring_view name) {
    return find(name) != nullptr;
}

bool is_read_only(std::wstring_view name) {
    const variable_row* const known = find(name);
    return known != nullptr && known->read_only;
}

bool is_of_drawing(std::wstring_view name) {
    const variable_row* const known = find(name);
    return known != nullptr &&
           (known->where == kept::drawing || known->name == L"CLAYER" || known->name == L"CECOLOR");
}

bool is_flat_point(std::wstring_view name) {
    const variable_row* const known = find(name);
    return known != nullptr && known->flat;
}

std::vector<std::wstring> variable_names() {
    std::vector<std::wstring> names;
    for (const variable_row& row : variable_table())
        names.emplace_back(row.name);
    return names;
}

void set_error_number(int number) {
    put_variable(L"ERRNO", number);
}

} // namespace ed
