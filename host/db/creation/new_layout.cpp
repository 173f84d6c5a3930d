#include "host/db/creation/new_layout.h"

#include "adscodes.h"
#include "base/case_fold.h"
#include "dbents.h"
#include "dblayout.h"
#include "dbobjptr.h"
#include "host/db/core/blocks.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/new_block.h"
#include "host/db/tables/spaces.h"

#include <algorithm>

namespace db {

namespace {

constexpr dxf::group_place layout_place{"AcDbLayout"};
constexpr dxf::group_place record_place{"AcDbBlockTableRecord"};
constexpr dxf::group_place plot_place{"AcDbPlotSettings"};

// A sheet of A3, lying, as new drawings have it.
constexpr double paper_width = 420.0;
constexpr double paper_height = 297.0;
constexpr const char* new_layout_text =
    "0\nLAYOUT\n100\nAcDbPlotSettings\n1\n\n2\nnone_device\n4\nISO_A3_(420.00_x_297.00_MM)\n6\n\n40\n7.5\n"
    "41\n20.0\n42\n7.5\n43\n20.0\n44\n420.0\n45\n297.0\n46\n0.0\n47\n0.0\n48\n0.0\n49\n0.0\n140\n0.0\n141\n"
    "0.0\n142\n1.0\n143\n1.0\n70\n688\n72\n1\n73\n0\n74\n5\n7\n\n75\n16\n76\n0\n77\n2\n78\n300\n147\n1.0\n"
    "148\n0.0\n149\n0.0\n100\nAcDbLayout\n1\n\n70\n1\n71\n0\n10\n0.0\n20\n0.0\n11\n420.0\n21\n297.0\n12\n"
    "0.0\n22\n0.0\n32\n0.0\n14\n1e+20\n24\n1e+20\n34\n1e+20\n15\n-1e+20\n25\n-1e+20\n35\n-1e+20\n146\n0.0\n"
    "13\n0.0\n23\n0.0\n33\n0.0\n16\n1.0\n26\n0.0\n36\n0.0\n17\n0.0\n27\n1.0\n37\n0.0\n76\n0\n330\n0\n";

int tab_order(const AcDbImpDatabase& database, dxf::record_id layout) {
    return static_cast<int>(
        dxf::group_list(database.records().text(layout)).integer(layout_place, 71).value_or(0));
}

dxf::record_id space_of(const AcDbImpDatabase& database, dxf::record_id layout) {
    return database.records().find(
        dxf::group_list(database.records().text(layout)).handle(layout_place, 330));
}

AcDbObjectId layout_dictionary(const AcDbImpDatabase& database) {
    const AcDbDictionaryPointer root(database.self().namedObjectsDictionaryId());
    AcDbObjectId id;
    if (root.openStatus() == Acad::eOk)
        root->getAt(L"ACAD_LAYOUT", id);
    return id;
}

std::wstring free_sheet_name(AcDbImpDatabase& database) {
    std::wstring name = ACDB_PAPER_SPACE;
    for (int number = 0; database.names().find(table_kind::block, name) != dxf::no_record; ++number)
        name = ACDB_PAPER_SPACE + std::to_wstring(number);
    return name;
}

// The viewport that is the sheet itself; everything of it is seen.
void add_sheet_viewport(AcDbBlockTableRecord& sheet, double width, double height) {
    auto viewport = std::make_unique<AcDbViewport>();
    viewport->setCenterPoint({width / 2, height / 2, 0.0});
    viewport->setWidth(width);
    viewport->setHeight(height);
    viewport->setViewCenter({width / 2, height / 2});
    viewport->setViewHeight(height);
    if (sheet.appendAcDbEntity(viewport.get()) == Acad::eOk)
        viewport.release()->close(); // the drawing's now
}

void copy_entities(AcDbImpDatabase& database, dxf::record_id from, AcDbBlockTableRecord& sheet) {
    for (const dxf::record_id entity : database.blocks().entities(from)) {
        const AcDbEntityPointer original(database.id(entity));
        if (original.openStatus() != Acad::eOk)
            continue;
        std::unique_ptr<AcDbEntity> copy(static_cast<AcDbEntity*>(original->clone()));
        if (copy != nullptr && sheet.appendAcDbEntity(copy.get()) == Acad::eOk)
            copy.release()->close(); // the drawing's now
    }
}

Acad::ErrorStatus check_name(AcDbImpDatabase& database, const std::wstring& name, dxf::record_id own) {
    if (name.empty() || acdbSNValid(name.c_str(), 0) != RTNORM)
        return Acad::eInvalidInput;
    for (const dxf::record_id layout : layouts_by_tab(database))
        if (layout != own && base::equal_no_case(tab_name(database, space_of(database, layout)), name))
            return Acad::eDuplicateKey;
    return Acad::eOk;
}

} // namespace

std::vector<dxf::record_id> layouts_by_tab(AcDbImpDatabase& database) {
    const dxf::record_table& records = database.records();
    std::vector<dxf::record_id> found;
    for (dxf::record_id id = 0; id < records.size(); ++id)
        if (records.type(id) == dxf::type_layout && records.kind(id) == dxf::record_kind::object &&
            !records.gone(id))
            found.push_back(id);
    std::stable_sort(found.begin(), found.end(), [&](dxf::record_id a, dxf::record_id b) {
        return tab_order(database, a) < tab_order(database, b);
    });
    return found;
}

Acad::ErrorStatus add_layout(AcDbImpDatabase& database, const std::wstring& name, dxf::record_id like) {
    const std::vector<dxf::record_id> known = layouts_by_tab(database);
    const AcDbObjectId dictionary_id = layout_dictionary(database);
    if (database.drawing().version() < release_2000 || known.empty() || dictionary_id.isNull())
        return Acad::eNotApplicable;
    if (const Acad::ErrorStatus status = check_name(database, name, dxf::no_record); status != Acad::eOk)
        return status;
    AcDbObjectId sheet_id;
    AcDbObjectPointer<AcDbBlockTableRecord> sheet;
    sheet.create();
    sheet->imp().edit().set_text(record_place, 2, sheet->imp().encode(free_sheet_name(database)));
    if (const Acad::ErrorStatus status = add_block(database, *sheet.object(), sheet_id, true);
        status != Acad::eOk)
        return status;

    const AcDbDictionaryPointer dictionary(dictionary_id, AcDb::kForWrite);
    auto layout = std::make_unique<AcDbLayout>();
    if (like == dxf::no_record) {
        layout->imp().begin_new(new_layout_text);
    } else if (const AcDbObjectPointer<AcDbLayout> original(database.id(like));
               original.openStatus() == Acad::eOk) {
        layout.reset(static_cast<AcDbLayout*>(original->clone()));
    }
    if (layout == nullptr || dictionary.openStatus() != Acad::eOk)
        return Acad::eNotApplicable;
    AcDbImpObject& imp = layout->imp();
    imp.edit().set_text(layout_place, 1, imp.encode(name));
    imp.edit().set_integer(layout_place, 71, tab_order(database, known.back()) + 1);
    imp.edit().set_text(layout_place, 330, handle_text(database.records().handle(database.record(sheet_id))));
    imp.edit().remove(layout_place, 331); // the viewport that was used last is the other sheet's
    AcDbObjectId layout_id;
    if (const Acad::ErrorStatus status = dictionary->setAt(name.c_str(), layout.get(), layout_id);
        status != Acad::eOk)
        return status;
    layout.release()->close(); // the drawing's now
    sheet->imp().edit().set_text(record_place, 340,
                                 handle_text(database.records().handle(database.record(layout_id))));
    if (like == dxf::no_record)
        add_sheet_viewport(*sheet.object(), paper_width, paper_height);
    else
        copy_entities(database, space_of(database, like), *sheet.object());
    return Acad::eOk;
}

void make_sheet_viewport(AcDbImpDatabase& database) {
    const dxf::record_id sheet = current_sheet(database);
    if (in_tile_mode(database) || sheet == dxf::no_record || !viewports(database, sheet).empty())
        return;
    const AcDbObjectPointer<AcDbBlockTableRecord> block(database.id(sheet), AcDb::kForWrite);
    if (block.openStatus() != Acad::eOk)
        return;
    double width = 0.0;
    double height = 0.0;
    if (const dxf::record_id layout = layout_of(database, sheet); layout != dxf::no_record) {
        const dxf::group_list groups(database.records().text(layout));
        width = groups.real(plot_place, 44).value_or(0.0);
        height = groups.real(plot_place, 45).value_or(0.0);
    }
    const bool has_size = width > 0.0 && height > 0.0;
    add_sheet_viewport(*block.object(), has_size ? width : paper_width, has_size ? height : paper_height);
}

Acad::ErrorStatus rename_layout(AcDbImpDatabase& database, dxf::record_id layout, const std::wstring& name) {
    if (const Acad::ErrorStatus status = check_name(database, name, layout); status != Acad::eOk)
        return status;
    const AcDbDictionaryPointer dictionary(layout_dictionary(database), AcDb::kForWrite);
    const AcDbObjectPointer<AcDbLayout> opened(database.id(layout), AcDb::kForWrite);
    if (dictionary.openStatus() != Acad::eOk || opened.openStatus() != Acad::eOk ||
        space_of(database, layout) == database.blocks().find(ACDB_MODEL_SPACE))
        return Acad::eNotApplicable;
    AcString before;
    opened->getLayoutName(before);
    if (!dictionary->setName(before.kwszPtr(), name.c_str()))
        return Acad::eNotApplicable;
    opened->imp().edit().set_text(layout_place, 1, opened->imp().encode(name));
    return Acad::eOk;
}

Acad::ErrorStatus erase_layout(AcDbImpDatabase& database, dxf::record_id layout) {
    const dxf::record_id sheet = space_of(database, layout);
    if (sheet == dxf::no_record || sheet == database.blocks().find(ACDB_MODEL_SPACE) ||
        sheet == database.blocks().find(ACDB_PAPER_SPACE))
        return Acad::eNotApplicable;
    if (current_tab(database) == sheet)
        set_current_tab(database, tab_name(database, database.blocks().find(ACDB_PAPER_SPACE)));
    const AcDbObjectPointer<AcDbLayout> opened(database.id(layout), AcDb::kForWrite);
    if (opened.openStatus() != Acad::eOk)
        return opened.openStatus();
    if (const Acad::ErrorStatus status = opened->erase(); status != Acad::eOk)
        return status;
    database.objects().set_erased(sheet, true);
    return Acad::eOk;
}

} // namespace db
