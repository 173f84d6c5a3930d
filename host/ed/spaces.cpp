// Model space, paper space and their viewports: MSPACE, PSPACE and the current viewport, and layers in it.
#include "host/ed/spaces.h"

#include "aced.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/creation/new_layout.h"
#include "host/db/tables/spaces.h"

namespace ed {

namespace {

AcDbImpDatabase* current() {
    AcDbDatabase* const database = ap::documents::instance().current_database();
    return database != nullptr ? &database->imp() : nullptr;
}

} // namespace

variable_value tab_variable() {
    AcDbImpDatabase* const database = current();
    return database != nullptr ? db::tab_name(*database, db::current_tab(*database)) : std::wstring(L"Model");
}

variable_value viewport_variable() {
    AcDbImpDatabase* const database = current();
    return database != nullptr ? db::current_viewport_number(*database) : 2;
}

variable_status set_tab(const variable_value& value) {
    const std::wstring* const name = std::get_if<std::wstring>(&value);
    if (name == nullptr)
        return variable_status::wrong_type;
    if (current() == nullptr || !db::set_current_tab(*current(), *name))
        return variable_status::out_of_range;
    db::make_sheet_viewport(*current());
    return variable_status::well;
}

variable_status set_viewport(const variable_value& value) {
    const int* const number = std::get_if<int>(&value);
    if (number == nullptr)
        return variable_status::wrong_type;
    return current() != nullptr && db::set_current_viewport(*current(), *number)
               ? variable_status::well
               : variable_status::out_of_range;
}

} // namespace ed

Acad::ErrorStatus acedMspace() {
    AcDbImpDatabase* const database = ed::current();
    if (database == nullptr)
        return Acad::eNoDocument;
    if (db::in_tile_mode(*database))
        return Acad::eInvalidInput;
    if (db::current_viewport_number(*database) != 1)
        return Acad::eOk;
    for (const dxf::record_id viewport : db::viewports(*database, db::current_sheet(*database)))
        if (const int number = db::viewport_number(*database, viewport);
            number > 1 && db::set_current_viewport(*database, number))
            return Acad::eOk;
    return Acad::eCannotChangeActiveViewport;
}

Acad::ErrorStatus acedPspace() {
    AcDbImpDatabase* const database = ed::current();
    if (database == nullptr)
        return Acad::eNoDocument;
    if (db::in_tile_mode(*database))
        return Acad::eInvalidInput;
    return db::set_current_viewport(*database, 1) ? Acad::eOk : Acad::eCannotChangeActiveViewport;
}

AcDbObjectId acedGetCurViewportObjectId() {
    AcDbImpDatabase* const database = ed::current();
    if (database == nullptr)
        return AcDbObjectId::kNull;
    db::make_sheet_viewport(*database); // the sheet may be current since the drawing was opened
    return database->id(db::current_viewport(*database));
}

AcDbObjectId acedActiveViewportId() {
    return acedGetCurViewportObjectId();
}

AcDbObjectId acedViewportIdFromNumber(int number) {
    AcDbImpDatabase* const database = ed::current();
    return database != nullptr ? database->id(db::viewport_by_number(*database, number))
                               : AcDbObjectId::kNull;
}

Acad::ErrorStatus acedVPLayer(const AcDbObjectId& viewport, const AcDbObjectIdArray& layers,
                              AcDb::VpFreezeOps operation) {
    const AcDbObjectPointer<AcDbViewport> opened(viewport, AcDb::kForWrite);
    if (opened.openStatus() != Acad::eOk)
        return Acad::eInvalidInput;
    if (operation == AcDb::kFreeze)
        return opened->freezeLayersInViewport(layers);
    if (operation == AcDb::kThaw)
        return opened->thawLayersInViewport(layers);
    AcDbObjectIdArray frozen; // by default
    AcDbObjectIdArray thawed;
    for (const AcDbObjectId id : layers) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id);
        if (layer.openStatus() != Acad::eOk)
            return Acad::eInvalidInput;
        (layer->VPDFLT() ? frozen : thawed).append(id);
    }
    if (const Acad::ErrorStatus status = opened->freezeLayersInViewport(frozen); status != Acad::eOk)
        return status;
    return opened->thawLayersInViewport(thawed);
}
