// The commands that lock and unlock layers.
#include "acutads.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/PickLayers.h"

namespace {

// Locks or unlocks the layers. Those that need it not are told of at the end, with what is so already.
void SetLocked(const CLayerNames& layers, bool locked, const wchar_t* isSoAlready) {
    std::vector<CString> wereSo;
    for (const CString& layer : layers) {
        if (SetLayerState(layer, LayerState::Locked, locked) == LayerChange::WasSo)
            wereSo.push_back(layer);
    }
    for (const CString& layer : wereSo)
        acutPrintf(L"\n%s%s", layer.GetString(), isSoAlready);
}

} // namespace

void CLayerToolBar::LockSelLayer() {
    const CDocumentLock lock;
    CLayerNames picked;
    if (PickLayers(L"\n请选择要锁定层上的图元 <退出>:", picked) != PickEnd::Picked)
        return;
    SetLocked(picked, true, L"层本身就是锁定的！");
    RefreshLayerDisplay();
}

void CLayerToolBar::UnLockSelLayer() {
    const CDocumentLock lock;
    CLayerNames picked;
    switch (PickLayers(L"\n请选择要解锁层上的图元(ESC退出,空格解开全部层) <全部>:", picked)) {
    case PickEnd::Picked:
        SetLocked(picked, false, L"层本身就没有锁定！");
        break;
    case PickEnd::Enter:
        for (const AcDbObjectId layer : GetAllLayerIds())
            SetLayerState(layer, LayerState::Locked, false);
        break;
    case PickEnd::Cancelled:
        return;
    }
    RefreshLayerDisplay();
}
