#include "module/standard/PipeSystemTool.h"

#include "module/standard/StandardManager.h"
#include "sys/folders.h"

#include "aced.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace {

const StandardIndex* Index() {
    const CStandardManager* const manager = CStandardManager::Loaded();
    return manager != nullptr ? &manager->Index() : nullptr;
}

const PipeNode* FindSystem(LPCTSTR name) {
    const StandardIndex* const index = Index();
    return index != nullptr ? index->FindSystem(name).record : nullptr;
}

// A field of a system, or what is said of unknown ones.
template<class Value>
Value ValueOf(LPCTSTR systemName, Value PipeBasicNode::*field, Value unknown = {}) {
    const PipeNode* const system = FindSystem(systemName);
    return system != nullptr ? system->*field : unknown;
}

const LayerNode* FindDefinition(LPCTSTR systemName, LPCTSTR layerType) {
    const StandardIndex* const index = Index();
    return index != nullptr ? index->FindDefinition(systemName, layerType) : nullptr;
}

// And its type by number.
const LayerNode* FindPipeLayer(LPCTSTR layerName, int& type) {
    const StandardIndex* const index = Index();
    return index != nullptr ? index->FindPipeLayer(layerName, type) : nullptr;
}

// Empty when the record can not be opened.
CString LayerNameOf(AcDbObjectId id) {
    const AcDbLayerTableRecordPointer layer(id, AcDb::kForRead);
    const ACHAR* name = nullptr;
    return layer.openStatus() == Acad::eOk && layer->getName(name) == Acad::eOk ? CString(name) : CString();
}

const PipeGroupNode* FindGroup(LPCTSTR name) {
    const StandardIndex* const index = Index();
    return index != nullptr ? index->FindGroup(name) : nullptr;
}

// Gathers the pipe layers of systems behind the names of a list; a name that is there, or differs in case
// only, is not added again.
class PipeLayerNames {
public:
    explicit PipeLayerNames(std::vector<CString>& names)
        : m_names(names), m_known(names.begin(), names.end()) {}

    void Add(const PipeNode& system) {
        std::vector<CString> all;
        for (const wchar_t* type : StandardIndex::pipeTypes)
            system.GetAllLayerName(type, all);
        for (CString& name : all)
            if (m_known.insert(name).second)
                m_names.push_back(std::move(name));
    }
    void Add(const PipeGroupNode& group) {
        for (const auto& system : group.Systems())
            Add(*system);
    }

private:
    std::vector<CString>& m_names;
    std::set<CString, NoCaseOrder> m_known;
};

// Joins what a function appends.
template<class Append>
CString Joined(LPCTSTR separator, Append append) {
    std::vector<CString> names;
    append(names);
    return JoinNames(names, separator);
}

const TextStyleNode* FindTextStyle(LPCTSTR name) {
    const StandardIndex* const index = Index();
    return index != nullptr ? index->FindTextStyleByName(name) : nullptr;
}

const TextStyleNode* FindTextStyle(TextStyleEnum use) {
    const StandardIndex* const index = Index();
    const CString key = GetTextStyleKey(use);
    return index != nullptr && !key.IsEmpty() ? index->FindTextStyleByKey(key) : nullptr;
}

bool Give(const TextStyleNode* found, TextStyleNode& style) {
    if (found != nullptr)
        style = *found;
    return found != nullptr;
}

} // namespace

