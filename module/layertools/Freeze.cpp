// The commands that freeze and thaw layers.
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"

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
