#include "module/layertools/SystemMarker.h"

#include "acutads.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/LayerControlBar.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerFamilies.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/StayedEntities.h"
#include "module/layertools/UserLayers.h"
#include "module/standard/Names.h"

#include <algorithm>
#include <set>

namespace {

// What became of what was picked. What lies on locked layers, or can not be changed, is told for itself.
struct Outcome {
    int m_done = 0;
    int m_refused = 0; // belongs to a system already
    CStayedEntities m_stayed;

    void Tell(const wchar_t* all, const wchar_t* none, const wchar_t* some) const {
        if (m_done != 0)
            acutPrintf(m_refused != 0 ? some : all);
        else if (m_refused != 0)
            acutPrintf(none);
    }
};

AcDbObjectId LayerOf(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    return entity.openStatus() == Acad::eOk ? entity->layerId() : AcDbObjectId();
}

bool IsSystemOn(const CString& system) {
    const CLayerControlBar* const bar = CLayerControlBar::Get();
    return bar == nullptr || bar->IsSystemOn(system);
}

void TellTableFault(const CUserLayers& table) {
    acutPrintf(L"\n图层表userlayer.dbf不能保存：%s", table.GetFault().GetString());
}

bool IsSameLayer(const UserLayerRow& row, const CString& layer) {
    return IsSameName(row.m_name, layer);
}

// Enters layers that were in no family for a system; of those that were entered for another one, the row goes
// over to this.
void EnterLayers(const std::vector<CString>& newLayers, const std::vector<CString>& otherLayers,
                 const CString& system) {
    CUserLayers table = CUserLayers::Load();
    std::vector<UserLayerRow> rows = table.GetRows();
    for (UserLayerRow& row : rows)
        if (!row.m_system.IsEmpty() &&
            std::ranges::any_of(otherLayers, [&](const CString& layer) { return IsSameLayer(row, layer); }))
            row.m_system = system;
    for (const CString& layer : newLayers)
        rows.push_back({kDrainageLayer, layer, system});
    table.SetRows(std::move(rows));
    if (!table.Save())
        TellTableFault(table);
}

void ShowChange() {
    if (CLayerControlBar* const bar = CLayerControlBar::Get())
        bar->Refresh();
    RegenerateDisplay();
}

} // namespace

void CSystemMarker::MarkEntities(const TPickEntSet& picked) const {
    const CLayerFamilies families;
    Outcome outcome;
    for (const AcDbObjectId entity : picked) {
        if (families.IsSystemLayer(LayerOf(entity)))
            ++outcome.m_refused;
        else if (const Acad::ErrorStatus status = MarkTool::SetMark(entity, m_system); status == Acad::eOk)
            ++outcome.m_done;
        else
            outcome.m_stayed.Add(status);
    }
    ShowChange();
    outcome.Tell(L"\n标识图元成功！", L"\n标识图元失败，图元所在图层属于某管线系统！",
                 L"\n标记完成，存在图元属于某管线系统未进行标记！");
    outcome.m_stayed.Tell(L"没有标识");
}

void CSystemMarker::MarkLayers(const TPickEntSet& picked) const {
    const CLayerFamilies families;
    const bool isOn = IsSystemOn(m_system);
    Outcome outcome;
    std::set<AcDbObjectId> layers;
    std::vector<CString> newLayers;
    std::vector<CString> otherLayers;
    for (const AcDbObjectId entity : picked) {
        const AcDbObjectId layer = LayerOf(entity);
        if (!layers.insert(layer).second)
            continue;
        if (families.IsStandardLayer(layer)) {
            ++outcome.m_refused;
            continue;
        }
        if (const Acad::ErrorStatus status = MarkTool::SetMark(layer, m_system); status != Acad::eOk) {
            outcome.m_stayed.Add(status);
            continue;
        }
        ++outcome.m_done;
        SetLayerState(layer, LayerState::Off, !isOn);
        (families.GetFamily(layer) == LayerFamily::Other ? newLayers : otherLayers)
            .push_back(GetLayerName(layer));
    }
    if (outcome.m_done != 0)
        EnterLayers(newLayers, otherLayers, m_system);
    ShowChange();
    outcome.Tell(L"\n标识图层成功！", L"\n标识图层失败，标识图层属于某管线系统！",
                 L"\n标记完成，存在图层属于某管线系统未进行标记！");
    outcome.m_stayed.Tell(L"的图层没有标识");
}

bool CSystemMarker::ConvertEntities(const TPickEntSet& picked) const {
    CString prompt;
    prompt.Format(L"\n请选择%s系统目标图层上的任意图元", m_system.GetString());
    TPickEntSet target;
    const int answer = target.SelectEntity(prompt);
    if (answer == RTCAN)
        return false;
    const AcDbObjectId layer = answer == RTNORM ? LayerOf(target.GetAt(0)) : AcDbObjectId();
    const CLayerFamilies families;
    if (layer.isNull()) {
        acutPrintf(L"\n目标图层获取失败，无法转换！");
        return true;
    }
    if (!families.IsLayerOf(layer, m_system)) {
        acutPrintf(L"\n请选择%s系统所属图层上的图元！", m_system.GetString());
        return true;
    }
    Outcome outcome;
    for (const AcDbObjectId id : picked) {
        if (families.IsSystemLayer(LayerOf(id))) {
            ++outcome.m_refused;
            continue;
        }
        AcDbEntityPointer entity(id, AcDb::kForWrite);
        if (entity.openStatus() != Acad::eOk) {
            outcome.m_stayed.Add(entity.openStatus());
        } else if (entity->setLayer(layer, true) != Acad::eOk) {
            outcome.m_stayed.AddRefused();
        } else {
            ++outcome.m_done;
            MarkTool::ClearMark(*entity.object()); // the layer tells from now on
        }
    }
    ShowChange();
    outcome.Tell(L"\n转换成功！", L"\n转换失败，图元所在图层属于某管线系统！",
                 L"\n转换完成，存在图元属于某管线系统未进行标记！");
    outcome.m_stayed.Tell(L"没有转换");
    return true;
}

void CSystemMarker::ClearEntities() const {
    CStayedEntities stayed;
    for (const MarkedEntity& marked : MarkTool::GetMarkedEntities()) {
        if (marked.m_mark != m_system)
            continue;
        const AcDbEntityPointer entity(marked.m_entity, AcDb::kForWrite);
        if (entity.openStatus() != Acad::eOk) {
            stayed.Add(entity.openStatus());
            continue;
        }
        entity->setVisibility(AcDb::kVisible);
        MarkTool::ClearMark(*entity.object());
    }
    ShowChange();
    acutPrintf(L"\n已成功删除\"%s\"中的图元标识！", m_system.GetString());
    stayed.Tell(L"没有清除标识");
}

void CSystemMarker::ClearLayers() const {
    for (const AcDbObjectId layer : GetAllLayerIds())
        if (MarkTool::GetMark(layer) == m_system)
            MarkTool::ClearMark(layer);
    CUserLayers table = CUserLayers::Load();
    std::vector<UserLayerRow> rows = table.GetRows();
    const bool hadRows =
        std::erase_if(rows, [&](const UserLayerRow& row) { return row.m_system == m_system; }) != 0;
    table.SetRows(std::move(rows));
    if (hadRows && !table.Save())
        TellTableFault(table);
    ShowChange();
    acutPrintf(L"\n已成功删除\"%s\"中的图层标识！", m_system.GetString());
}