namespace PipeSystemTool {

// ---- names of systems

CString GetPipeSystemNameByLayer(LPCTSTR layerName, LPCTSTR layerType) {
    const StandardIndex* const index = Index();
    const LayerNode* const layer = index != nullptr ? index->FindLayerByType(layerType, layerName) : nullptr;
    return layer != nullptr ? layer->m_layerKey : CString();
}

CString GetPipeSystemNameByLayer(LPCTSTR layerName) {
    const StandardIndex* const index = Index();
    const LayerNode* const layer = index != nullptr ? index->FindLayerByName(layerName).record : nullptr;
    return layer != nullptr ? layer->m_layerKey : CString();
}

CString GetPipeSystemNameByLayer(AcDbObjectId layerId) {
    const StandardIndex* const index = Index();
    const PipeNode* const system =
        index != nullptr ? index->FindSystemByLayerName(LayerNameOf(layerId)) : nullptr;
    return system != nullptr ? system->m_name : CString();
}

CString GetPipeSystemNameByLayer(AcDbObjectId layerId, LPCTSTR layerType) {
    return GetPipeSystemNameByLayer(LayerNameOf(layerId), layerType);
}

CString GetPipeSystemNameByPipeLayer(LPCTSTR layerName) {
    int type = 0;
    const LayerNode* const layer = FindPipeLayer(layerName, type);
    return layer != nullptr ? layer->m_layerKey : CString();
}

CString GetPipeSystemNameByPipeLayer(AcDbObjectId layerId) {
    return GetPipeSystemNameByPipeLayer(LayerNameOf(layerId));
}

CString OriginSystemNameToCurrentName(LPCTSTR oldName) {
    const StandardIndex* const index = Index();
    const PipeNode* const system = index != nullptr ? index->FindSystemByInitialName(oldName) : nullptr;
    return system != nullptr && !system->m_name.IsEmpty() ? system->m_name : CString(oldName);
}

CString CurrentSystemNameToOriginName(LPCTSTR currentName) {
    const PipeNode* const system = FindSystem(currentName);
    return system != nullptr && !system->m_initialName.IsEmpty() ? system->m_initialName
                                                                 : CString(currentName);
}

bool IsPipeSystemOfCurrentStandard(LPCTSTR systemName) {
    return FindSystem(systemName) != nullptr;
}

bool IsGroupIncludedSystem(LPCTSTR groupName, LPCTSTR systemName) {
    const PipeGroupNode* const group = FindGroup(groupName);
    return group != nullptr && group->IsIncludedSystem(systemName);
}

CString GetPipeSystemGroupName(LPCTSTR layerName) {
    const StandardIndex* const index = Index();
    const PipeGroupNode* const group = index != nullptr ? index->FindLayerByName(layerName).group : nullptr;
    return group != nullptr ? group->GroupName() : CString();
}

bool GetPipeSystemGroup(LPCTSTR groupName, PipeClassificationNode& group) {
    const StandardIndex* const index = Index();
    const PipeGroupNode* const found = index != nullptr ? index->FindGroupNoCase(groupName) : nullptr;
    if (found != nullptr)
        found->GetPipeGroupInfo(group);
    return found != nullptr;
}

bool GetPipeSystemNamesOfGroupByPipeSystemName(LPCTSTR systemName, std::vector<CString>& names) {
    const StandardIndex* const index = Index();
    if (const PipeGroupNode* const group = index != nullptr ? index->FindSystem(systemName).group : nullptr)
        group->GetAllPipeSystemNames(names);
    return index != nullptr && !names.empty();
}

bool GetPipeSystemsBySystemGroup(LPCTSTR groupName, std::vector<CString>& names) {
    if (const PipeGroupNode* const group = FindGroup(groupName))
        group->GetAllPipeSystemNames(names);
    return Index() != nullptr && !names.empty();
}

bool GetPipeSystems(std::vector<PipeClassificationNode>& groups, bool includeMapped) {
    const CStandardManager* const manager = CStandardManager::Loaded();
    if (manager == nullptr)
        return false;
    for (const auto& group : manager->Standard().m_groups)
        group->GetPipeGroupInfo(groups.emplace_back(), includeMapped);
    return !groups.empty();
}

CString GetCurrentStandardName() {
    const CStandardManager* const manager = CStandardManager::Loaded();
    if (manager == nullptr)
        return {};
    CString name = manager->FileName();
    for (const wchar_t separator : {L'\\', L'/'})
        name = name.Mid(name.ReverseFind(separator) + 1);
    const int point = name.ReverseFind(L'.');
    return point > 0 ? name.Left(point) : name;
}

bool GetPipeSystemStandardFiles(LPCTSTR folder, std::vector<CString>& names) {
    std::vector<CString> found;
    std::error_code fault;
    for (std::filesystem::directory_iterator at(sys::to_path(folder), fault), end; !fault && at != end;
         at.increment(fault)) {
        const CString name = sys::from_path(at->path().filename()).c_str();
        if (name.Right(5).CompareNoCase(L".vrsl") == 0)
            found.push_back(name);
    }
    std::ranges::sort(found, KeyOrder{});
    names.insert(names.end(), found.begin(), found.end());
    return !names.empty();
}

bool GetPipeSystemStandardFiles(std::vector<CString>& names) {
    return GetPipeSystemStandardFiles(sys::from_path(sys::system_folder()).c_str(), names);
}

// ---- layers

CString GetLayerName(LPCTSTR systemName, LPCTSTR layerType, bool create) {
    const LayerNode* const layer = FindDefinition(systemName, layerType);
    if (layer != nullptr && create)
        layer->CreateLayer();
    return layer != nullptr ? layer->m_layerName : CString();
}

AcCmColor GetLayerColor(LPCTSTR layerName) {
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database != nullptr) {
        const AcDbLayerTableRecordPointer layer(layerName, database, AcDb::kForRead);
        if (layer.openStatus() == Acad::eOk)
            return layer->color();
    }
    const StandardIndex* const index = Index();
    if (index == nullptr)
        return {};
    const LayerNode* layer = index->FindLayerByName(layerName).record;
    if (layer == nullptr)
        layer = index->FindOtherLayerByName(layerName);
    return layer != nullptr ? layer->m_color : AcCmColor();
}

