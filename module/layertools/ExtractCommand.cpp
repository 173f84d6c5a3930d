// The command that copies what is on layers of references and blocks into the drawing.
#include "acdbads.h"
#include "acedads.h"
#include "acutads.h"
#include "acutmem.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/DrawingRecords.h"
#include "module/layertools/LayerDialogs.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerExtract.h"
#include "module/layertools/LayerQuestions.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_kernal/TPickEntSet.h"

#include <algorithm>
#include <optional>
#include <set>

namespace {

using Layers = std::set<AcDbObjectId>;

// References to drawings and blocks; empty when the user ends it.
std::vector<AcDbObjectId> AskReferences() {
    for (;;) {
        TPickEntSet picked;
        if (picked.SelectEntities(L"\n请选择外部参照或块<退出>:") != RTNORM)
            return {};
        std::vector<AcDbObjectId> references;
        for (const AcDbObjectId id : picked)
            if (id.objectClass()->isDerivedFrom(AcDbBlockReference::desc()))
                references.push_back(id);
        if (!references.empty())
            return references;
        acutPrintf(L"\n选中的图元里没有外部参照或块！");
    }
}

CString LayerOf(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForRead);
    AcString name;
    if (entity.openStatus() == Acad::eOk)
        entity->layer(name);
    return name.kACharPtr();
}

// The drawing that a block reference shows, by the name of its block; empty for one that shows a block.
CString ReferenceOf(AcDbObjectId id) {
    const AcDbObjectPointer<AcDbBlockReference> reference(id, AcDb::kForRead);
    AcString name;
    if (reference.openStatus() == Acad::eOk) {
        const AcDbBlockTableRecordPointer block(reference->blockTableRecord(), AcDb::kForRead);
        if (block.openStatus() == Acad::eOk && block->isFromExternalReference())
            block->getName(name);
    }
    return name.kACharPtr();
}

// The layer by which a nested entity is seen: its own, or where that is 0 that of the reference around it.
// The references around it come the innermost first.
AcDbObjectId LayerOfNested(AcDbObjectId picked, const Chain& containers) {
    CString layer = LayerOf(picked);
    for (const resbuf* node = containers.get(); node != nullptr; node = node->rbnext) {
        AcDbObjectId around;
        acdbGetObjectId(around, node->resval.rlname);
        if (layer == L"0")
            layer = LayerOf(around);
        else if (const CString reference = ReferenceOf(around); !reference.IsEmpty())
            return CLayerExtract::GetSeenLayer(reference, layer);
    }
    return CLayerExtract::GetSeenLayer(L"", layer);
}

// A name without the reference in front of it.
CString BareName(const CString& name) {
    return name.Mid(name.Find(L'|') + 1);
}

Layers LayersNamed(const CString& typed, const CLayerExtract& extract) {
    Layers layers;
    for (const auto& [layer, count] : extract.GetFound()) {
        const CString name = GetLayerName(layer);
        if (FitsName(name, typed) || FitsName(BareName(name), typed))
            layers.insert(layer);
    }
    return layers;
}

Layers LayersFromList(const CLayerExtract& extract) {
    std::vector<AcDbObjectId> found;
    for (const auto& [layer, count] : extract.GetFound())
        found.push_back(layer);
    CLayerFilterDlg dialog(found, L"提取图层");
    if (!dialog.DoModal())
        return {};
    const std::vector<AcDbObjectId>& chosen = dialog.GetChosenLayers();
    return {chosen.begin(), chosen.end()};
}

// Picks one after the other, ended by Enter; names and the list end it themselves. Empty when the user ends
// it.
Layers AskLayersInside(const CLayerExtract& extract) {
    Layers layers;
    for (;;) {
        ads_name name;
        ads_point point;
        ads_matrix toWorld;
        resbuf* containers = nullptr;
        acedInitGet(0, L"N D");
        const int answer =
            acedNEntSelP(layers.empty() ? L"\n请选择参照或块内要提取图层上的图元[层名(N)/列表(D)]<退出>:"
                                        : L"\n请继续选择要提取图层上的图元[层名(N)/列表(D)]<完成>:",
                         name, point, 0, toWorld, &containers);
        const Chain chain(containers);
        if (answer == RTNORM) {
            AcDbObjectId picked;
            acdbGetObjectId(picked, name);
            const AcDbObjectId layer = LayerOfNested(picked, chain);
            if (extract.GetFound().contains(layer)) {
                layers.insert(layer);
                acutPrintf(L"\n图层\"%s\"", GetLayerName(layer).GetString());
            } else {
                acutPrintf(L"\n它不在选中的参照或块里！");
            }
            continue;
        }
        if (answer != RTKWORD) {
            resbuf number{};
            constexpr int nothingHit = 7;
            if (answer == RTERROR && acedGetVar(L"ERRNO", &number) == RTNORM &&
                number.resval.rint == nothingHit)
                continue;
            return answer == RTCAN ? Layers() : layers;
        }
        ACHAR keyword[8] = {};
        acedGetInput(keyword);
        if (keyword[0] == L'D') {
            layers.merge(LayersFromList(extract));
        } else {
            CString typed;
            if (!AskName(L"\n请输入要提取的图层名(可用通配符，多个用逗号分开):", typed))
                return {};
            Layers named = LayersNamed(typed, extract);
            if (named.empty())
                acutPrintf(L"\n参照或块里没有名称符合\"%s\"的图层！", typed.GetString());
            layers.merge(named);
        }
        if (!layers.empty())
            return layers;
    }
}

// Whether the layers get the name of their reference; nothing when the user ends it. Asked where there is a
// reference.
std::optional<bool> AskNaming(const Layers& layers) {
    const bool hasReference = std::any_of(
        layers.begin(), layers.end(), [](AcDbObjectId layer) { return GetLayerName(layer).Find(L'|') >= 0; });
    if (!hasReference)
        return false;
    bool isEnded = false;
    const CString answer = AskKeyword(L"\n提取后的图层名[图层名(N)/参照名$0$图层名(R)]<N>:", L"N R", isEnded);
    return isEnded ? std::nullopt : std::optional(answer == L"R");
}

} // namespace

void CLayerToolBar::tctq() {
    const CDocumentLock lock;
    const std::vector<AcDbObjectId> references = AskReferences();
    if (references.empty())
        return;
    CLayerExtract extract(references);
    if (extract.GetFound().empty()) {
        acutPrintf(L"\n参照或块里没有图元，或参照没有加载！");
        return;
    }
    const Layers layers = AskLayersInside(extract);
    if (layers.empty())
        return;
    const std::optional<bool> namesReference = AskNaming(layers);
    if (!namesReference)
        return;
    extract.Run(layers, *namesReference);
    acutPrintf(L"\n从 %d 个参照或块提取 %d 个图元到 %d 个图层。", static_cast<int>(references.size()),
               extract.GetCopied(), extract.GetLayerCount());
    if (extract.GetLeft() > 0)
        acutPrintf(L"\n%d 个图元没有提取：它们依赖原图形的其它对象，或不能变形。", extract.GetLeft());
    if (extract.GetUncut() > 0)
        acutPrintf(L"\n%d 个图元跨过参照的裁剪边界，整个提取。", extract.GetUncut());
    RegenerateDisplay();
}
