// The commands that freeze and thaw layers.
#include "acutads.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_kernal/TPickEntSet.h"

#include <set>

void CLayerToolBar::FrozenLayer() {
    const CDocumentLock lock;
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    std::set<AcDbObjectId> layers;
    TPickEntSet picked;
    while (picked.SelectEntity(L"\n请选择需要冻结层上的图元 <退出>:") == RTNORM) {
        const AcDbEntityPointer entity(picked.GetAt(0), AcDb::kForRead);
        if (entity.openStatus() == Acad::eOk)
            layers.insert(entity->layerId());
        bool frozen = false;
        for (const AcDbObjectId layer : layers) {
            const LayerChange change = SetLayerState(layer, LayerState::Frozen, true);
            frozen = change == LayerChange::Done || frozen;
            if (change == LayerChange::Refused)
                acutPrintf(layer == database->clayer() ? L"\n不能冻结当前层!" : L"\n图层冻结失败!");
        }
        if (frozen)
            RegenerateDisplay();
    }
}

void CLayerToolBar::UnFrozenAllLayer() {
    const CDocumentLock lock;
    bool thawed = false;
    for (const AcDbObjectId layer : GetAllLayerIds())
        thawed = SetLayerState(layer, LayerState::Frozen, false) == LayerChange::Done || thawed;
    if (!thawed)
        return;
    RefreshLayerDisplay();
    RegenerateDisplay();
}
