// Layers that are called nearly as the standard has them, that look otherwise, or on which there is nothing.
#include "acutmem.h"
#include "base/case_fold.h"
#include "base/wildcard.h"
#include "dbapserv.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/check/DrawingCheck.h"
#include "module/layertools/DrawingWalk.h"
#include "module/standard/LineWeightText.h"
#include "module/standard/LinetypeLibrary.h"
#include "module/standard/Names.h"
#include "module/standard/StandardManager.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

namespace {

typedef AcDbObjectPointer<AcDbLayerTableRecord> LayerPointer;

bool IsSeparator(wchar_t c) {
    return c == L'-' || c == L'_' || c == L' ' || c == L'‐' || c == L'‑' || c == L'–' || c == L'—' ||
           c == L'―' || c == L'−';
}

wchar_t HalfWidth(wchar_t c) {
    constexpr wchar_t fullWidthFirst = 0xFF01;
    constexpr wchar_t fullWidthLast = 0xFF5E;
    if (c >= fullWidthFirst && c <= fullWidthLast)
        return static_cast<wchar_t>(c - fullWidthFirst + L'!');
    return c == 0x3000 ? L' ' : c; // the blank of East Asia
}

// What a reference that was bound puts in front ("plan$0$") is taken away.
CString WithoutReference(const CString& name) {
    const int dollar = name.ReverseFind(L'$');
    int first = dollar;
    while (first > 0 && name[first - 1] >= L'0' && name[first - 1] <= L'9')
        --first;
    return first > 0 && first < dollar && name[first - 1] == L'$' ? name.Mid(dollar + 1) : name;
}

// Without case and width; each separator a "-".
std::wstring WithHyphens(const CString& name) {
    std::wstring text = base::folded(ViewOf(name));
    for (wchar_t& c : text) {
        c = base::fold_case(HalfWidth(c));
        if (IsSeparator(c))
            c = L'-';
    }
    return text;
}

// The same without separators: names with one key nearly are the same.
std::wstring KeyOf(const CString& name) {
    std::wstring key = WithHyphens(name);
    std::erase(key, L'-');
    return key;
}

class CLayerRules : public CRuleFamily {
public:
    explicit CLayerRules(const CheckContext& context) : CRuleFamily(context) {
        if (const CStandardManager* const manager = CStandardManager::Loaded()) {
            ForEachLayerSet(manager->Standard(), [&](const LayerSet& layers) { AddNames(layers); });
        }
        ReadLinetypes();
    }

    void Look(const AcDbEntity& entity, const CheckedLayer& /*layer*/, bool /*isInSpace*/) override {
        if (const auto* const viewport = AcDbViewport::cast(&entity))
            viewport->getFrozenLayerList(m_frozen);
    }

    void Finish() override {
        const auto database = acdbHostApplicationServices()->workingDatabase();
        const bool isOld =
            database->namedObjectsDictionaryId().isNull(); // R12 has neither weights nor plotting
        for (const CheckedLayer& layer : m_context.m_layers.All()) {
            if (!layer.m_isOwn)
                continue;
            LookAtName(layer);
            if (layer.m_standard != nullptr)
                LookAtLooks(layer, isOld);
        }
        if (m_context.IsOn(CheckRule::LayerEmpty))
            FindEmpty(*database);
    }

private:
    void AddNames(const LayerSet& layers) {
        for (const auto& layer : layers.Layers())
            if (!layer->m_layerName.IsEmpty()) {
                auto& names = m_names[KeyOf(layer->m_layerName)];
                if (std::ranges::none_of(
                        names, [&](const CString& one) { return IsSameName(one, layer->m_layerName); }))
                    names.push_back(layer->m_layerName);
            }
    }

    void ReadLinetypes() {
        std::vector<CString> names;
        GetLinetypeNames(names);
        m_linetypes.insert(names.begin(), names.end());
        for (const AcDbObjectId id :
             RecordsOf(acdbHostApplicationServices()->workingDatabase()->linetypeTableId()))
            m_linetypes.insert(LinetypeName(id));
    }

    // What a layer of that name means; empty when nobody knows, or when it may be several.
    CString AliasOf(const CString& name) const {
        if (m_context.m_rules.m_aliases.empty())
            return {};
        const std::wstring spelt = WithHyphens(name);
        for (const LayerAlias& alias : m_context.m_rules.m_aliases) {
            CString patterns = alias.m_patterns;
            patterns.Replace(L'_', L'-');
            if (base::wildcard_match(spelt, ViewOf(patterns), true))
                if (const CStandardManager* const manager = CStandardManager::Loaded())
                    if (const LayerNode* const layer =
                            manager->Index().FindDefinition(alias.m_system, alias.m_layerType))
                        return layer->m_layerName;
        }
        return {};
    }

    void LookAtName(const CheckedLayer& layer) {
        const CString bare = WithoutReference(layer.m_name);
        CString name;
        CheckRule rule = CheckRule::LayerNear;
        if (layer.m_standard != nullptr) {
            name = layer.m_standard->m_layerName; // it may differ in case
        } else if (const auto near = m_names.find(KeyOf(bare)); near != m_names.end()) {
            if (near->second.size() == 1)
                name = near->second.front();
            rule = bare == layer.m_name ? CheckRule::LayerNear : CheckRule::LayerAlias;
        } else {
            name = AliasOf(bare);
            rule = CheckRule::LayerAlias;
        }
        if (name.IsEmpty() || name == layer.m_name || !m_context.IsOn(rule))
            return;
        CString text;
        text.Format(L"图层\"%s\"应为\"%s\"", layer.m_name, name);
        m_context.m_findings.Add(m_context.m_findings.GetRenaming(rule, text, name), layer.m_id);
    }

