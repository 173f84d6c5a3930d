// -LINETYPE: lists, loads and sets linetypes, by the editor's prompts.
#include "acedads.h"
#include "base/case_fold.h"
#include "base/display_width.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/support_path.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/linetype_file.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"
#include "host/ed/system_variables.h"
#include "sys/folders.h"

#include <algorithm>

namespace ed {

namespace {

using db::linetype_definition;

constexpr std::wstring_view table_of_system = L"linetype.dbf";

bool is_editors_own(const std::wstring& file) {
    return base::equal_no_case(file, L"acad.lin") || base::equal_no_case(file, L"acadiso.lin");
}

// The file that is searched unless another one is named.
std::wstring usual_file() {
    const std::wstring editors = variable<int>(L"MEASUREINIT") == 0 ? L"acad.lin" : L"acadiso.lin";
    return db::find_support_file(editors, &current_drawing()->imp()).empty() ? std::wstring(table_of_system)
                                                                             : editors;
}

// What a file of that name defines. The editor's own files need not be here: the system's table has what they
// define.
base::result<std::vector<linetype_definition>> definitions_in(std::wstring file) {
    AcDbImpDatabase* const drawing = &current_drawing()->imp();
    if (sys::to_path(file).extension().empty())
        file += L".lin";
    auto path = db::find_support_file(file, drawing);
    if (path.empty() && is_editors_own(file)) {
        acutPrintf(L"\n%ls is not on the support path; %ls is searched.", file.c_str(),
                   std::wstring(table_of_system).c_str());
        path = db::find_support_file(table_of_system, drawing);
    }
    if (path.empty())
        return base::failure{L"File \"" + file + L"\" is not on the support path."};
    return db::read_linetypes(path);
}

// Asks for a file of linetypes until `judge` finds nothing wrong with what it defines. False when the user
// ended it.
bool ask_definitions(const std::function<std::wstring(const std::vector<linetype_definition>&)>& judge) {
    const std::wstring usual = usual_file();
    const auto judge_file = [&](const std::wstring& file) -> std::wstring {
        const auto definitions = definitions_in(file);
        return definitions ? judge(*definitions) : definitions.error();
    };
    std::wstring name;
    switch (ask_name(L"\nEnter name of linetype file to search <" + usual + L">: ", name, judge_file)) {
    case RTNORM:
        return true;
    case RTNONE:
        if (const std::wstring why = judge_file(usual); !why.empty())
            acdbFail((L"\n" + why).c_str());
        return true;
    default:
        return false;
    }
}

bool list_file() {
    return ask_definitions([](const std::vector<linetype_definition>& definitions) {
        acutPrintf(L"\nName             Description\n");
        for (const linetype_definition& one : definitions)
            acutPrintf(L"%ls %ls\n", base::padded(one.name, 16).c_str(), one.description.c_str());
        return std::wstring();
    });
}

// Whether a linetype that the drawing has is to be defined anew.
bool reloads(const std::wstring& name) {
    constexpr int asks_no_more = 3;
    if (variable<int>(L"EXPERT") >= asks_no_more)
        return true;
    return ask_yes(L"\nLinetype \"" + name + L"\" is already loaded. Reload it?", true).value_or(false);
}

void load(const linetype_definition& definition) {
    AcDbDatabase& drawing = *current_drawing();
    const bool known =
        drawing.imp().names().find(db::table_kind::linetype, definition.name) != dxf::no_record;
    if (known && !reloads(definition.name))
        return;
    AcDbObjectId id;
    const Acad::ErrorStatus status = db::define_linetype(drawing, definition, id);
    if (status == Acad::eOk) {
        acutPrintf(L"\nLinetype \"%ls\" %ls.", definition.name.c_str(), known ? L"reloaded" : L"loaded");
        return;
    }
    const auto dashes = db::parse_linetype_pattern(definition.pattern);
    const std::wstring why = !dashes                              ? dashes.error()
                             : status == Acad::eUndefineShapeName ? L"it needs a file of shapes"
                                                                  : acadErrorStatusText(status);
    acdbFail((L"\nLinetype \"" + definition.name + L"\" (line " + std::to_wstring(definition.line) +
              L" of its file) can not be loaded: " + why + L".")
                 .c_str());
}

bool load_named() {
    std::wstring names;
    if (ask_name(L"\nEnter linetype(s) to load: ", names) != RTNORM)
        return false;
    std::vector<linetype_definition> found;
    if (!ask_definitions([&](const std::vector<linetype_definition>& definitions) -> std::wstring {
            std::copy_if(definitions.begin(), definitions.end(), std::back_inserter(found),
                         [&](const linetype_definition& one) {
                             return base::equal_no_case(one.name, names) ||
                                    base::wildcard_match(one.name, names, true);
                         });
            return found.empty() ? L"The file does not define linetype \"" + names + L"\"." : L"";
        }))
        return false;
    for (const linetype_definition& one : found)
        load(one);
    return true;
}

void list_loaded() {
    std::wstring names = L"*";
    if (ask_name(L"\nEnter linetype name(s) to list <*>: ", names) == RTCAN)
        return;
    AcDbImpDatabase& drawing = current_drawing()->imp();
    acutPrintf(L"\nName             Description\n");
    for (const dxf::record_id entry : drawing.names().entries(db::table_kind::linetype)) {
        const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(drawing.id(entry), AcDb::kForRead);
        const std::wstring name = drawing.names().name_of(entry);
        if (linetype.openStatus() != Acad::eOk || !base::wildcard_match(name, names, true))
            continue;
        ACHAR* description = linetype->comments();
        acutPrintf(L"%ls %ls\n", base::padded(name, 16).c_str(), description);
        acutDelString(description);
    }
}

bool set_current() {
    const std::wstring current = variable<std::wstring>(L"CELTYPE");
    std::wstring name;
    for (;;) {
        acedInitGet(0, L"?");
        const int answered =
            ask_value((L"\nSpecify linetype name or [?] <" + current + L">: ").c_str(), take_input_rules(),
                      answer_rule::word, [&](const answer& given) -> std::wstring {
                          name = given.text;
                          return has_linetype(name) ? L"" : linetype_missing(name);
                      });
        if (answered != RTKWORD) {
            if (answered == RTNORM)
                set_variable(L"CELTYPE", name);
            return answered != RTCAN;
        }
        list_loaded();
    }
}

} // namespace

bool has_linetype(const std::wstring& name) {
    return base::equal_no_case(name, L"ByLayer") || base::equal_no_case(name, L"ByBlock") ||
           current_drawing()->imp().names().find(db::table_kind::linetype, name) != dxf::no_record ||
           !db::find_and_load_linetype(*current_drawing(), name).isNull();
}

std::wstring linetype_missing(const std::wstring& name) {
    return L"Linetype \"" + name + L"\" is not loaded, and no file of linetypes defines it.";
}

void linetype_command() {
    if (current_drawing() == nullptr)
        return;
    acutPrintf(L"\nCurrent line type:  \"%ls\"", variable<std::wstring>(L"CELTYPE").c_str());
    for (;;) {
        acedInitGet(0, L"? Load Set");
        const int answered =
            ask_value(L"\nEnter an option [?/Load/Set]: ", take_input_rules(), answer_rule::word,
                      [](const answer&) { return std::wstring(L"Invalid option keyword."); });
        if (answered != RTKWORD)
            return;
        const std::wstring word = taken_keyword();
        if (!(word == L"Load" ? load_named() : word == L"Set" ? set_current() : list_file()))
            return;
    }
}

} // namespace ed
