// LAYOUT, MSPACE, PSPACE.
#include "aced.h"
#include "base/case_fold.h"
#include "dblayout.h"
#include "dbobjptr.h"
#include "host/db/creation/new_layout.h"
#include "host/db/tables/spaces.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"

namespace ed {

namespace {

AcDbImpDatabase& drawing() {
    return current_drawing()->imp();
}

std::wstring name_of(dxf::record_id layout) {
    const AcDbObjectPointer<AcDbLayout> opened(drawing().id(layout));
    AcString name;
    if (opened.openStatus() == Acad::eOk)
        opened->getLayoutName(name);
    return name.kwszPtr();
}

dxf::record_id layout_named(const std::wstring& name) {
    for (const dxf::record_id layout : db::layouts_by_tab(drawing()))
        if (base::equal_no_case(name_of(layout), name))
            return layout;
    return dxf::no_record;
}

// The first of "Layout1", "Layout2", ... that is free.
std::wstring free_name() {
    for (int number = 1;; ++number)
        if (std::wstring name = L"Layout" + std::to_wstring(number); layout_named(name) == dxf::no_record)
            return name;
}

std::wstring reason_for(Acad::ErrorStatus status, const std::wstring& name) {
    switch (status) {
    case Acad::eOk:
        return {};
    case Acad::eDuplicateKey:
        return L"Layout \"" + name + L"\" already exists.";
    case Acad::eInvalidInput:
        return L"Invalid layout name \"" + name + L"\".";
    default:
        return L"This drawing can not hold the layout.";
    }
}

// Asks for a layout by its name; Enter takes the current one, or the current sheet. no_record when the user
// ended it.
dxf::record_id ask_layout(const wchar_t* what, bool sheets_only) {
    const dxf::record_id current = sheets_only ? db::current_sheet(drawing()) : db::current_tab(drawing());
    const std::wstring shown = current != dxf::no_record ? db::tab_name(drawing(), current) : L"";
    std::wstring name = shown;
    dxf::record_id layout = dxf::no_record;
    const name_check check = [&](const std::wstring& given) -> std::wstring {
        layout = layout_named(given);
        if (layout == dxf::no_record)
            return L"Layout \"" + given + L"\" not found.";
        return sheets_only && base::equal_no_case(given, L"Model") ? L"The Model tab can not be changed."
                                                                   : L"";
    };
    const int answered = ask_name(std::wstring(L"\nEnter ") + what + L" <" + shown + L">: ", name, check);
    if (answered == RTNONE)
        layout = layout_named(shown);
    return answered == RTCAN ? dxf::no_record : layout;
}

void list_layouts() {
    acutPrintf(L"\nActive Layouts:\n");
    for (const dxf::record_id layout : db::layouts_by_tab(drawing())) {
        const AcDbObjectPointer<AcDbLayout> opened(drawing().id(layout));
        if (opened.openStatus() != Acad::eOk)
            continue;
        const AcDbObjectPointer<AcDbBlockTableRecord> block(opened->getBlockTableRecordId());
        AcString name;
        if (block.openStatus() == Acad::eOk)
            block->getName(name);
        acutPrintf(L"Layout: %ls%ls\n   Block name: %ls.\n", name_of(layout).c_str(),
                   opened->getTabSelected() ? L" (current)" : L"", name.kwszPtr());
    }
}

void new_layout() {
    std::wstring name = free_name();
    const int answered =
        ask_name(L"\nEnter new Layout name <" + name + L">: ", name, [](const std::wstring& given) {
            return reason_for(db::add_layout(drawing(), given, dxf::no_record), given);
        });
    if (answered == RTNONE)
        if (const std::wstring why = reason_for(db::add_layout(drawing(), name, dxf::no_record), name);
            !why.empty())
            acdbFail((L"\n" + why).c_str());
}

void copy_layout() {
    const dxf::record_id from = ask_layout(L"name of layout to copy", true);
    if (from == dxf::no_record)
        return;
    std::wstring name = name_of(from) + L" (2)";
    for (int number = 3; layout_named(name) != dxf::no_record; ++number)
        name = name_of(from) + L" (" + std::to_wstring(number) + L")";
    const auto make = [&](const std::wstring& given) {
        return reason_for(db::add_layout(drawing(), given, from), given);
    };
    const int answered = ask_name(L"\nEnter layout name for copy <" + name + L">: ", name, make);
    if (answered == RTCAN)
        return;
    const std::wstring why = answered == RTNONE ? make(name) : std::wstring();
    acutPrintf(L"\n%ls\n", why.empty() ? (L"Layout \"" + name + L"\" created.").c_str() : why.c_str());
}

void delete_layout() {
    const dxf::record_id layout = ask_layout(L"name of layout to delete", true);
    if (layout == dxf::no_record)
        return;
    const std::wstring name = name_of(layout);
    if (db::erase_layout(drawing(), layout) == Acad::eOk)
        acutPrintf(L"\nLayout \"%ls\" deleted.\n", name.c_str());
    else
        acdbFail(
            (L"\nLayout \"" + name + L"\" can not be deleted: it is the one that the drawing was saved with.")
                .c_str());
}

void rename_layout() {
    const dxf::record_id layout = ask_layout(L"layout to rename", true);
    if (layout == dxf::no_record)
        return;
    const std::wstring before = name_of(layout);
    std::wstring name;
    if (ask_name(L"\nEnter new layout name: ", name, [&](const std::wstring& given) {
            return reason_for(db::rename_layout(drawing(), layout, given), given);
        }) == RTNORM)
        acutPrintf(L"\nLayout \"%ls\" renamed to \"%ls\".\n", before.c_str(), name.c_str());
}

void set_layout() {
    const dxf::record_id layout = ask_layout(L"layout to make current", false);
    if (layout == dxf::no_record || !db::set_current_tab(drawing(), name_of(layout)))
        return;
    db::make_sheet_viewport(drawing());
    acutPrintf(L"\nRegenerating layout.\n");
}

} // namespace

void layout_command() {
    if (current_drawing() == nullptr)
        return;
    if (db::layouts_by_tab(drawing()).empty()) {
        acdbFail(L"\nThis drawing has no layouts.");
        return;
    }
    std::wstring word = L"Set";
    if (ask_keyword(L"\nEnter layout option [Copy/Delete/New/Rename/Set/?] <set>: ",
                    L"Copy Delete New Rename Set ?", word) == RTCAN)
        return;
    if (word == L"?")
        list_layouts();
    else if (word == L"New")
        new_layout();
    else if (word == L"Copy")
        copy_layout();
    else if (word == L"Delete")
        delete_layout();
    else if (word == L"Rename")
        rename_layout();
    else
        set_layout();
}

namespace {

void change_space(Acad::ErrorStatus (*change)(), bool to_model) {
    if (current_drawing() == nullptr)
        return;
    if (current_drawing()->tilemode()) {
        acdbFail(L"\n** Command not allowed in Model Tab **");
        return;
    }
    if ((db::current_viewport_number(drawing()) != 1) == to_model) {
        acutPrintf(to_model ? L"\nAlready in model space.\n" : L"\nAlready in paper space.\n");
        return;
    }
    if (change() != Acad::eOk)
        acdbFail(L"\nThere are no active Model space viewports.");
}

} // namespace

void mspace_command() {
    change_space(acedMspace, true);
}

void pspace_command() {
    change_space(acedPspace, false);
}

} // namespace ed
