// The command that merges layers: it shows what lies on them before it does so.
#include "acedads.h"
#include "acutads.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerMerge.h"
#include "module/layertools/LayerQuestions.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>

namespace {

// What the user wants to merge; no layers when he ends the command.
struct Sources {
    std::vector<AcDbObjectId> m_layers;
    bool m_withLocked = false;
};

Sources AskSources() {
    Sources sources;
    LayerQuestion question;
    question.m_prompt = [&] {
        return sources.m_withLocked ? L"\n请选择要合并图层上的图元[层名(N)/列表(D)/不合并锁定图层(L)]<退出>:"
                                    : L"\n请选择要合并图层上的图元[层名(N)/列表(D)/锁定图层也合并(L)]<退出>:";
    };
    question.m_namePrompt = L"\n请输入要合并的图层名(可用通配符，多个用逗号分开):";
    question.m_listTitle = L"合并图层";
    question.m_keywords = L"N D L";
    question.m_other = [&] { sources.m_withLocked = !sources.m_withLocked; };
    sources.m_layers = AskLayers(question);
    return sources;
}

// Null when the user ends the command.
AcDbObjectId AskTarget() {
    for (;;) {
        TPickEntSet picked;
        acedInitGet(0, L"N");
        const int answer = picked.SelectEntity(L"\n请选择目标图层上的图元[层名(N)]<退出>:");
        if (answer == RTNORM)
            return ZefExport::GetLayerIdFromString(picked.GetLayerName(0));
        CString name;
        if (answer != RTKWORD || !AskName(L"\n请输入目标图层名:", name) || name.IsEmpty())
            return {};
        if (const AcDbObjectId layer = ZefExport::GetLayerIdFromString(name); !layer.isNull())
            return layer;
        acutPrintf(L"\n没有图层\"%s\"！", name.GetString());
    }
}

// Why a layer can not be merged; null when it can.
const wchar_t* Obstacle(AcDbObjectId id, bool withLocked) {
    const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
    AcString name;
    if (layer.openStatus() != Acad::eOk || layer->getName(name) != Acad::eOk)
        return L"不能打开";
    if (CString(name.kACharPtr()) == L"0")
        return L"是0层";
    if (CString(name.kACharPtr()).Find(L'|') >= 0)
        return L"是外部参照的图层";
    if (id == acdbHostApplicationServices()->workingDatabase()->clayer())
        return L"是当前层";
    if (!withLocked && layer->isLocked())
        return L"已锁定";
    return nullptr;
}

// Takes out what can not be merged, and tells of it.
void KeepMergeable(Sources& sources, AcDbObjectId target) {
    std::erase(sources.m_layers, target);
    std::erase_if(sources.m_layers, [&](AcDbObjectId layer) {
        const wchar_t* const obstacle = Obstacle(layer, sources.m_withLocked);
        if (obstacle != nullptr)
            acutPrintf(L"\n图层\"%s\"%s，不能合并。", GetLayerName(layer).GetString(), obstacle);
        return obstacle != nullptr;
    });
}

// "LINE 220，TEXT 6", the most frequent first; of long lists the end is counted.
CString ListOf(const std::map<CString, int>& counts) {
    constexpr std::size_t most = 8;
    std::vector<std::pair<CString, int>> sorted(counts.begin(), counts.end());
    std::ranges::stable_sort(sorted, [](const auto& a, const auto& b) { return a.second > b.second; });
    CString list;
    for (std::size_t i = 0; i < std::min(most, sorted.size()); ++i) {
        CString part;
        part.Format(L"%s%s %d", i == 0 ? L"" : L"，", sorted[i].first.GetString(), sorted[i].second);
        list += part;
    }
    if (sorted.size() > most) {
        CString rest;
        rest.Format(L"，等 %d 种", static_cast<int>(sorted.size()));
        list += rest;
    }
    return list;
}

void Preview(const CLayerMerge& merge, const CString& target) {
    for (const AcDbObjectId source : merge.GetSources()) {
        const LayerContent& content = merge.GetContent(source);
        acutPrintf(L"\n图层\"%s\"：%d 个图元", GetLayerName(source).GetString(), content.m_count);
        if (content.m_count != 0)
            acutPrintf(L"（%s）", ListOf(content.m_kinds).GetString());
        if (!content.m_blocks.empty())
            acutPrintf(L"，其中块内：%s", ListOf(content.m_blocks).GetString());
    }
    acutPrintf(L"\n以上 %d 个图层将合并到图层\"%s\"并被删除。", static_cast<int>(merge.GetSources().size()),
               target.GetString());
}

} // namespace

void CLayerToolBar::hbtc() {
    const CDocumentLock lock;
    Sources sources = AskSources();
    if (sources.m_layers.empty())
        return;
    const AcDbObjectId target = AskTarget();
    if (target.isNull())
        return;
    const CString name = GetLayerName(target);
    if (name.Find(L'|') >= 0) {
        acutPrintf(L"\n目标图层不能是外部参照的图层！");
        return;
    }
    KeepMergeable(sources, target);
    if (sources.m_layers.empty()) {
        acutPrintf(L"\n没有可以合并的图层！");
        return;
    }
    CLayerMerge merge(sources.m_layers, target);
    Preview(merge, name);
    if (!AskYes(L"\n是否继续[是(Y)/否(N)]<N>:"))
        return;
    merge.Run();
    acutPrintf(L"\n%d 个图元合并到图层\"%s\"，删除图层 %d 个。", merge.GetMoved(), name.GetString(),
               merge.GetErased());
    merge.GetStayed().Tell(L"没有合并");
    for (const AcDbObjectId left : merge.GetLeft())
        acutPrintf(L"\n图层\"%s\"没有删除：仍被块的首尾记录、扩展数据或其它对象引用。",
                   GetLayerName(left).GetString());
    RegenerateDisplay();
}
