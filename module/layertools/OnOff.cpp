// The commands that turn layers on and off.
#include "dbapserv.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/PickLayers.h"

#include <memory>

namespace {

// Makes what is hidden in model space visible; what cannot be opened stays.
void ShowModelSpace() {
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    const AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database, AcDb::kForRead);
    AcDbBlockTableRecordIterator* made = nullptr;
    if (space.openStatus() != Acad::eOk || space->newIterator(made) != Acad::eOk)
        return;
    for (const std::unique_ptr<AcDbBlockTableRecordIterator> each(made); !each->done(); each->step()) {
        AcDbObjectId id;
        if (each->getEntityId(id) != Acad::eOk)
            continue;
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() == Acad::eOk && entity->visibility() == AcDb::kInvisible &&
            entity->upgradeOpen() == Acad::eOk)
            entity->setVisibility(AcDb::kVisible);
    }
}

} // namespace

void CLayerToolBar::OpenSelLayer() {
    const CDocumentLock lock;
    CLayerNames picked;
    if (PickLayers(L"\n请选择打开层上的图元 <退出>:", picked) != PickEnd::Picked)
        return;
    for (const AcDbObjectId layer : GetAllLayerIds())
        SetLayerState(layer, LayerState::Off, !picked.Holds(GetLayerName(layer)));
    RegenerateDisplay();
}

void CLayerToolBar::SetAllPipeLayOpen() {
    const CDocumentLock lock;
    for (const AcDbObjectId layer : GetAllLayerIds())
        SetLayerState(layer, LayerState::Off, false);
    // Here every system of the standard will be made visible in the drawing's pipe-system configuration.
    ShowModelSpace();
    // Here the layer control bar will be refreshed when it is there.
    RegenerateDisplay();
}
