#include "module/settings/StandardImport.h"
#include "module/layertools/DrawingWalk.h"

#include "module/settings/StandardChanges.h"
#include "module/settings/StandardFields.h"
#include "sys/code_page.h"
#include "sys/file.h"

#include "dbents.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>

namespace {

constexpr int gbk = 936;
const wchar_t* const importedGroup = L"导入图层";

CString LinetypeName(AcDbObjectId id) {
    const AcDbObjectPointer<AcDbLinetypeTableRecord> linetype(id, AcDb::kForRead);
    AcString name;
    if (linetype.openStatus() == Acad::eOk)
        linetype->getName(name);
    return name.kACharPtr();
}

// How many entities stand on each layer, in all blocks.
std::map<AcDbObjectId, int> CountByLayer(AcDbDatabase& drawing) {
    std::map<AcDbObjectId, int> counts;
    for (const AcDbObjectId id : RecordsOf(drawing.blockTableId())) {
        const AcDbObjectPointer<AcDbBlockTableRecord> block(id, AcDb::kForRead);
        if (block.openStatus() != Acad::eOk)
            continue;
        for (const AcDbObjectId entityId : EntitiesOf(*block.object())) {
            const AcDbEntityPointer entity(entityId, AcDb::kForRead);
            if (entity.openStatus() == Acad::eOk)
                ++counts[entity->layerId()];
        }
    }
    return counts;
}

// A definition in the standard, with its owner and key.
struct Definition {
    CString owner;
    CString key;
    const LayerNode* layer = nullptr;
};

// The definitions by layer name, and the systems by name, both without case.
class Definitions {
public:
    explicit Definitions(const PipeStandard& standard) : m_standard(standard) {
        for (const auto& group : standard.m_groups)
            for (const auto& system : group->Systems()) {
                m_systems.try_emplace(system->m_name, system.get());
                for (const auto& layer : system->Layers())
                    m_byName.try_emplace(layer->m_layerName,
                                         Definition{system->m_name, layer->m_layerType, layer.get()});
            }
        for (const auto& group : standard.m_otherLayers)
            for (const auto& layer : group->Layers())
                m_byName.try_emplace(layer->m_layerName,
                                     Definition{group->m_layerType, layer->m_layerKey, layer.get()});
    }

    const Definition* ByName(const CString& name) const {
        const auto found = m_byName.find(name);
        return found != m_byName.end() ? &found->second : nullptr;
    }
    const PipeNode* System(const CString& name) const {
        const auto found = m_systems.find(name);
        return found != m_systems.end() ? found->second : nullptr;
    }

    // The system and the type that the longest rule finds in a layer's name.
    bool ByRule(const CString& name, CString& system, CString& type) const {
        int longest = 0;
        for (const LayerNameRule& rule : m_standard.m_nameRules) {
            const int fixed = rule.m_prefix.GetLength() + rule.m_suffix.GetLength();
            if (fixed <= longest || name.GetLength() <= fixed ||
                !IsSameName(name.Left(rule.m_prefix.GetLength()), rule.m_prefix) ||
                !IsSameName(name.Right(rule.m_suffix.GetLength()), rule.m_suffix))
                continue;
            longest = fixed;
            system = name.Mid(rule.m_prefix.GetLength(), name.GetLength() - fixed);
            type = rule.m_layerType;
        }
        if (longest != 0)
            if (const PipeNode* const there = System(system))
                system = there->m_name;
        return longest != 0;
    }

private:
    const PipeStandard& m_standard;
    std::map<CString, Definition, NoCaseOrder> m_byName;
    std::map<CString, const PipeNode*, NoCaseOrder> m_systems;
};

// A definition with what a source says; and what differs, in words.
LayerNode Changed(const LayerNode& layer, const ImportedLayer& imported, CString& what) {
    LayerNode changed = layer;
    if (!IsSameName(layer.m_layerName, imported.layer.m_layerName))
        changed.m_layerName = imported.layer.m_layerName;
    changed.m_color = imported.layer.m_color;
    if (!imported.layer.m_linetype.IsEmpty() && !IsSameName(layer.m_linetype, imported.layer.m_linetype))
        changed.m_linetype = imported.layer.m_linetype;
    if (imported.hasWeight) {
        changed.m_lineWeight = imported.layer.m_lineWeight;
        changed.m_canPlot = imported.layer.m_canPlot;
    }
    for (const StandardField<LayerNode>& field : FieldsOf<LayerNode>()) {
        const CString before = field.get(layer);
        const CString after = field.get(changed);
        if (before != after)
            what += (what.IsEmpty() ? L"" : L"，") + (field.name + (L" " + before)) + L" → " + after;
    }
    return changed;
}

} // namespace

std::vector<ImportedLayer> LayersUsedIn(AcDbDatabase& drawing) {
    const std::map<AcDbObjectId, int> counts = CountByLayer(drawing);
    std::vector<ImportedLayer> layers;
    for (const AcDbObjectId id : RecordsOf(drawing.layerTableId())) {
        const AcDbObjectPointer<AcDbLayerTableRecord> record(id, AcDb::kForRead);
        const auto count = counts.find(id);
        AcString name;
        if (record.openStatus() != Acad::eOk || count == counts.end() || record->getName(name) != Acad::eOk)
            continue;
        ImportedLayer layer;
        layer.layer.m_layerName = name.kACharPtr();
        if (layer.layer.m_layerName.Find(L'|') >= 0 || layer.layer.m_layerName == L"0")
            continue;
        layer.layer.m_color = record->color();
        layer.layer.m_linetype = LinetypeName(record->linetypeObjectId());
        layer.layer.m_lineWeight = record->lineWeight();
        layer.layer.m_canPlot = record->isPlottable();
        layer.hasWeight = true;
        layer.entities = count->second;
        layers.push_back(std::move(layer));
    }
    return layers;
}

