#include "module/settings/StandardComparison.h"

#include "module/settings/StandardFields.h"

#include <algorithm>
#include <utility>

namespace {

struct Value {
    const wchar_t* name;
    CString text;
};

struct Record {
    CString name;
    CString owner; // the record that it belongs to; "" for none
    std::vector<Value> values;
    std::vector<CString> order; // of what belongs to it
};

// All records of a standard. Of two of one name the second one has a number.
class Records {
public:
    explicit Records(const PipeStandard& standard) {
        std::vector<CString> groups;
        for (const auto& group : standard.m_groups)
            groups.push_back(group->GroupName());
        Add({L"系统组的顺序", L"", {}, groups});
        for (const auto& group : standard.m_groups)
            AddGroup(*group);
        for (const auto& group : standard.m_otherLayers) {
            const CString name = Add({L"图层组 " + group->m_layerType, L"", {}, {}});
            for (const auto& layer : group->Layers())
                AddLayer(name, group->m_layerType + L"/" + layer->m_layerKey, *layer);
            AddAliases(name, group->m_layerType, *group);
        }
        AddList(L"命名规则 ", standard.m_nameRules, &LayerNameRule::m_layerType);
        AddList(L"创建规则 ", standard.m_createRules, &CreateSystemRule::m_name);
        AddList(L"文字样式 ", standard.m_textStyles, &TextStyleNode::m_key);
        AddList(L"对象颜色 ", standard.m_objectColors, &ObjectColor::m_name);
    }

    const std::vector<Record>& All() const { return m_records; }
    const Record* Find(const CString& name) const {
        const auto found = m_places.find(name);
        return found != m_places.end() ? &m_records[found->second] : nullptr;
    }

private:
    CString Add(Record record) {
        const CString name = record.name;
        for (int number = 2; m_places.contains(record.name); ++number)
            record.name.Format(L"%s#%d", name.GetString(), number);
        m_places[record.name] = m_records.size();
        m_records.push_back(std::move(record));
        return m_records.back().name;
    }

    template<class Source>
    static std::vector<Value> ValuesOf(const Source& source) {
        std::vector<Value> values;
        for (const StandardField<Source>& field : FieldsOf<Source>())
            values.push_back({field.name, field.get(source)});
        return values;
    }

    void AddGroup(const PipeGroupNode& group) {
        std::vector<CString> systems;
        group.GetAllPipeSystemNames(systems);
        const CString name = Add(
            {L"系统组 " + group.GroupName(), L"", {{L"可改名", group.CanRename() ? L"是" : L"否"}}, systems});
        for (const auto& system : group.Systems()) {
            Record record{L"系统 " + system->m_name, name, ValuesOf<PipeBasicNode>(*system), {}};
            record.values.push_back({L"系统组", group.GroupName()});
            record.values.push_back({L"原始名称", system->m_initialName});
            const CString owner = Add(std::move(record));
            for (const auto& layer : system->Layers())
                AddLayer(owner, system->m_name + L"/" + layer->m_layerType, *layer);
            AddAliases(owner, system->m_name, *system);
        }
    }

    void AddLayer(const CString& owner, const CString& key, const LayerNode& layer) {
        Add({L"图层 " + key, owner, ValuesOf(layer), {}});
    }

    void AddAliases(const CString& owner, const CString& key, const LayerSet& layers) {
        for (const auto& [source, destination] : layers.LayerTypeMap())
            Add({L"映射 " + key + L"/" + source, owner, {{L"目标", destination}}, {}});
    }

    template<class Source>
    void AddList(const wchar_t* kind, const std::vector<Source>& list, CString Source::*key) {
        for (const Source& one : list)
            Add({kind + one.*key, L"", ValuesOf(one), {}});
    }

    std::vector<Record> m_records;
    std::map<CString, std::size_t, KeyOrder> m_places;
};

// What both have of a list, in the order of the first.
std::vector<CString> Common(const std::vector<CString>& list, const std::vector<CString>& other) {
    const std::set<CString, KeyOrder> there(other.begin(), other.end());
    std::vector<CString> common;
    for (const CString& one : list)
        if (there.contains(one))
            common.push_back(one);
    return common;
}

} // namespace

CString StandardDifference::GetText() const {
    if (kind == kAdded)
        return L"+ " + record;
    if (kind == kRemoved)
        return L"- " + record;
    const auto shown = [](const CString& text) { return text.IsEmpty() ? CString(L"(空)") : text; };
    return L"  " + record + L" " + field + L": " + shown(before) + L" → " + shown(after);
}

std::vector<StandardDifference> CompareStandards(const PipeStandard& before, const PipeStandard& after) {
    const Records old(before);
    const Records now(after);
    std::vector<StandardDifference> found;
    for (const Record& record : old.All())
        if (now.Find(record.name) == nullptr && (record.owner.IsEmpty() || now.Find(record.owner) != nullptr))
            found.push_back({StandardDifference::kRemoved, record.name, L"", L"", L""});
    for (const Record& record : now.All()) {
        const Record* const same = old.Find(record.name);
        if (same == nullptr) {
            if (record.owner.IsEmpty() || old.Find(record.owner) != nullptr)
                found.push_back({StandardDifference::kAdded, record.name, L"", L"", L""});
            continue;
        }
        for (std::size_t i = 0; i < record.values.size(); ++i)
            if (record.values[i].text != same->values[i].text)
                found.push_back({StandardDifference::kChanged, record.name, record.values[i].name,
                                 same->values[i].text, record.values[i].text});
        const std::vector<CString> was = Common(same->order, record.order);
        const std::vector<CString> is = Common(record.order, same->order);
        if (was != is)
            found.push_back(
                {StandardDifference::kChanged, record.name, L"顺序", ListText(was), ListText(is)});
    }
    return found;
}
