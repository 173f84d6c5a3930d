// The commands that freeze and thaw layers in the viewports of a sheet.
#include "aced.h"
#include "acutmem.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDialogs.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_kernal/TPickEntSet.h"

namespace {

// Whether a sheet is current; the user is told when none is.
bool IsOnSheet() {
    resbuf value = {};
    if (acedGetVar(L"TILEMODE", &value) != RTNORM || value.restype != RTSHORT || value.resval.rint != 1)
        return true;
    acutPrintf(L"\n本命令必须在图纸布局中使用！");
    return false;
}

AcDbObjectIdArray ToIdArray(const std::vector<AcDbObjectId>& layers) {
    AcDbObjectIdArray ids;
    for (const AcDbObjectId layer : layers)
        ids.append(layer);
    return ids;
}

std::vector<AcDbObjectId> GetLayersIn(AcDbObjectId viewport, bool frozen) {
    std::vector<AcDbObjectId> layers;
    const AcDbObjectPointer<AcDbViewport> opened(viewport, AcDb::kForRead);
    if (opened.openStatus() != Acad::eOk)
        return layers;
    for (const AcDbObjectId layer : GetAllLayerIds())
        if (opened->isLayerFrozenInViewport(layer) == frozen)
            layers.push_back(layer);
    return layers;
}

// A viewport that cannot be opened is passed over.
void Freeze(AcDbObjectId viewport, const AcDbObjectIdArray& layers) {
    const AcDbObjectPointer<AcDbViewport> opened(viewport, AcDb::kForWrite);
    if (opened.openStatus() == Acad::eOk && opened->freezeLayersInViewport(layers) == Acad::eOk)
        RegenerateDisplay();
}

void Thaw(AcDbObjectId viewport, const AcDbObjectIdArray& layers) {
    const AcDbObjectPointer<AcDbViewport> opened(viewport, AcDb::kForWrite);
    if (opened.openStatus() == Acad::eOk && opened->thawLayersInViewport(layers) == Acad::eOk)
        RegenerateDisplay();
}

AcDbObjectId GetLayerOf(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    return entity.openStatus() == Acad::eOk ? entity->layerId() : AcDbObjectId::kNull;
}

// One viewport, also where something else lies over its frame; null when none is picked.
AcDbObjectId PickViewport(const wchar_t* prompt) {
    const wchar_t* const prompts[] = {prompt, prompt}; // to add and to remove
    resbuf* const filter = acutBuildList(RTDXF0, L"VIEWPORT", 0);
    ads_name set;
    const int answer = acedSSGet(L"_+.:E:S:$", prompts, nullptr, filter, set);
    acutRelRb(filter);
    AcDbObjectId viewport;
    ads_name name;
    if (answer != RTNORM)
        return viewport;
    if (acedSSName(set, 0, name) == RTNORM)
        acdbGetObjectId(viewport, name);
    acedSSFree(set);
    return viewport;
}

} // namespace

void CLayerToolBar::FrozenViewLayer() {
    const CDocumentLock lock;
    if (!IsOnSheet())
        return;
    AcDbObjectIdArray layers;
    TPickEntSet picked;
    while (picked.SelectEntity(L"\n请选择需要冻结的视口或视口图层上的任意图元 <退出>:") == RTNORM) {
        const AcDbObjectId id = picked.GetAt(0);
        if (id.objectClass()->isDerivedFrom(AcDbViewport::desc())) {
            CLayerFilterDlg dialog(GetLayersIn(id, false), L"视口未冻结图层");
            if (dialog.DoModal())
                Freeze(id, ToIdArray(dialog.GetChosenLayers()));
        } else if (const AcDbObjectId layer = GetLayerOf(id); !layer.isNull()) {
            if (!layers.contains(layer))
                layers.append(layer);
            Freeze(acedGetCurViewportObjectId(), layers);
        }
    }
}

void CLayerToolBar::UnFrozenViewAllLayer() {
    const CDocumentLock lock;
    if (!IsOnSheet())
        return;
    AcDbObjectId viewport = acedGetCurViewportObjectId();
    std::vector<AcDbObjectId> frozen = GetLayersIn(viewport, true);
    if (frozen.empty()) {
        viewport = PickViewport(L"\n请选择需要解冻图层的视口<退出>:");
        if (viewport.isNull())
            return;
        frozen = GetLayersIn(viewport, true);
    }
    // The title is that of the other command's list, and has always been.
    CLayerFilterDlg dialog(frozen, L"视口已解冻图层");
    if (dialog.DoModal())
        Thaw(viewport, ToIdArray(dialog.GetChosenLayers()));
}
