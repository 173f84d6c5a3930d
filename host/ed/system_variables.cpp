#include "host/ed/system_variables.h"

#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbsymtb.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/notifier.h"
#include "host/db/core/support_path.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/record_header.h"
#include "host/ed/color_text.h"
#include "host/ed/editor.h"
#include "host/ed/profile_variables.h"
#include "host/ed/spaces.h"
#include "host/ed/variable_table.h"
#include "host/ed/view.h"
#include "host/rx/editor_reactors.h"
#include "sys/code_page.h"
#include "sys/folders.h"
#include "sys/user.h"

#include <algorithm>
#include <array>
#include <chrono>
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
    constexpr int release_2000 = 1015;
    if (row.code >= 280 && database.drawing().version() < release_2000 &&
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

// ---- asked when wanted

std::wstring color_text(AcDbImpDatabase& database) {
    const auto index = base::parse_integer(database.drawing().header_value("$CECOLOR").value_or("256"));
    if (!index || *index == 256)
        return L"BYLAYER";
    return *index == 0 ? L"BYBLOCK" : std::to_wstring(*index);
}

bool set_color(AcDbImpDatabase& database, std::wstring_view text) {
    std::optional<std::int64_t> index = base::parse_integer(base::narrow(text));
    if (const auto named = named_color(text); named != 0)
        index = named;
    else if (base::equal_no_case(text, L"BYBLOCK"))
        index = 0;
    else if (base::equal_no_case(text, L"BYLAYER"))
        index = 256;
    return index && *index >= 0 && *index <= 256 &&
           database.notifier().set_header_value("$CECOLOR", 62, std::to_string(*index));
}

bool set_current_layer(AcDbImpDatabase& database, const std::wstring& name) {
    const dxf::record_id layer = database.names().find(db::table_kind::layer, name);
    return layer != dxf::no_record && database.self().setClayer(database.id(layer)) == Acad::eOk;
}

// Days of the Julian calendar with the time of day, in universal time; and YYYYMMDD.HHMMSS.
double julian_date(bool as_digits) {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const auto midnight = floor<days>(now);
    const double of_day = duration<double>(now - midnight).count();
    if (!as_digits)
        return 2440588.0 + static_cast<double>(midnight.time_since_epoch().count()) + of_day / 86400.0;
    const year_month_day date{midnight};
    const auto seconds = static_cast<int>(of_day);
    const int hour = seconds / 3600;
    const int minute = seconds / 60 % 60;
    return static_cast<int>(date.year()) * 1e4 + static_cast<unsigned>(date.month()) * 1e2 +
           static_cast<unsigned>(date.day()) + hour * 1e-2 + minute * 1e-4 + seconds % 60 * 1e-6;
}

// The folders of the support path, with semicolons between them.
std::wstring support_path() {
    std::wstring path;
    for (const auto& folder : db::support_folders(drawing()))
        path += (path.empty() ? L"" : L";") + sys::from_path(folder);
    return path;
}

std::wstring automatic_file() {
    const ap::document* const document = ap::documents::instance().current();
    return document != nullptr ? sys::from_path(document->automatic.file()) : std::wstring();
}

variable_value asked_value(const variable_row& row) {
    if (row.name == L"CMDNAMES" || row.name == L"CMDACTIVE") {
        const AcEdCommand* const command = editor::instance().command();
        if (row.name == L"CMDACTIVE")
            return command != nullptr ? 1 : 0;
        return editor::instance().command_names();
    }
    if (row.name == L"DATE" || row.name == L"CDATE")
        return julian_date(row.name == L"CDATE");
    if (row.name == L"MILLISECS")
        return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                    std::chrono::steady_clock::now().time_since_epoch())
                                    .count() &
                                std::numeric_limits<int>::max());
    if (row.name == L"LOGINNAME")
        return sys::login_name();
    if (row.name == L"SYSCODEPAGE")
        return L"ANSI_" + std::to_wstring(sys::ansi_code_page());
    if (row.name == L"TEMPPREFIX")
        return sys::from_path(sys::temp_folder() / "");
    if (row.name == L"ACADPREFIX")
        return support_path();
    if (row.name == L"SAVEFILE")
        return automatic_file();
    if (row.name == L"CTAB")
        return tab_variable();
    if (row.name == L"CVPORT")
        return viewport_variable();
    AcDbImpDatabase* const database = drawing();
    if (database == nullptr)
        return row.value;
    if (row.name == L"CLAYER") {
        const dxf::record_id layer = database->layers().current();
        return layer != dxf::no_record ? database->names().name_of(layer) : std::wstring(L"0");
    }
    if (row.name == L"CECOLOR")
        return color_text(*database);
    if (row.name == L"DBMOD")
        return database->records().unsaved() != 0 ? 1 : 0;
    if (row.name == L"DWGTITLED")
        return database->file_name.empty() ? 0 : 1;
    if (row.name == L"WRITESTAT")
        return 1;
    if (row.name == L"VIEWSIZE")
        return current_view(*database).height;
    if (row.name == L"VIEWCTR") {
        const AcGePoint2d center = current_view(*database).center;
        return AcGePoint3d(center.x, center.y, 0.0);
    }
    if (row.name == L"WORLDUCS")
        return variable<AcGePoint3d>(L"UCSORG") == AcGePoint3d() &&
                       variable<AcGePoint3d>(L"UCSXDIR") == AcGePoint3d(1.0, 0.0, 0.0) &&
                       variable<AcGePoint3d>(L"UCSYDIR") == AcGePoint3d(0.0, 1.0, 0.0)
                   ? 1
                   : 0;
    const std::filesystem::path file = sys::to_path(database->file_name);
    if (row.name == L"DWGNAME")
        return database->file_name.empty() ? std::wstring(L"Drawing1.dxf") : sys::from_path(file.filename());
    std::wstring folder = sys::from_path(file.parent_path());
    return folder.empty() ? folder : folder + L"/";
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

