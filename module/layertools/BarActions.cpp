#include "module/layertools/BarActions.h"

#include "aced.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "module/layertools/StayedEntities.h"
#include "siblings/zef_kernal/TEntitySet.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "siblings/zef_pipewire/TDbPipeNode.h"

#include <iterator>

namespace {

LayerFamily GetFamilyOf(BarToggle toggle) {
    switch (toggle) {
    case kArchitectureEntities:
        return LayerFamily::Architecture;
    case kDrainageEntities:
        return LayerFamily::Drainage;
    default:
        return LayerFamily::Other;
    }
}

// What became of entities that were to be shown or hidden.
struct Outcome {
    std::vector<AcDbObjectId> m_changed;
    std::vector<AcDbObjectId> m_stayed;
};

// Viewports stay as they are: what one hides is not itself. Helpers that draw nothing are drawn anew.
Outcome SetVisible(const std::vector<AcDbObjectId>& entities, bool visible) {
    Outcome outcome;
    CStayedEntities stayed;
    TEntitySet redrawn;
    for (const AcDbObjectId id : entities) {
        const AcRxClass* const type = id.objectClass();
        if (type == nullptr || type->isDerivedFrom(AcDbViewport::desc()))
            continue;
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() != Acad::eOk)
            continue;
        if (IsNoDrawingObject(entity.object())) {
            redrawn.Add(id);
            continue;
        }
        if ((entity->visibility() == AcDb::kVisible) == visible)
            continue;
        Acad::ErrorStatus status = entity->upgradeOpen();
        if (status == Acad::eOk)
            status = entity->setVisibility(visible ? AcDb::kVisible : AcDb::kInvisible);
        if (status != Acad::eOk)
            stayed.Add(status);
        else
            redrawn.Add(id);
        (status == Acad::eOk ? outcome.m_changed : outcome.m_stayed).push_back(id);
    }
    stayed.Tell(visible ? L"仍然隐藏" : L"仍然显示");
    redrawn.UpdateGraphic();
    return outcome;
}

// Shows what is remembered, or all where nothing is; or hides all and remembers what was visible, beside what
// could not be shown before.
void SetVisible(CHiddenEntities& memory, const CString& name, const std::vector<AcDbObjectId>& all,
                bool visible) {
    if (visible) {
        const std::vector<AcDbObjectId>& remembered = memory.Get(name);
        memory.Set(SetVisible(remembered.empty() ? all : remembered, true).m_stayed, name);
    } else {
        memory.ForgetVisible();
        std::vector<AcDbObjectId> hidden = SetVisible(all, false).m_changed;
        const std::vector<AcDbObjectId>& before = memory.Get(name);
        hidden.insert(hidden.end(), before.begin(), before.end());
        memory.Set(std::move(hidden), name);
    }
    memory.Save();
}

constexpr wchar_t shownVariable[] = L"USERI1";

// The variable that tells others whether the architecture is shown, unless it says something already.
void TellShown(bool show) {
    resbuf value{};
    if (acedGetVar(shownVariable, &value) == RTNORM && value.restype == RTSHORT && value.resval.rint != 0)
        return;
    resbuf wanted{};
    wanted.restype = RTSHORT;
    wanted.resval.rint = show ? 1 : 0;
    acedSetVar(shownVariable, &wanted);
}

} // namespace

void SetLayers(const std::vector<AcDbObjectId>& layers, LayerState state, bool wanted) {
    const AcDbObjectId current = acdbHostApplicationServices()->workingDatabase()->clayer();
    for (const AcDbObjectId layer : layers) {
        const LayerChange change = SetLayerState(layer, state, wanted);
        if (state == LayerState::Frozen &&
            (change == LayerChange::Refused || change == LayerChange::NotOpened))
            acutPrintf(layer == current ? L"\n********%s当前层\"%s\"失败********！\n"
                                        : L"\n********%s图层\"%s\"失败********！\n",
                       wanted ? L"冻结" : L"解冻", GetLayerName(layer).GetString());
    }
}

bool ShowFamily(const CLayerFamilies& families, BarToggle toggle, bool show) {
    if (ZefExport::RefusesOldDrawing(L"隐藏的图元"))
        return false;
    CHiddenEntities memory(toggle);
    SetVisible(memory, CHiddenEntities::kOfToggle, families.GetEntities(GetFamilyOf(toggle)), show);
    if (toggle == kArchitectureEntities) {
        acutPrintf(show ? L"\n已标建筑标识的图元已经全部打开\n" : L"\n已标建筑标识的图元已经全部关闭\n");
        TellShown(show);
        acedCommandS(RTNONE); // lets the display settle
    }
    return true;
}

bool ShowMarked(const BarSystem& system, bool show) {
    std::vector<AcDbObjectId> marked;
    for (const MarkedEntity& one : MarkTool::GetMarkedEntities())
        if (one.m_mark == system.m_system)
            marked.push_back(one.m_entity);
    if (marked.empty())
        return false;
    CHiddenEntities memory = CHiddenEntities::OfRows();
    SetVisible(memory, system.m_rowName, marked, show);
    return true;
}