    static CString LinetypeName(AcDbObjectId id) {
        const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(id, AcDb::kForRead);
        AcString name;
        if (linetype.openStatus() == Acad::eOk)
            linetype->getName(name);
        return name.kACharPtr();
    }

    template<class Change>
    void Differs(CheckRule rule, const CheckedLayer& layer, const CString& is, const CString& wanted,
                 Change change, bool canMend = true) {
        CString text;
        text.Format(L"图层\"%s\"的%s是 %s，标准为 %s", layer.m_name, GetRuleInfo(rule).m_title + 2, is,
                    wanted);
        Mend mend;
        if (canMend)
            mend = [change](const Finding& finding) {
                const LayerPointer record(finding.m_object, AcDb::kForWrite);
                return record.openStatus() == Acad::eOk ? change(*record.object()) : record.openStatus();
            };
        m_context.m_findings.Add(m_context.m_findings.GetKind(rule, text, mend), layer.m_id);
    }

    void LookAtLooks(const CheckedLayer& layer, bool isOld) {
        const LayerPointer record(layer.m_id, AcDb::kForRead);
        if (record.openStatus() != Acad::eOk)
            return;
        const LayerNode& wanted = *layer.m_standard;
        const AcCmColor color = record->color();
        // A standard that says ByLayer or ByBlock of a layer leaves its colour open.
        if (m_context.IsOn(CheckRule::LayerColor) &&
            (wanted.m_color.isByACI() || wanted.m_color.isByColor()) &&
            !(static_cast<const AcCmEntityColor&>(color) == wanted.m_color))
            Differs(CheckRule::LayerColor, layer, GetColorText(color), GetColorText(wanted.m_color),
                    [value = wanted.m_color](AcDbLayerTableRecord& to) {
                        to.setColor(value);
                        return Acad::eOk;
                    });
        const CString linetype = LinetypeName(record->linetypeObjectId());
        const CString wantedLinetype =
            wanted.m_linetype.IsEmpty() ? CString(L"Continuous") : wanted.m_linetype;
        if (m_context.IsOn(CheckRule::LayerLinetype) && !IsSameName(linetype, wantedLinetype))
            Differs(
                CheckRule::LayerLinetype, layer, linetype, wantedLinetype,
                [wantedLinetype](AcDbLayerTableRecord& to) {
                    return to.setLinetypeObjectId(KolTool::LoadVrLineType(wantedLinetype));
                },
                m_linetypes.contains(wantedLinetype));
        if (isOld)
            return;
        if (m_context.IsOn(CheckRule::LayerLineWeight) && record->lineWeight() != wanted.m_lineWeight)
            Differs(
                CheckRule::LayerLineWeight, layer, GetLineWeightText(record->lineWeight()),
                GetLineWeightText(wanted.m_lineWeight),
                [value = wanted.m_lineWeight](AcDbLayerTableRecord& to) {
                    return to.setLineWeight(static_cast<AcDb::LineWeight>(value));
                },
                wanted.m_lineWeight >= 0 || wanted.m_lineWeight == AcDb::kLnWtByLwDefault);
        if (m_context.IsOn(CheckRule::LayerPlot) && record->isPlottable() != wanted.m_canPlot)
            Differs(
                CheckRule::LayerPlot, layer, record->isPlottable() ? L"打印" : L"不打印",
                wanted.m_canPlot ? L"打印" : L"不打印",
                [value = wanted.m_canPlot](AcDbLayerTableRecord& to) { return to.setIsPlottable(value); });
    }

    void FindEmpty(AcDbDatabase& database) {
        AcDbObjectIdArray unused;
        for (const CheckedLayer& layer : m_context.m_layers.All())
            if (layer.m_isOwn && layer.m_id != database.clayer() && !m_frozen.contains(layer.m_id) &&
                !IsSameName(layer.m_name, L"Defpoints"))
                unused.append(layer.m_id);
        database.purge(unused);
        if (unused.isEmpty())
            return;
        const int kind = m_context.m_findings.GetKind(
            CheckRule::LayerEmpty, L"图层上没有图元，也没有被引用", [](const Finding& finding) {
                const LayerPointer layer(finding.m_object, AcDb::kForWrite);
                return layer.openStatus() == Acad::eOk ? layer->erase() : layer.openStatus();
            });
        for (const AcDbObjectId id : unused)
            m_context.m_findings.Add(kind, id);
    }

    std::map<std::wstring, std::vector<CString>> m_names; // of the standard, by key
    AcDbObjectIdArray m_frozen;                           // in viewports
    std::set<CString, NoCaseOrder> m_linetypes;           // that there are, or can be made
};

} // namespace

std::unique_ptr<CRuleFamily> MakeLayerRules(const CheckContext& context) {
    return std::make_unique<CLayerRules>(context);
}
