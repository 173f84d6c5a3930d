#include "host/ed/system_variables.h"

#include "acedads.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbsymtb.h"
#include "host/ap/documents.h"
#include "host/db/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/spaces.h"
#include "sys/folders.h"

#include <algorithm>
#include <limits>

namespace ed {

namespace {

enum class kept { session, drawing, asked };

// One variable: where it is kept, its value to begin with, its range. Source: the editor's list of variables.
struct row {
    std::wstring_view name;
    kept where;
    variable_value value; // of the session; of a drawing that does not hold it
    bool read_only = false;
    int code = 0; // the group code in the drawing's header
    int least = std::numeric_limits<int>::min();
    int most = std::numeric_limits<int>::max();
};

std::vector<row>& rows() {
    using std::wstring;
    static std::vector<row> table = {
        {L"ACADVER", kept::session, wstring(L"24.0s (LMS Tech)"), true},
        {L"ATTMODE", kept::drawing, 1, false, 70, 0, 2},
        {L"CELTSCALE", kept::drawing, 1.0, false, 40},
        {L"CLAYER", kept::asked, wstring()},
        {L"CMDECHO", kept::session, 1, false, 0, 0, 1},
        {L"CMDNAMES", kept::asked, wstring(), true},
        {L"CTAB", kept::asked, wstring()},
        {L"CVPORT", kept::asked, 2},
        {L"DBMOD", kept::asked, 0, true},
        {L"DWGNAME", kept::asked, wstring(), true},
        {L"DWGPREFIX", kept::asked, wstring(), true},
        {L"ERRNO", kept::session, 0, true},
        {L"EXPERT", kept::session, 0, false, 0, 0, 5},
        {L"FILEDIA", kept::session, 0, false, 0, 0, 1},
        {L"LTSCALE", kept::drawing, 1.0, false, 40},
        {L"OSMODE", kept::session, 4133, false, 0, 0, 32767},
        {L"PICKADD", kept::session, 1, false, 0, 0, 2},
        {L"PICKAUTO", kept::session, 0, false, 0, 0, 7},
        {L"PICKBOX", kept::session, 3, false, 0, 0, 50},
        {L"PICKFIRST", kept::session, 1, false, 0, 0, 1},
        {L"TEXTSIZE", kept::drawing, 2.5, false, 40},
        {L"TILEMODE", kept::drawing, 1, false, 70, 0, 1},
        {L"VISRETAIN", kept::drawing, 1, false, 70, 0, 1},
    };
    return table;
}

row* find(std::wstring_view name) {
    const auto at = std::find_if(rows().begin(), rows().end(),
                                 [&](const row& row) { return base::equal_no_case(row.name, name); });
    return at == rows().end() ? nullptr : &*at;
}

AcDbDatabase* database() {
    return ap::documents::instance().current_database();
}

std::string header_name(const row& row) {
    return "$" + base::narrow(row.name);
}

variable_value asked_value(const row& row) {
    AcDbDatabase* const current = database();
    if (row.name == L"CMDNAMES") {
        const AcEdCommand* const command = editor::instance().command();
        return std::wstring(command != nullptr ? command->globalName() : L"");
    }
    if (row.name == L"CTAB")
        return tab_variable();
    if (row.name == L"CVPORT")
        return viewport_variable();
    if (current == nullptr)
        return row.value;
    if (row.name == L"CLAYER") {
        const dxf::record_id layer = current->imp().current_layer();
        return layer != dxf::no_record ? current->imp().name_of(layer) : std::wstring(L"0");
    }
    if (row.name == L"DBMOD")
        return current->imp().records().unsaved() != 0 ? 1 : 0;
    const std::filesystem::path file = sys::to_path(current->imp().file_name);
    if (row.name == L"DWGNAME")
        return current->imp().file_name.empty() ? std::wstring(L"Drawing1.dxf")
                                                : sys::from_path(file.filename());
    std::wstring folder = sys::from_path(file.parent_path());
    return folder.empty() ? folder : folder + L"/";
}

variable_status set_current_layer(const std::wstring& name) {
    AcDbDatabase* const current = database();
    if (current == nullptr)
        return variable_status::out_of_range;
    const dxf::record_id layer = current->imp().find_entry(db::table_kind::layer, name);
    return layer != dxf::no_record && current->setClayer(current->imp().id(layer)) == Acad::eOk
               ? variable_status::well
               : variable_status::out_of_range;
}

} // namespace

variable_status get_variable(std::wstring_view name, variable_value& value) {
    const row* const known = find(name);
    if (known == nullptr)
        return variable_status::unknown;
    value = known->where == kept::asked ? asked_value(*known) : known->value;
    if (known->where != kept::drawing || database() == nullptr)
        return variable_status::well;
    const auto text = database()->imp().drawing().header_value(header_name(*known));
    if (!text)
        return variable_status::well;
    if (std::holds_alternative<int>(value))
        value = static_cast<int>(base::parse_integer(*text).value_or(std::get<int>(value)));
    else if (std::holds_alternative<double>(value))
        value = base::parse_real(*text).value_or(std::get<double>(value));
    return variable_status::well;
}

variable_status set_variable(std::wstring_view name, const variable_value& value) {
    row* const known = find(name);
    if (known == nullptr)
        return variable_status::unknown;
    if (known->read_only)
        return variable_status::read_only;
    if (known->name == L"CLAYER")
        return std::holds_alternative<std::wstring>(value) ? set_current_layer(std::get<std::wstring>(value))
                                                           : variable_status::wrong_type;
    if (known->name == L"CTAB")
        return set_tab(value);
    if (known->name == L"CVPORT")
        return set_viewport(value);
    variable_value taken = value;
    if (std::holds_alternative<double>(known->value) && std::holds_alternative<int>(value))
        taken = static_cast<double>(std::get<int>(value));
    if (taken.index() != known->value.index())
        return variable_status::wrong_type;
    if (const int* whole = std::get_if<int>(&taken);
        whole != nullptr && (*whole < known->least || *whole > known->most))
        return variable_status::out_of_range;
    if (const double* real = std::get_if<double>(&taken); real != nullptr && !(*real > 0.0))
        return variable_status::out_of_range; // all reals here are scales and sizes
    if (known->where == kept::session) {
        known->value = std::move(taken);
        return variable_status::well;
    }
    if (database() == nullptr)
        return variable_status::out_of_range;
    const std::string text = std::holds_alternative<int>(taken) ? std::to_string(std::get<int>(taken))
                                                                : base::real_text(std::get<double>(taken));
    return database()->imp().drawing().set_header_value(header_name(*known), known->code, text)
               ? variable_status::well
               : variable_status::out_of_range; // a drawing without a header holds none
}

bool is_read_only(std::wstring_view name) {
    const row* const known = find(name);
    return known != nullptr && known->read_only;
}

std::vector<std::wstring> variable_names() {
    std::vector<std::wstring> names;
    for (const row& row : rows())
        names.emplace_back(row.name);
    return names;
}

void set_error_number(int number) {
    find(L"ERRNO")->value = number;
}

} // namespace ed

