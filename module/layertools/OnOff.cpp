// The commands that turn layers on and off.
#include "dbapserv.h"
#include "dbobjptr.h"
#include "module/layertools/BarMemory.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/DrawingWalk.h"
#include "module/layertools/LayerControlBar.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerNames.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "module/layertools/StayedEntities.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"
#include "siblings/zef_pipewire/TDbPsConfig.h"

#include <memory>

namespace {

void ShowPipeSystem(TDbPsConfig& config, LPCTSTR name) {
    const int type = GetSysType(name);
    if (type != kCustomSystemType)
        config.ShowSystem(type, true);
    else
        config.ShowCustomPipeSystem(name, true);
}

// Shows all systems of the standard where the drawing's configuration hides them, a renamed one by either
// name.
void ShowPipeSystems() {
    std::vector<PipeClassificationNode> groups;
    PipeSystemTool::GetPipeSystems(groups, true);
    TDbPsConfig* config = nullptr;
    if (GetDwgPsGlobal(config, AcDb::kForWrite) != Acad::eOk)
        return;
    for (const PipeClassificationNode& group : groups) {
        for (const PipeInfoNode& system : group.m_systems) {
            ShowPipeSystem(*config, system.m_basic.m_name);
            ShowPipeSystem(*config, system.m_basic.m_initialName);
        }
    }
    config->close();
}

// Makes what is hidden in model space visible; what cannot be opened stays. Helper objects are drawn anew.
void ShowModelSpace() {
    CStayedEntities stayed;
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    const AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, database, AcDb::kForRead);
    if (space.openStatus() != Acad::eOk)
        return;
    TEntitySet redrawn;
    for (const AcDbObjectId id : EntitiesOf(*space.object())) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() != Acad::eOk)
            continue;
        const bool hidden = entity->visibility() == AcDb::kInvisible;
        const Acad::ErrorStatus status = hidden ? entity->upgradeOpen() : Acad::eOk;
        if (status != Acad::eOk)
            stayed.Add(status);
        const bool shows =
            hidden && status == Acad::eOk && entity->setVisibility(AcDb::kVisible) == Acad::eOk;
        if (shows || IsNoDrawingObject(entity.object()))
            redrawn.Add(id);
    }
    stayed.Tell(L"仍然隐藏");
    redrawn.UpdateGraphic();
}

} // namespace

void CLayerToolBar::OpenSelLayer() {
    const CDocumentLock lock;
    TPickEntSet picked;
    if (picked.SelectEntities(L"\n请选择打开层上的图元 <退出>:") != RTNORM)
        return;
    const CLayerNames opened(picked);
    for (const AcDbObjectId layer : GetAllLayerIds())
        SetLayerState(layer, LayerState::Off, !opened.Holds(GetLayerName(layer)));
    RegenerateDisplay();
}

void CLayerToolBar::SetAllPipeLayOpen() {
    const CDocumentLock lock;
    for (const AcDbObjectId layer : GetAllLayerIds())
        SetLayerState(layer, LayerState::Off, false);
    ShowPipeSystems();
    ShowModelSpace();
    NoteAllShown();
    if (CLayerControlBar* const bar = CLayerControlBar::Get())
        bar->Refresh();
    RegenerateDisplay();
}
