// -VIEW: views that the drawing keeps by name.
#include "acedads.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/entry_fields.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"
#include "host/ed/view.h"

#include <memory>

namespace ed {

namespace {

constexpr int flags_code = 70;
constexpr int height_code = 40;
constexpr int center_code = 10;
constexpr int width_code = 41;
constexpr int of_a_sheet = 1;

AcDbImpDatabase& drawing() {
    return current_drawing()->imp();
}

AcDbObjectId find_view(const std::wstring& name) {
    return drawing().id(drawing().names().find(db::table_kind::view, name));
}

// Why there can be no view of that name.
std::wstring why_no_name(const std::wstring& name) {
    return acdbSNValid(name.c_str(), 0) == RTNORM ? L"" : L"'" + name + L"' is no valid view name.";
}

void put(AcDbViewTableRecord& record, const view& shown) {
    dxf::group_list& groups = record.imp().edit();
    groups.set_integer(db::view_place, flags_code, current_drawing()->tilemode() ? 0 : of_a_sheet);
    groups.set_real(db::view_place, center_code, shown.center.x);
    groups.set_real(db::view_place, center_code + 10, shown.center.y);
    groups.set_real(db::view_place, height_code, shown.height);
    groups.set_real(db::view_place, width_code, shown.width());
}

// A view of that name that is there becomes another one.
void save_as(const std::wstring& name, const view& shown) {
    if (const AcDbObjectId known = find_view(name); !known.isNull()) {
        const AcDbObjectPointer<AcDbViewTableRecord> record(known, AcDb::kForWrite);
        if (record.openStatus() == Acad::eOk)
            put(*record.object(), shown);
        return;
    }
    auto record = std::make_unique<AcDbViewTableRecord>();
    put(*record, shown);
    AcDbViewTable* table = nullptr;
    Acad::ErrorStatus status = record->setName(name.c_str());
    if (status == Acad::eOk)
        status = current_drawing()->getSymbolTable(table, AcDb::kForWrite);
    if (status == Acad::eOk) {
        status = table->add(record.get());
        table->close();
    }
    if (status != Acad::eOk) {
        acdbFail((L"\nView \"" + name + L"\" can not be saved: " + acadErrorStatusText(status)).c_str());
        return;
    }
    record.release()->close();
}

int ask_view_name(const std::wstring& prompt, std::wstring& name, bool is_new) {
    return ask_name(prompt, name, [&](const std::wstring& given) {
        if (is_new)
            return why_no_name(given);
        return find_view(given).isNull() ? L"Cannot find view \"" + given + L"\"." : std::wstring();
    });
}

void save(bool by_window) {
    std::wstring name;
    if (ask_view_name(L"\nEnter view name to save: ", name, true) != RTNORM)
        return;
    view shown = current_view(drawing());
    if (by_window) {
        AcGePoint3d first;
        AcGePoint3d second;
        if (ask_point(L"\nSpecify first corner: ", first) != RTNORM ||
            ask_point(L"\nSpecify opposite corner: ", second, &first) != RTNORM)
            return;
        const auto window = view_of_window(first, second);
        if (!window) {
            acutPrintf(L"\nThe window is empty.\n");
            return;
        }
        shown = *window;
    }
    save_as(name, shown);
}

void restore() {
    std::wstring name;
    if (ask_view_name(L"\nEnter view name to restore: ", name, false) != RTNORM)
        return;
    const AcDbObjectPointer<AcDbViewTableRecord> record(find_view(name), AcDb::kForRead);
    if (record.openStatus() != Acad::eOk)
        return;
    const dxf::group_list& groups = record->imp().groups();
    const bool is_of_sheet = (groups.integer(db::view_place, flags_code).value_or(0) & of_a_sheet) != 0;
    if (is_of_sheet == current_drawing()->tilemode()) {
        acdbFail(
            (L"\nView \"" + name + L"\" is one of " + (is_of_sheet ? L"a sheet." : L"model space.")).c_str());
        return;
    }
    const view kept{{groups.real(db::view_place, center_code).value_or(0.0),
                     groups.real(db::view_place, center_code + 10).value_or(0.0)},
                    groups.real(db::view_place, height_code).value_or(0.0)};
    if (!(kept.height > 0.0) || !set_current_view(drawing(), kept))
        acutPrintf(L"\nThis drawing has no place for a view.\n");
}

// The views that a name with wildcards fits.
std::vector<std::pair<std::wstring, AcDbObjectId>> views_of(const std::wstring& pattern) {
    std::vector<std::pair<std::wstring, AcDbObjectId>> found;
    for (const dxf::record_id entry : drawing().names().entries(db::table_kind::view)) {
        const std::wstring name = drawing().names().name_of(entry);
        if (!drawing().records().gone(entry) && base::wildcard_match(name, pattern, true))
            found.emplace_back(name, drawing().id(entry));
    }
    return found;
}

void remove() {
    std::wstring names;
    if (ask_name(L"\nEnter view name(s) to delete: ", names, [](const std::wstring& given) {
            return views_of(given).empty() ? L"Cannot find view \"" + given + L"\"." : std::wstring();
        }) != RTNORM)
        return;
    for (const auto& [name, id] : views_of(names)) {
        const AcDbObjectPointer<AcDbViewTableRecord> record(id, AcDb::kForWrite);
        if (record.openStatus() == Acad::eOk)
            record->erase();
    }
}

void list() {
    std::wstring names = L"*";
    if (ask_name(L"\nEnter view name(s) to list <*>: ", names) == RTCAN)
        return;
    const auto found = views_of(names);
    acutPrintf(found.empty() ? L"\nNo matching named views found.\n" : L"\nSaved views:\n");
    for (const auto& [name, id] : found) {
        const AcDbObjectPointer<AcDbViewTableRecord> record(id, AcDb::kForRead);
        const bool is_of_sheet =
            record.openStatus() == Acad::eOk &&
            (record->imp().groups().integer(db::view_place, flags_code).value_or(0) & of_a_sheet) != 0;
        acutPrintf(L"%ls  %ls\n", name.c_str(), is_of_sheet ? L"P" : L"M");
    }
}

} // namespace

void named_view_command() {
    if (current_drawing() == nullptr)
        return;
    std::wstring word;
    if (ask_keyword(L"\nEnter an option [?/Delete/Restore/Save/Window]: ", L"? Delete Restore Save Window",
                    word) != RTNORM)
        return;
    if (word == L"?")
        list();
    else if (word == L"Delete")
        remove();
    else if (word == L"Restore")
        restore();
    else
        save(word == L"Window");
}

} // namespace ed