CString GetLinetypeName(LPCTSTR systemName, LPCTSTR layerType) {
    const LayerNode* const layer = FindDefinition(systemName, layerType);
    return layer != nullptr ? layer->m_linetype : CString();
}

CString GetLayerRemark(LPCTSTR systemName, LPCTSTR layerType) {
    const LayerNode* const layer = FindDefinition(systemName, layerType);
    return layer != nullptr ? layer->m_remark : CString();
}

CString GetLayerNames(LPCTSTR systemName, LPCTSTR layerType) {
    return Joined(L";", [&](std::vector<CString>& names) { GetLayerNames(systemName, layerType, names); });
}

bool GetLayerNames(LPCTSTR systemName, LPCTSTR layerType, std::vector<CString>& names) {
    if (const PipeNode* const system = FindSystem(systemName))
        system->GetAllLayerName(layerType, names);
    return Index() != nullptr && !names.empty();
}

CString GetPipeLayers(LPCTSTR systemName, LPCTSTR separator) {
    return Joined(separator, [&](std::vector<CString>& names) { GetPipeLayers(systemName, names); });
}

CString GetPipeLayers(const std::vector<CString>& systemNames, LPCTSTR separator) {
    return Joined(separator, [&](std::vector<CString>& names) { GetPipeLayers(systemNames, names); });
}

CString GetPipeLayers(const CString* systemNames, int count, LPCTSTR separator) {
    return Joined(separator, [&](std::vector<CString>& names) { GetPipeLayers(systemNames, count, names); });
}

void GetPipeLayers(LPCTSTR systemName, std::vector<CString>& names) {
    const CString name(systemName);
    GetPipeLayers(&name, 1, names);
}

void GetPipeLayers(const std::vector<CString>& systemNames, std::vector<CString>& names) {
    GetPipeLayers(systemNames.data(), static_cast<int>(systemNames.size()), names);
}

void GetPipeLayers(const CString* systemNames, int count, std::vector<CString>& names) {
    PipeLayerNames layers(names);
    for (int i = 0; i < count; ++i)
        if (const PipeNode* const system = FindSystem(systemNames[i]))
            layers.Add(*system);
}

CString GetSystemGroupLayers(LPCTSTR groupName, LPCTSTR layerType, LPCTSTR separator) {
    return Joined(separator,
                  [&](std::vector<CString>& names) { GetSystemGroupLayers(groupName, layerType, names); });
}

void GetSystemGroupLayers(LPCTSTR groupName, LPCTSTR layerType, std::vector<CString>& names) {
    if (const PipeGroupNode* const group = FindGroup(groupName))
        group->GetAllLayerName(layerType, names);
}

CString GetSystemGroupPipeLayers(LPCTSTR groupName, LPCTSTR separator) {
    return Joined(separator,
                  [&](std::vector<CString>& names) { GetSystemGroupPipeLayers(groupName, names); });
}

CString GetSystemGroupPipeLayers(const std::vector<CString>& groupNames, LPCTSTR separator) {
    return Joined(separator,
                  [&](std::vector<CString>& names) { GetSystemGroupPipeLayers(groupNames, names); });
}

CString GetSystemGroupPipeLayers(const CString* groupNames, int count, LPCTSTR separator) {
    return Joined(separator,
                  [&](std::vector<CString>& names) { GetSystemGroupPipeLayers(groupNames, count, names); });
}

void GetSystemGroupPipeLayers(LPCTSTR groupName, std::vector<CString>& names) {
    const CString name(groupName);
    GetSystemGroupPipeLayers(&name, 1, names);
}

void GetSystemGroupPipeLayers(const std::vector<CString>& groupNames, std::vector<CString>& names) {
    GetSystemGroupPipeLayers(groupNames.data(), static_cast<int>(groupNames.size()), names);
}

void GetSystemGroupPipeLayers(const CString* groupNames, int count, std::vector<CString>& names) {
    PipeLayerNames layers(names);
    for (int i = 0; i < count; ++i)
        if (const PipeGroupNode* const group = FindGroup(groupNames[i]))
            layers.Add(*group);
}

namespace {

CString LayerBesides(int ownType, LPCTSTR layerName, LPCTSTR layerType, bool includeMapped) {
    const StandardIndex* const index = Index();
    if (index == nullptr)
        return {};
    for (const auto& own : index->FindPipeLayers(ownType, layerName)) {
        const PipeNode* const system = index->FindSystem(own.group, own.record->m_layerKey);
        const LayerNode* const layer =
            system != nullptr ? system->FindLayerNode(layerType, includeMapped) : nullptr;
        if (layer != nullptr &&
            (layerName == nullptr || *layerName == 0 || system->CountLayer(layerName) != 0))
            return layer->m_layerName;
    }
    return {};
}

} // namespace

