// The command that opens layers chosen from a list.
#include "acutads.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDialogs.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/StayedEntities.h"
#include "siblings/zef_kernal/TPickEntSet.h"

namespace {

std::vector<AcDbObjectId> GetLayersOff() {
    std::vector<AcDbObjectId> layersOff;
    for (const AcDbObjectId id : GetAllLayerIds()) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        if (layer.openStatus() == Acad::eOk && layer->isOff())
            layersOff.push_back(id);
    }
    return layersOff;
}

// Makes what is hidden of a layer's entities visible; what cannot be opened stays.
void ShowEntities(const CString& layer, CStayedEntities& stayed) {
    TPickEntSet entities;
    entities.SelectLayer(layer);
    for (const AcDbObjectId id : entities) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() != Acad::eOk || entity->visibility() != AcDb::kInvisible)
            continue;
        if (const Acad::ErrorStatus status = entity->upgradeOpen(); status == Acad::eOk)
            entity->setVisibility(AcDb::kVisible);
        else
            stayed.Add(status);
    }
}

} // namespace

void CLayerToolBar::OpenLayer() {
    const CDocumentLock lock;
    const std::vector<AcDbObjectId> layersOff = GetLayersOff();
    if (layersOff.empty()) {
        acutPrintf(L"\n所有图层都是打开的！");
        return;
    }
    COpenLayerDlg dialog(layersOff);
    if (!dialog.DoModal())
        return;
    CStayedEntities stayed;
    for (const AcDbObjectId layer : dialog.GetChosenLayers()) {
        SetLayerState(layer, LayerState::Off, false);
        ShowEntities(GetLayerName(layer), stayed);
    }
    stayed.Tell(L"仍然隐藏");
    RegenerateDisplay();
    RefreshLayerDisplay();
}
