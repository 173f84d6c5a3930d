#include "module/standard/LayerGrouping.h"

#include "acdbads.h"
#include "acutmem.h"
#include "dbapserv.h"
#include "dbdict.h"
#include "dbobjptr.h"
#include "dbxrecrd.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/StandardManager.h"

#include <memory>
#include <set>

namespace {

constexpr wchar_t dictionaryKey[] = L"ACLYDICTIONARY";
constexpr wchar_t filterType[] = L"AcLyLayerGroup";
constexpr int typeCode = 1;
constexpr int versionCode = 90;
constexpr int nameCode = 300;
constexpr int layerCode = 330;

// ---- the group of a layer

// The name of the system that a rule makes a layer's name from; empty when the name is none of the rule's.
std::wstring_view SystemIn(std::wstring_view layerName, const LayerNameRule& rule) {
    const std::wstring_view prefix = ViewOf(rule.m_prefix), suffix = ViewOf(rule.m_suffix);
    if (layerName.size() <= prefix.size() + suffix.size() ||
        !IsSameName(layerName.substr(0, prefix.size()), prefix) ||
        !IsSameName(layerName.substr(layerName.size() - suffix.size()), suffix))
        return {};
    return layerName.substr(prefix.size(), layerName.size() - prefix.size() - suffix.size());
}

CString GroupOf(const CString& layerName) {
    const CString group = PipeSystemTool::GetPipeSystemGroupName(layerName);
    const CStandardManager* const manager = CStandardManager::Current();
    if (!group.IsEmpty() || manager == nullptr)
        return group;
    for (const LayerNameRule& rule : manager->Standard().m_nameRules) {
        const std::wstring_view system = SystemIn(ViewOf(layerName), rule);
        if (system.empty())
            continue;
        const CString name(system.data(), static_cast<int>(system.size()));
        for (const auto& one : manager->Standard().m_groups)
            if (manager->Index().FindSystem(one.get(), name) != nullptr)
                return one->GroupName();
    }
    return {};
}

// ---- chains of filters

struct FreeChain {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using Chain = std::unique_ptr<resbuf, FreeChain>;

// Puts a layer behind the end of a chain; the new end.
resbuf* AddLayer(resbuf* chain, AcDbObjectId layer) {
    while (chain->rbnext != nullptr)
        chain = chain->rbnext;
    chain->rbnext = acutNewRb(layerCode);
    acdbGetAdsName(chain->rbnext->resval.rlname, layer);
    return chain->rbnext;
}

CString NameOf(const resbuf* chain) {
    if (chain == nullptr || chain->restype != typeCode || CString(chain->resval.rstring) != filterType)
        return {};
    while (chain != nullptr && chain->restype != nameCode)
        chain = chain->rbnext;
    return chain != nullptr ? CString(chain->resval.rstring) : CString();
}

std::set<AcDbObjectId> LayersOf(const resbuf* chain) {
    std::set<AcDbObjectId> layers;
    for (; chain != nullptr; chain = chain->rbnext) {
        AcDbObjectId layer;
        if (chain->restype == layerCode && acdbGetObjectId(layer, chain->resval.rlname) == Acad::eOk)
            layers.insert(layer);
    }
    return layers;
}

Chain ChainOf(const AcDbXrecord& record) {
    resbuf* chain = nullptr;
    record.rbChain(&chain);
    return Chain(chain);
}

// ---- the drawing's filters

// A dictionary under a key of another one, made when it is missing; null when that fails. It names what it
// holds as the editor's own does in drawings that have filters: softly.
AcDbObjectId EnsureDictionary(AcDbObjectId owner, const wchar_t* key) {
    AcDbObjectId id;
    AcDbDictionaryPointer dictionary(owner, AcDb::kForRead);
    if (dictionary.openStatus() != Acad::eOk || dictionary->getAt(key, id) == Acad::eOk)
        return id;
    AcDbDictionaryPointer made;
    made.create();
    const bool isMade =
        dictionary->upgradeOpen() == Acad::eOk && dictionary->setAt(key, made.object(), id) == Acad::eOk;
    return isMade ? id : AcDbObjectId::kNull;
}

AcDbObjectId EnsureFilters() {
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database == nullptr)
        return AcDbObjectId::kNull;
    AcDbLayerTablePointer table(database->layerTableId(), AcDb::kForRead);
    if (table.openStatus() != Acad::eOk)
        return AcDbObjectId::kNull;
    if (table->extensionDictionary().isNull() &&
        (table->upgradeOpen() != Acad::eOk || table->createExtensionDictionary() != Acad::eOk))
        return AcDbObjectId::kNull;
    const AcDbObjectId own = table->extensionDictionary();
    table.close();
    return EnsureDictionary(own, dictionaryKey);
}

// The groups among the filters by name; of two of one name the first.
std::map<CString, AcDbObjectId, NoCaseOrder> FindGroups(const AcDbDictionary& filters) {
    std::map<CString, AcDbObjectId, NoCaseOrder> groups;
    for (const std::unique_ptr<AcDbDictionaryIterator> each(filters.newIterator()); !each->done();
         each->next()) {
        const AcDbXrecordPointer record(each->objectId(), AcDb::kForRead);
        if (record.openStatus() != Acad::eOk)
            continue;
        if (const CString name = NameOf(ChainOf(*record).get()); !name.IsEmpty())
            groups.try_emplace(name, each->objectId());
    }
    return groups;
}

CString FreeKey(const AcDbDictionary& filters) {
    CString key;
    for (Adesk::UInt32 number = filters.numEntries() + 1; key.IsEmpty() || filters.has(key); ++number)
        key.Format(L"*A%u", number);
    return key;
}

void MakeGroup(AcDbDictionary& filters, const CString& name, const std::vector<AcDbObjectId>& layers) {
    const Chain chain(acutBuildList(typeCode, filterType, versionCode, 1, nameCode, name.GetString(), 0));
    resbuf* last = chain.get();
    for (const AcDbObjectId layer : layers)
        last = AddLayer(last, layer);
    AcDbXrecordPointer record;
    AcDbObjectId id;
    record.create();
    if (filters.setAt(FreeKey(filters), record.object(), id) == Acad::eOk)
        record->setFromRbChain(*chain);
}

void AddToGroup(AcDbObjectId group, const std::vector<AcDbObjectId>& layers) {
    AcDbXrecordPointer record(group, AcDb::kForRead);
    if (record.openStatus() != Acad::eOk)
        return;
    const Chain chain = ChainOf(*record);
    std::set<AcDbObjectId> there = LayersOf(chain.get());
    resbuf* last = chain.get();
    bool isChanged = false;
    for (const AcDbObjectId layer : layers) {
        if (!there.insert(layer).second)
            continue;
        last = AddLayer(last, layer);
        isChanged = true;
    }
    if (isChanged && record->upgradeOpen() == Acad::eOk)
        record->setFromRbChain(*chain);
}

} // namespace

void CLayerGrouping::Add(const AcDbLayerTableRecord& layer) {
    AcString name;
    if (layer.getName(name) != Acad::eOk)
        return;
    if (const CString group = GroupOf(name.kACharPtr()); !group.IsEmpty())
        m_layers[group].push_back(layer.objectId());
}

void CLayerGrouping::Write() {
    if (m_layers.empty())
        return;
    const AcDbDictionaryPointer filters(EnsureFilters(), AcDb::kForRead);
    if (filters.openStatus() != Acad::eOk)
        return;
    const auto groups = FindGroups(*filters);
    for (const auto& [name, layers] : m_layers) {
        if (const auto found = groups.find(name); found != groups.end())
            AddToGroup(found->second, layers);
        else if (filters->isWriteEnabled() || filters->upgradeOpen() == Acad::eOk)
            MakeGroup(*filters, name, layers);
    }
    m_layers.clear();
}
