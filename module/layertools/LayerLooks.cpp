#include "module/layertools/LayerLooks.h"

#include "acdbads.h"
#include "acdblayerstatemanager.h"
#include "dbapserv.h"
#include "dbdict.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"
#include "module/layertools/DrawingRecords.h"
#include "module/layertools/LayerStates.h"
#include "module/standard/LineWeightText.h"

#include <set>

namespace {

using Manager = AcDbLayerStateManager;

// The groups of a state behind each layer.
enum Group {
    LayerGroup = 330,
    LinetypeGroup = 331,
    ColorGroup = 62,
    FlagsGroup = 90,
    MaskGroup = 91, // in front of all layers
    TrueColorGroup = 92,
    WeightGroup = 370,
    ViewportGroup = 290, // in front of all layers
    TransparencyGroup = 440,
};

int GetTransparency(const AcDbLayerTableRecord& layer) {
    constexpr int wholeNumber = 1071;
    const Chain data(layer.xData(L"AcCmTransparency"));
    for (const resbuf* node = data.get(); node != nullptr; node = node->rbnext)
        if (node->restype == wholeNumber)
            return node->resval.rlong;
    return 0;
}

LayerLook LookOf(const AcDbLayerTableRecord& layer) {
    LayerLook look;
    AcString name;
    layer.getName(name);
    look.m_layer = layer.objectId();
    look.m_name = name.kACharPtr();
    look.m_flags = (layer.isOff() ? LayerLook::Off : 0) | (layer.isFrozen() ? LayerLook::Frozen : 0) |
                   (layer.isLocked() ? LayerLook::Locked : 0) |
                   (layer.isPlottable() ? LayerLook::Plotted : 0) |
                   (layer.VPDFLT() ? LayerLook::FrozenInNew : 0);
    look.m_color = layer.color();
    look.m_lineWeight = layer.lineWeight();
    look.m_linetype = layer.linetypeObjectId();
    look.m_transparency = GetTransparency(layer);
    return look;
}

AcDbObjectId IdOf(const resbuf& node) {
    AcDbObjectId id;
    acdbGetObjectId(id, node.resval.rlname);
    return id;
}

LayerLook BeginLook(AcDbObjectId id) {
    LayerLook look;
    const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead, true);
    look.m_isGone = layer.openStatus() != Acad::eOk || layer->isErased();
    AcString name;
    if (layer.openStatus() == Acad::eOk && layer->getName(name) == Acad::eOk) {
        look.m_layer = id;
        look.m_name = name.kACharPtr();
    }
    return look;
}

void TakeGroup(LayerLook& look, const resbuf& node) {
    const auto bits = static_cast<unsigned>(node.resval.rlong);
    switch (node.restype) {
    case FlagsGroup:
        look.m_flags = node.resval.rlong;
        break;
    case ColorGroup:
        look.m_color.setColorIndex(static_cast<Adesk::UInt16>(node.resval.rint));
        break;
    case TrueColorGroup:
        look.m_color.setRGB(static_cast<Adesk::UInt8>(bits >> 16), static_cast<Adesk::UInt8>(bits >> 8),
                            static_cast<Adesk::UInt8>(bits));
        break;
    case WeightGroup:
        look.m_lineWeight = node.resval.rint;
        break;
    case LinetypeGroup:
        look.m_linetype = IdOf(node);
        break;
    case TransparencyGroup:
        look.m_transparency = node.resval.rlong;
        break;
    default:
        break;
    }
}

CString LinetypeName(AcDbObjectId id) {
    const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(id, AcDb::kForRead);
    AcString name;
    if (linetype.openStatus() == Acad::eOk)
        linetype->getName(name);
    return name.kACharPtr();
}

CString TransparencyText(int transparency) {
    constexpr int opaque = 255; // in the lowest byte; nought is not set
    CString text;
    text.Format(L"%d%%", transparency == 0 ? 0 : (opaque - (transparency & opaque)) * 100 / opaque);
    return text;
}

class CDifference {
public:
    void Add(const CString& name, const CString& before, const CString& after) {
        if (!m_text.IsEmpty())
            m_text += L"，";
        m_text += name + before + L"→" + after;
    }
    const CString& GetText() const { return m_text; }

private:
    CString m_text;
};

