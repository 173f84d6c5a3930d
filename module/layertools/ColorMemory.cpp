#include "module/layertools/ColorMemory.h"

#include "acdbads.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/DrawingRecords.h"
#include "module/layertools/LayerStates.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

constexpr wchar_t pairsKey[] = L"TuCengDanSe-YanSeHuiFu";
constexpr wchar_t exactKey[] = L"TuCengDanSe-ZhenCaiSe";

constexpr int nameCode = 1;
constexpr int numberCode = 90;
constexpr int indexCode = 62;
constexpr int rgbCode = 420;
constexpr int bookCode = 430;

} // namespace

// The groups are asked for, because an AcCmColor does not tell the index that stands beside a true colour.
std::optional<CColorMemory::ExactColor> CColorMemory::GetExactColor(AcDbObjectId layer) {
    ads_name name;
    if (acdbGetAdsName(name, layer) != Acad::eOk)
        return std::nullopt;
    const Chain chain(acdbEntGet(name));
    ExactColor color;
    bool hasRgb = false;
    for (const resbuf* node = chain.get(); node != nullptr; node = node->rbnext) {
        if (node->restype == indexCode)
            color.index = std::abs(node->resval.rint);
        else if (node->restype == rgbCode) {
            color.rgb = node->resval.rlong;
            hasRgb = true;
        } else if (node->restype == bookCode)
            color.names = node->resval.rstring;
    }
    return hasRgb ? std::optional(color) : std::nullopt;
}

void CColorMemory::Remember(AcDbObjectId layer) {
    const AcDbObjectPointer<AcDbLayerTableRecord> record(layer, AcDb::kForRead);
    if (record.openStatus() != Acad::eOk)
        return;
    Color color{record->color().colorIndex(), std::nullopt, GetExactColor(layer)};
    if (color.exact && (color.exact->index < 1 || color.exact->index > AcCmColor::kACImaximum))
        color.exact->index = color.index; // no layer can have the one that stands there
    m_colors.try_emplace(GetLayerName(layer), color);
}

bool CColorMemory::HasSameLayers(const CColorMemory& other) const {
    return std::equal(
        m_colors.begin(), m_colors.end(), other.m_colors.begin(), other.m_colors.end(),
        [](const auto& one, const auto& another) { return one.first.CompareNoCase(another.first) == 0; });
}

void CColorMemory::ReadPairs(const resbuf* chain) {
    CString name;
    for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
        if (node->restype == nameCode)
            name = node->resval.rstring;
        else if (node->restype == numberCode && !name.IsEmpty())
            m_colors[name].index = node->resval.rlong;
    }
}

void CColorMemory::ReadExactColors(const resbuf* chain) {
    while (chain != nullptr) {
        const CString name = chain->restype == nameCode ? chain->resval.rstring : L"";
        ExactColor color;
        int pairIndex = 0;
        int painted = 0;
        int numbers = 0;
        bool hasRgb = false;
        for (chain = chain->rbnext; chain != nullptr && chain->restype != nameCode; chain = chain->rbnext) {
            switch (chain->restype) {
            case numberCode:
                (numbers++ == 0 ? pairIndex : painted) = chain->resval.rlong;
                break;
            case indexCode:
                color.index = chain->resval.rint;
                break;
            case rgbCode:
                color.rgb = chain->resval.rlong;
                hasRgb = true;
                break;
            case bookCode:
                color.names = chain->resval.rstring;
                break;
            default:
                break;
            }
        }
        // An older program may have remembered other colours since.
        const auto pair = m_colors.find(name);
        if (pair == m_colors.end() || pair->second.index != pairIndex)
            continue;
        pair->second.painted = painted;
        if (hasRgb)
            pair->second.exact = color;
    }
}

CColorMemory CColorMemory::Load() {
    CColorMemory memory;
    memory.ReadPairs(DrawingRecords::Read(pairsKey).get());
    memory.ReadExactColors(DrawingRecords::Read(exactKey).get());
    return memory;
}

bool CColorMemory::IsAsPainted(const AcCmColor& now, const Color& color) {
    if (!color.painted)
        return now.colorIndex() != color.index;
    return now.isByACI() && now.colorIndex() == *color.painted;
}

bool CColorMemory::Save(int painted, const CColorMemory& before) const {
    std::map<CString, Color, LessNoCase> kept = m_colors;
    for (auto& [name, color] : kept)
        color.painted = painted;
    for (const auto& [name, color] : before.m_colors) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(ZefExport::GetLayerIdFromString(name),
                                                            AcDb::kForRead);
        if (layer.openStatus() != Acad::eOk || !IsAsPainted(layer->color(), color))
            continue;
        const auto [at, isNew] = kept.insert_or_assign(name, color);
        if (m_colors.contains(name))
            at->second.painted = painted;
    }
    CChainMaker pairs;
    CChainMaker exact;
    for (const auto& [name, color] : kept) {
        pairs.Add(nameCode, name);
        pairs.Add(numberCode, color.index);
        if (!color.painted)
            continue;
        exact.Add(nameCode, name);
        exact.Add(numberCode, color.index);
        exact.Add(numberCode, *color.painted);
        if (!color.exact)
            continue;
        exact.Add(indexCode, color.exact->index);
        exact.Add(rgbCode, color.exact->rgb);
        if (!color.exact->names.IsEmpty())
            exact.Add(bookCode, color.exact->names);
    }
    DrawingRecords::Remove(exactKey);
    return (exact.Get() == nullptr || DrawingRecords::Write(exactKey, *exact.Get())) &&
           DrawingRecords::Write(pairsKey, *pairs.Get());
}

void CColorMemory::Remove() {
    DrawingRecords::Remove(exactKey);
    DrawingRecords::Remove(pairsKey);
}

void CColorMemory::Paint(int index) const {
    AcCmColor color;
    color.setColorIndex(static_cast<Adesk::UInt16>(index));
    for (const auto& [name, before] : m_colors) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(ZefExport::GetLayerIdFromString(name),
                                                            AcDb::kForWrite);
        if (layer.openStatus() == Acad::eOk)
            layer->setColor(color);
    }
}

void CColorMemory::RestoreExactColor(AcDbObjectId layer, const ExactColor& color, int sign) {
    ads_name name;
    if (acdbGetAdsName(name, layer) != Acad::eOk)
        return;
    const Chain chain(acutBuildList(-1, name, indexCode, sign * color.index, rgbCode, color.rgb, 0));
    if (!color.names.IsEmpty())
        chain->rbnext->rbnext->rbnext = acutBuildList(bookCode, color.names.GetString(), 0);
    acdbEntMod(chain.get());
}

void CColorMemory::Restore() const {
    for (const auto& [name, color] : m_colors) {
        const AcDbObjectId id = ZefExport::GetLayerIdFromString(name);
        AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
        if (layer.openStatus() != Acad::eOk)
            continue;
        const AcCmColor now = layer->color();
        const bool asPainted = color.exact && IsAsPainted(now, color);
        const int sign = layer->isOff() ? -1 : 1;
        AcCmColor before;
        if (before.setColorIndex(static_cast<Adesk::UInt16>(color.index)) == Acad::eOk)
            layer->setColor(before);
        layer.close();
        if (asPainted)
            RestoreExactColor(id, *color.exact, sign);
    }
}
