// The commands that lock and unlock layers.
#include "acutads.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerNames.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbPipeAttachment.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"

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

template<class Kind>
void AddLayerOf(AcDbObjectId id, CLayerNames& layers) {
    const AcDbObjectPointer<Kind> entity(id, AcDb::kForRead);
    AcString name;
    if (entity.openStatus() == Acad::eOk && entity->layer(name) == Acad::eOk)
        layers.Add(name.kACharPtr());
}

// Adds the layers of a pipe's attachments and of the joints at its ends.
void AddLayersAtPipe(AcDbObjectId id, CLayerNames& layers) {
    const AcDbObjectPointer<TDbPipe> pipe(id, AcDb::kForRead);
    if (pipe.openStatus() != Acad::eOk)
        return;
    for (const AcDbObjectId attachment : pipe->GetAttachments())
        AddLayerOf<TDbPipeAttachment>(attachment, layers);
    AddLayerOf<TDbPipeNode>(pipe->GetStartNode(), layers);
    AddLayerOf<TDbPipeNode>(pipe->GetEndNode(), layers);
}

} // namespace

void CLayerToolBar::LockSelLayer() {
    const CDocumentLock lock;
    TPickEntSet picked;
    if (picked.SelectEntities(L"\n请选择要锁定层上的图元 <退出>:") != RTNORM)
        return;
    SetLocked(CLayerNames(picked), true, L"层本身就是锁定的！");
    RefreshLayerDisplay();
}

void CLayerToolBar::UnLockSelLayer() {
    const CDocumentLock lock;
    TPickEntSet picked;
    const int answer = picked.SelectEntities(L"\n请选择要解锁层上的图元(ESC退出,空格解开全部层) <全部>:");
    if (answer == RTCAN)
        return;
    if (answer == RTNORM) {
        SetLocked(CLayerNames(picked), false, L"层本身就没有锁定！");
    } else {
        for (const AcDbObjectId layer : GetAllLayerIds())
            SetLayerState(layer, LayerState::Locked, false);
    }
    RefreshLayerDisplay();
}

void CLayerToolBar::sfxc() {
    const CDocumentLock lock;
    TPickEntSet picked;
    if (picked.SelectEntities(L"\n请选择要保留不被锁定层上的图元<退出>:") != RTNORM)
        return;
    CLayerNames kept(picked);
    for (int i = 0; i < picked.GetCount(); ++i) {
        if (picked.GetTypeName(i) == L"ZEF_PIPE")
            AddLayersAtPipe(picked.GetAt(i), kept);
    }
    for (const AcDbObjectId layer : GetAllLayerIds())
        SetLayerState(layer, LayerState::Locked, !kept.Holds(GetLayerName(layer)));
    for (const CString& layer : kept)
        acutPrintf(L"%s 层打开\n", layer.GetString());
    RefreshLayerDisplay();
}
