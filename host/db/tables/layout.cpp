#include "dblayout.h"

#include "acutmem.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/record_header.h"

ACRX_CONS_DEFINE_MEMBERS(AcDbPlotSettings, AcDbObject, 0)
ACRX_CONS_DEFINE_MEMBERS(AcDbLayout, AcDbPlotSettings, 0)

namespace {

constexpr dxf::group_place plot_place{"AcDbPlotSettings"};
constexpr dxf::group_place layout_place{"AcDbLayout"};

dxf::record_id space_of(const AcDbImpObject& imp) {
    return imp.database != nullptr ? imp.database->records().find(imp.groups().handle(layout_place, 330))
                                   : dxf::no_record;
}

} // namespace

AcDbPlotSettings::AcDbPlotSettings() = default;

bool AcDbPlotSettings::modelType() const {
    assertReadEnabled();
    constexpr std::int64_t model_flag = 1024;
    return (imp().groups().integer(plot_place, 70).value_or(0) & model_flag) != 0;
}

AcDbLayout::AcDbLayout() = default;

Acad::ErrorStatus AcDbLayout::getLayoutName(AcString& name) const {
    assertReadEnabled();
    name = imp().decode(dxf::trimmed(imp().groups().text(layout_place, 1).value_or(""))).c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLayout::getLayoutName(ACHAR*& name) const {
    AcString text;
    getLayoutName(text);
    return acutNewString(text.kwszPtr(), name);
}

AcDbObjectId AcDbLayout::getBlockTableRecordId() const {
    assertReadEnabled();
    const dxf::record_id space = space_of(imp());
    return space != dxf::no_record ? imp().database->id(space) : AcDbObjectId::kNull;
}

int AcDbLayout::getTabOrder() const {
    assertReadEnabled();
    return static_cast<int>(imp().groups().integer(layout_place, 71).value_or(0));
}

bool AcDbLayout::getTabSelected() const {
    assertReadEnabled();
    const dxf::record_id space = space_of(imp());
    return space != dxf::no_record && space == db::current_tab(*imp().database);
}

AcDbObjectIdArray AcDbLayout::getViewportArray() const {
    assertReadEnabled();
    AcDbObjectIdArray ids;
    if (imp().database != nullptr)
        for (const dxf::record_id viewport : db::viewports(*imp().database, space_of(imp())))
            ids.append(imp().database->id(viewport));
    return ids;
}