constexpr struct {
    int flag;
    int mask;
    const wchar_t* clear; // what it means when the flag is not set, and when it is
    const wchar_t* set;
} flagRows[] = {
    {LayerLook::Off, Manager::kOn, L"开", L"关"},
    {LayerLook::Frozen, Manager::kFrozen, L"解冻", L"冻结"},
    {LayerLook::Locked, Manager::kLocked, L"解锁", L"锁定"},
    {LayerLook::Plotted, Manager::kPlot, L"不打印", L"打印"},
    {LayerLook::FrozenInNew, Manager::kNewViewport, L"新视口解冻", L"新视口冻结"},
    {LayerLook::FrozenHere, Manager::kCurrentViewport, L"视口解冻", L"视口冻结"},
};

} // namespace

std::map<AcDbObjectId, const LayerLook*> GetByLayer(const LayerLooks& looks) {
    std::map<AcDbObjectId, const LayerLook*> found;
    for (const LayerLook& look : looks.m_looks)
        if (!look.m_isGone)
            found.emplace(look.m_layer, &look);
    return found;
}

LayerLooks GetDrawingLooks(AcDbObjectId viewportId) {
    LayerLooks looks;
    looks.m_mask = Manager::kAll;
    const AcDbObjectPointer<AcDbViewport> viewport(viewportId, AcDb::kForRead);
    looks.m_hasViewport = viewport.openStatus() == Acad::eOk;
    AcDbObjectIdArray frozen;
    if (looks.m_hasViewport)
        viewport->getFrozenLayerList(frozen);
    const std::set<AcDbObjectId> frozenHere(frozen.begin(), frozen.end());
    for (const AcDbObjectId id : GetAllLayerIds()) {
        const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
        if (layer.openStatus() != Acad::eOk)
            continue;
        looks.m_looks.push_back(LookOf(*layer.object()));
        if (frozenHere.contains(id))
            looks.m_looks.back().m_flags |= LayerLook::FrozenHere;
    }
    return looks;
}

bool GetStateLooks(const CString& name, LayerLooks& looks) {
    Manager states(acdbHostApplicationServices()->workingDatabase());
    const AcDbDictionaryPointer dictionary(states.layerStatesDictionaryId(), AcDb::kForRead);
    AcDbObjectId id;
    if (dictionary.openStatus() != Acad::eOk || dictionary->getAt(name, id) != Acad::eOk)
        return false;
    const AcDbXrecordPointer record(id, AcDb::kForRead);
    resbuf* data = nullptr;
    if (record.openStatus() != Acad::eOk || record->rbChain(&data) != Acad::eOk)
        return false;
    const Chain chain(data);
    looks = {};
    for (const resbuf* node = data; node != nullptr; node = node->rbnext)
        if (node->restype == LayerGroup)
            looks.m_looks.push_back(BeginLook(IdOf(*node)));
        else if (!looks.m_looks.empty())
            TakeGroup(looks.m_looks.back(), *node);
        else if (node->restype == MaskGroup)
            looks.m_mask = node->resval.rlong;
        else if (node->restype == ViewportGroup)
            looks.m_hasViewport = node->resval.rint != 0;
    if (!looks.m_hasViewport)
        looks.m_mask &= ~Manager::kCurrentViewport;
    return true;
}

CString GetDifference(const LayerLook& before, const LayerLook& after, int mask) {
    CDifference difference;
    for (const auto& row : flagRows)
        if ((mask & row.mask) != 0 && ((before.m_flags ^ after.m_flags) & row.flag) != 0) {
            const bool wasSet = (before.m_flags & row.flag) != 0;
            difference.Add(L"", wasSet ? row.set : row.clear, wasSet ? row.clear : row.set);
        }
    if ((mask & Manager::kColor) != 0 && !(before.m_color == after.m_color))
        difference.Add(L"颜色 ", GetColorText(before.m_color), GetColorText(after.m_color));
    if ((mask & Manager::kLineType) != 0 && before.m_linetype != after.m_linetype)
        difference.Add(L"线型 ", LinetypeName(before.m_linetype), LinetypeName(after.m_linetype));
    if ((mask & Manager::kLineWeight) != 0 && before.m_lineWeight != after.m_lineWeight)
        difference.Add(L"线宽 ", GetLineWeightText(before.m_lineWeight),
                       GetLineWeightText(after.m_lineWeight));
    if ((mask & Manager::kTransparency) != 0 && before.m_transparency != after.m_transparency)
        difference.Add(L"透明度 ", TransparencyText(before.m_transparency),
                       TransparencyText(after.m_transparency));
    return difference.GetText();
}