int acedGetVar(const ACHAR* name, resbuf* result) {
    ed::variable_value value;
    if (name == nullptr || result == nullptr || ed::get_variable(name, value) != ed::variable_status::well)
        return RTERROR;
    result->rbnext = nullptr;
    if (const int* whole = std::get_if<int>(&value)) {
        result->restype = RTSHORT;
        result->resval.rint = static_cast<short>(*whole);
    } else if (const double* real = std::get_if<double>(&value)) {
        result->restype = RTREAL;
        result->resval.rreal = *real;
    } else {
        result->restype = RTSTR;
        acutNewString(std::get<std::wstring>(value).c_str(), result->resval.rstring);
    }
    return RTNORM;
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
    if (name == nullptr || value == nullptr)
        return RTERROR;
    ed::variable_value wanted;
    switch (value->restype) {
    case RTSHORT:
        wanted = static_cast<int>(value->resval.rint);
        break;
    case RTLONG:
        wanted = static_cast<int>(value->resval.rlong);
        break;
    case RTREAL:
        wanted = value->resval.rreal;
        break;
    case RTSTR:
        wanted = std::wstring(value->resval.rstring != nullptr ? value->resval.rstring : L"");
        break;
    default:
        return RTREJ;
    }
    switch (ed::set_variable(name, wanted)) {
    case ed::variable_status::well:
        return RTNORM;
    case ed::variable_status::read_only:
        ed::set_error_number(20);
        return RTERROR;
    case ed::variable_status::out_of_range:
        ed::set_error_number(22);
        return RTERROR;
    case ed::variable_status::wrong_type:
        return RTREJ;
    case ed::variable_status::unknown:
        break;
    }
    return RTERROR;
}