std::optional<std::vector<ImportedLayer>> LayersDefinedIn(const std::filesystem::path& file,
                                                          int& passedOver) {
    const auto read = sys::read_file(file);
    const sys::code_page* const page = sys::code_page::find(gbk);
    if (!read || page == nullptr)
        return std::nullopt;
    std::vector<ImportedLayer> layers;
    std::string_view bytes = read->view();
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        const CString line = CString(page->decode(bytes.substr(0, end)).c_str()).Trim();
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        std::vector<CString> parts;
        for (int at = 0; at >= 0;)
            if (const CString part = line.Tokenize(L" \t\r", at); at >= 0)
                parts.push_back(part == L"_" ? CString() : part);
        if (parts.empty())
            continue;
        constexpr std::size_t columns = 5;
        ImportedLayer layer;
        if (parts.size() != columns || parts[0].IsEmpty() || parts[1].IsEmpty() || parts[3].IsEmpty() ||
            !FindField<LayerNode>(L"颜色")->set(layer.layer, parts[2]).IsEmpty()) {
            ++passedOver;
            continue;
        }
        layer.system = parts[0];
        layer.type = parts[1];
        layer.layer.m_layerName = parts[3];
        layer.layer.m_linetype = parts[4];
        layers.push_back(std::move(layer));
    }
    return layers;
}

std::vector<StandardProposal> Propose(const PipeStandard& standard,
                                      const std::vector<ImportedLayer>& layers) {
    const Definitions definitions(standard);
    std::vector<StandardProposal> proposals;
    for (const ImportedLayer& imported : layers) {
        StandardProposal proposal;
        proposal.entities = imported.entities;
        proposal.layer = imported.layer;
        const PipeNode* system = definitions.System(imported.system);
        const LayerNode* layer = system != nullptr ? system->FindLayerNode(imported.type, false) : nullptr;
        proposal.owner = system != nullptr ? system->m_name : imported.system;
        proposal.key = imported.type;
        if (imported.system.IsEmpty()) {
            if (const Definition* const there = definitions.ByName(imported.layer.m_layerName)) {
                proposal.owner = there->owner;
                proposal.key = there->key;
                layer = there->layer;
            } else if (definitions.ByRule(imported.layer.m_layerName, proposal.owner, proposal.key)) {
                system = definitions.System(proposal.owner);
                layer = system != nullptr ? system->FindLayerNode(proposal.key, false) : nullptr;
            } else {
                proposal.kind = StandardProposal::kOtherLayer;
                proposal.owner = importedGroup;
                proposal.key = imported.layer.m_layerName;
                proposal.what = L"新的其他图层";
            }
        }
        if (layer != nullptr) {
            proposal.layer = Changed(*layer, imported, proposal.what);
            if (proposal.what.IsEmpty())
                continue;
        } else if (proposal.kind != StandardProposal::kOtherLayer) {
            proposal.kind = system != nullptr ? StandardProposal::kNewLayer : StandardProposal::kNewSystem;
            proposal.what = system != nullptr ? L"新的图层类型" : L"新的系统";
        }
        proposals.push_back(std::move(proposal));
    }
    return proposals;
}

CString Accept(CStandardManager& manager, const StandardProposal& proposal, const CString& group) {
    const PipeStandard& standard = manager.Standard();
    if (proposal.kind == StandardProposal::kOtherLayer &&
        StandardChanges::FindOwner(standard, proposal.owner) == nullptr)
        if (CString why = StandardChanges::AddOtherGroup(manager, proposal.owner); !why.IsEmpty())
            return why;
    if (proposal.kind == StandardProposal::kNewSystem &&
        StandardChanges::FindSystem(standard, proposal.owner) == nullptr) {
        const CString rule =
            standard.m_createRules.empty() ? CString() : standard.m_createRules.front().m_name;
        if (CString why = StandardChanges::AddSystem(manager, group, proposal.owner, rule); !why.IsEmpty())
            return why;
    }
    const LayerSet* const owner = StandardChanges::FindOwner(standard, proposal.owner);
    const LayerNode* const there = owner != nullptr ? owner->FindLayerNode(proposal.key, false) : nullptr;
    if (there == nullptr)
        return StandardChanges::AddLayer(manager, proposal.owner, proposal.key, proposal.layer);
    if (proposal.kind == StandardProposal::kChangedLayer)
        return StandardChanges::SetLayer(manager, proposal.owner, proposal.key, proposal.layer);
    LayerNode changed = *there; // as the creation rule made it
    changed.m_layerName = proposal.layer.m_layerName;
    changed.m_color = proposal.layer.m_color;
    changed.m_linetype = proposal.layer.m_linetype;
    changed.m_lineWeight = proposal.layer.m_lineWeight;
    changed.m_canPlot = proposal.layer.m_canPlot;
    return StandardChanges::SetLayer(manager, proposal.owner, proposal.key, changed);
}
