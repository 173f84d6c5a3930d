#include "module/check/LayerMoves.h"

#include "adscodes.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/LayerMerge.h"
#include "module/layertools/LayerStates.h"
#include "module/standard/Names.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <map>
#include <set>

namespace {

CString ObstacleOf(const CString& from, const CString& to) {
    if (from == L"0")
        return L"0层不能改名";
    if (from.Find(L'|') >= 0)
        return L"是外部参照的图层";
    if (to.Find(L'|') >= 0 || acdbSNValid(to, 0) != RTNORM)
        return L"新名称不能用作图层名";
    return {};
}

bool SetName(AcDbObjectId id, const CString& name) {
    const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
    return layer.openStatus() == Acad::eOk && layer->setName(name) == Acad::eOk;
}

// A name that no layer has.
CString FreeName(int& number) {
    CString name;
    do
        name.Format(L"$%d", ++number);
    while (!ZefExport::GetLayerIdFromString(name).isNull());
    return name;
}

} // namespace

CLayerMoves::CLayerMoves(const std::vector<LayerMove>& moves) {
    std::set<CString, NoCaseOrder> taken; // names that stay with their layers, and those that are given
    for (const AcDbObjectId layer : GetAllLayerIds())
        taken.insert(GetLayerName(layer));
    for (const LayerMove& move : moves) {
        Step step{move.m_layer, GetLayerName(move.m_layer), move.m_name, false, {}};
        if (step.m_from == step.m_to)
            continue;
        step.m_obstacle = ObstacleOf(step.m_from, step.m_to);
        if (step.m_obstacle.IsEmpty())
            taken.erase(step.m_from);
        m_steps.push_back(std::move(step));
    }
    for (Step& step : m_steps)
        if (step.m_obstacle.IsEmpty())
            step.m_isMerged = !taken.insert(step.m_to).second;
}

void CLayerMoves::Run() {
    Rename();
    Merge();
}

// A name that another layer still has is free when all have left theirs.
void CLayerMoves::Rename() {
    bool isCrossed = false;
    for (const Step& step : m_steps) {
        const AcDbObjectId there = ZefExport::GetLayerIdFromString(step.m_to);
        isCrossed = isCrossed || (step.m_obstacle.IsEmpty() && !step.m_isMerged && !there.isNull() &&
                                  there != step.m_layer);
    }
    int number = 0;
    if (isCrossed)
        for (const Step& step : m_steps)
            if (step.m_obstacle.IsEmpty())
                SetName(step.m_layer, FreeName(number));
    for (Step& step : m_steps)
        if (step.m_obstacle.IsEmpty() && !step.m_isMerged) {
            if (SetName(step.m_layer, step.m_to))
                ++m_renamed;
            else
                step.m_obstacle = L"不能改名";
        }
}

void CLayerMoves::Merge() {
    AcDbDatabase& database = *acdbHostApplicationServices()->workingDatabase();
    std::map<AcDbObjectId, std::vector<AcDbObjectId>> sources; // by target
    for (const Step& step : m_steps)
        if (step.m_obstacle.IsEmpty() && step.m_isMerged)
            sources[ZefExport::GetLayerIdFromString(step.m_to)].push_back(step.m_layer);
    for (auto& [target, layers] : sources) {
        if (target.isNull())
            continue;
        for (const AcDbObjectId layer : layers)
            if (layer == database.clayer())
                database.setClayer(target); // a frozen one can not be current: then the layer stays, empty
        CLayerMerge merge(layers, target);
        merge.Run();
        m_merged += merge.GetErased();
        m_stayed.Add(merge.GetStayed());
    }
}