CString GetLayerByPipeLayer(LPCTSTR layerName, LPCTSTR layerType, bool includeMapped) {
    return LayerBesides(0, layerName, layerType, includeMapped);
}

CString GetLayerByVPipeLayer(LPCTSTR layerName, LPCTSTR layerType, bool includeMapped) {
    return LayerBesides(1, layerName, layerType, includeMapped);
}

void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) {
    set.m_name = attachName;
    if (const StandardIndex* const index = Index())
        index->GetLayerAttachInfo(attachName, set);
}

bool IsPipeLayer(LPCTSTR layerName, int* type) {
    int found = 0;
    if (FindPipeLayer(layerName, found) != nullptr && type != nullptr)
        *type = found;
    return false;
}

bool SystemGroupContainLayer(LPCTSTR groupName, LPCTSTR layerName, LPCTSTR layerType) {
    const StandardIndex* const index = Index();
    const PipeGroupNode* const group = index != nullptr ? index->FindGroup(groupName) : nullptr;
    return group != nullptr && index->FindLayerByType(group, layerType, layerName) != nullptr;
}

// ---- values of systems

CString GetPipeMaterial(LPCTSTR systemName, PipeMaterialEnum use) {
    return ValueOf(systemName,
                   use == kOutdoorMaterial ? &PipeBasicNode::m_outdoorMaterial : &PipeBasicNode::m_material);
}

double GetPipeLineWidth(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_lineWidth, 0.35);
}

CString GetPipeDim(LPCTSTR systemName, bool cut, LPCTSTR marker) {
    CString label = ValueOf(systemName, &PipeBasicNode::m_dim);
    const CString mark(marker);
    const int at = mark.IsEmpty() ? -1 : label.Find(mark);
    if (at < 0)
        return label;
    if (cut)
        return label.Left(at);
    label.Replace(mark, L"");
    return label;
}

CString GetPipeDimB(LPCTSTR systemName, LPCTSTR marker) {
    const CString label = ValueOf(systemName, &PipeBasicNode::m_dim);
    const CString mark(marker);
    const int at = mark.IsEmpty() ? -1 : label.Find(mark);
    return at < 0 ? CString() : label.Mid(at + mark.GetLength());
}

double GetVPipeRadius(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_vPipeRadius, 0.5);
}

double GetVPipeRadius1(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_vPipeRadius1, 0.5);
}

double GetVPipeRadius2(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_vPipeRadius2, 0.25);
}

int GetVPipeType(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_vPipeType);
}

unsigned int GetPipeStatus(LPCTSTR systemName) {
    return static_cast<unsigned int>(ValueOf(systemName, &PipeBasicNode::m_status));
}

CString GetPipeWaterFlowStatus(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_waterFlowStatus);
}

CString GetPipeRemark(LPCTSTR systemName) {
    return ValueOf(systemName, &PipeBasicNode::m_remark);
}

// ---- text styles

CString GetTextStyleName(TextStyleEnum use) {
    const TextStyleNode* const style = FindTextStyle(use);
    return style != nullptr ? style->m_name : CString();
}

bool GetTextStyleInfo(TextStyleEnum use, TextStyleNode& style) {
    return Give(FindTextStyle(use), style);
}

bool GetTextStyleInfo(LPCTSTR name, TextStyleNode& style) {
    return Give(FindTextStyle(name), style);
}

bool GetAllTextStyleInfo(std::vector<TextStyleNode>& styles) {
    const CStandardManager* const manager = CStandardManager::Loaded();
    if (manager != nullptr)
        styles = manager->Standard().m_textStyles;
    return manager != nullptr;
}

double GetTextStyleHeight(TextStyleEnum use, double defaultHeight) {
    const TextStyleNode* const style = FindTextStyle(use);
    return style != nullptr ? style->m_height : defaultHeight;
}

double GetTextStyleHeight(LPCTSTR name, double defaultHeight) {
    const TextStyleNode* const style = FindTextStyle(name);
    return style != nullptr ? style->m_height : defaultHeight;
}

double GetTextStyleScale(TextStyleEnum use, double defaultScale) {
    const TextStyleNode* const style = FindTextStyle(use);
    return style != nullptr ? style->m_scale : defaultScale;
}

double GetTextStyleScale(LPCTSTR name, double defaultScale) {
    const TextStyleNode* const style = FindTextStyle(name);
    return style != nullptr ? style->m_scale : defaultScale;
}

} // namespace PipeSystemTool
