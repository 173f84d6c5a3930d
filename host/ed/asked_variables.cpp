// The system variables that are kept nowhere: what they tell is reckoned when someone asks.
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
#include "host/ed/color_text.h"
#include "host/ed/running_commands.h"
#include "host/ed/spaces.h"
#include "host/ed/system_variables.h"
#include "host/ed/variable_table.h"
#include "host/ed/view.h"
#include "sys/code_page.h"
#include "sys/folders.h"
#include "sys/user.h"

#include <chrono>
#include <limits>
#include <optional>

namespace ed {

namespace {

AcDbImpDatabase* drawing() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    return database != nullptr && database->imp().has_drawing() ? &database->imp() : nullptr;
}

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
        if (row.name == L"CMDACTIVE")
            return command_under_way() != nullptr ? 1 : 0;
        return names_under_way();
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

[[maybe_unused]] const bool known = (asked_variables() = {asked_value, set_asked}, true);

} // namespace

} // namespace ed