bool set_asked(const variable_row& row, const variable_value& value) {
    if (row.name == L"CTAB")
        return set_tab(value) == variable_status::well;
    if (row.name == L"CVPORT")
        return set_viewport(value) == variable_status::well;
    AcDbImpDatabase* const database = drawing();
    if (database == nullptr)
        return false;
    const std::wstring& text = std::get<std::wstring>(value);
    return row.name == L"CECOLOR" ? set_color(*database, text) : set_current_layer(*database, text);
}

bool put(variable_row& row, const variable_value& value) {
    AcDbImpDatabase* const database = drawing();
    if (!in_range(row, value) || !is_allowed(row, value, database))
        return false;
    switch (row.where) {
    case kept::session:
        row.value = value;
        if (row.name == L"FINDINGS" && std::get<int>(value) != 0)
            editor::instance().note_findings();
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
    return set_asked(row, value);
}

} // namespace

variable_status get_variable(std::wstring_view name, variable_value& value) {
    variable_row* const row = find(name);
    if (row == nullptr)
        return variable_status::unknown;
    AcDbImpDatabase* const database = row->where == kept::drawing ? drawing() : nullptr;
    value = row->where == kept::asked     ? asked_value(*row)
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

std::wstring shown_value(const variable_value& value) {
    if (const int* const whole = std::get_if<int>(&value))
        return std::to_wstring(*whole);
    const auto real_text = [](double real) { return base::widen(base::real_text(real)); };
    if (const double* const real = std::get_if<double>(&value))
        return real_text(*real);
    if (const AcGePoint3d* const point = std::get_if<AcGePoint3d>(&value))
        return real_text(point->x) + L"," + real_text(point->y) + L"," + real_text(point->z);
    return L"\"" + std::get<std::wstring>(value) + L"\"";
}

bool read_value(std::wstring_view typed, const variable_value& old, variable_value& value) {
    if (std::holds_alternative<std::wstring>(old)) {
        value = std::wstring(typed);
        return true;
    }
    if (std::holds_alternative<int>(old)) {
        const auto whole = base::parse_integer(base::narrow(typed));
        if (!whole || *whole < std::numeric_limits<int>::min() || *whole > std::numeric_limits<int>::max())
            return false;
        value = static_cast<int>(*whole);
        return true;
    }
    std::array<double, 3> numbers{};
    std::size_t count = 0;
    for (std::size_t at = 0; at <= typed.size(); ++count) {
        const std::size_t comma = std::min(typed.find(L',', at), typed.size());
        const auto number = base::parse_real(base::narrow(typed.substr(at, comma - at)));
        if (!number || count == numbers.size())
            return false;
        numbers[count] = *number;
        at = comma + 1;
    }
    const bool one = std::holds_alternative<double>(old);
    if (one != (count == 1))
        return false;
    value = one ? variable_value(numbers[0]) : AcGePoint3d(numbers[0], numbers[1], numbers[2]);
    return true;
}

void set_error_number(int number) {
    put_variable(L"ERRNO", number);
}

} // namespace ed
