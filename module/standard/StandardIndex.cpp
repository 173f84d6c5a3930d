#include "module/standard/StandardIndex.h"

#include <algorithm>
#include <tuple>

namespace {

std::wstring_view TextOf(LPCTSTR text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

} // namespace

// ---- keys

StandardIndex::Key::Key(const View& view)
    : table(view.table), text(view.first), firstLength(view.first.size()) {
    text += view.second;
}

StandardIndex::Key::operator View() const {
    const std::wstring_view both = text;
    return {table, both.substr(0, firstLength), both.substr(firstLength)};
}

std::size_t StandardIndex::Hash::operator()(const View& key) const {
    std::uint64_t hash = 0x9E3779B97F4A7C15U ^ (static_cast<std::uint64_t>(key.table) << 56);
    const auto add = [&](std::uint64_t value) {
        hash = (hash ^ value) * 0xFF51AFD7ED558CCDU;
        hash ^= hash >> 32;
    };
    for (const std::wstring_view text : {key.first, key.second}) {
        for (const wchar_t c : text)
            add(static_cast<std::uint64_t>(key.table < Table::systemNoCase ? c : base::fold_case(c)));
        add(0);
    }
    return static_cast<std::size_t>(hash);
}

bool StandardIndex::Same::operator()(const View& a, const View& b) const {
    if (a.table != b.table)
        return false;
    if (a.first == b.first && a.second == b.second)
        return true;
    return a.table >= Table::systemNoCase && IsSameName(a.first, b.first) && IsSameName(a.second, b.second);
}

// The order in which a walk meets them. Pipe layers of one group go by their type first.
bool StandardIndex::IsBefore(const Entry& a, const Entry& b) {
    const auto order = [](const Entry& one) {
        return std::tuple(one.unit->groupPlace, one.type, one.unit->place, one.place);
    };
    return order(a) < order(b);
}

// ---- following

// Compares what a unit says now with what it has made, one by one; makes what is new and takes back what is
// gone.
class StandardIndex::Comparison {
public:
    Comparison(StandardIndex& index, Unit& unit) : m_index(index), m_unit(unit) {}
    ~Comparison() {
        for (std::size_t i = m_at; i < m_unit.made.size(); ++i)
            TakeBack(i);
        m_unit.made.resize(m_at);
    }
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    void Add(const View& key, const LayerNode* layer = nullptr, std::uint32_t type = 0) {
        const Entry entry{&m_unit, static_cast<std::uint32_t>(m_at), type, layer};
        if (m_at == m_unit.made.size()) {
            m_unit.made.emplace_back(PutUnder(key, entry), entry);
        } else if (auto& [under, made] = m_unit.made[m_at]; made != entry || !Same()(under->first, key)) {
            TakeBack(m_at);
            under = PutUnder(key, entry);
            made = entry;
        }
        ++m_at;
    }

private:
    Entries::value_type* PutUnder(const View& key, const Entry& entry) {
        auto under = m_index.m_entries.find(key);
        if (under == m_index.m_entries.end())
            under = m_index.m_entries.try_emplace(Key(key)).first;
        Bucket& bucket = under->second;
        if (bucket.first.unit == nullptr) {
            bucket.first = entry;
        } else {
            bucket.others.push_back(entry);
            bucket.sortedAt = 0;
        }
        if (key.table == Table::systemNoCase)
            ++m_index.m_order;
        return &*under;
    }
    void TakeBack(std::size_t at) {
        const auto& [under, entry] = m_unit.made[at];
        if (under->first.table == Table::systemNoCase)
            ++m_index.m_order;
        auto& [first, others, sortedAt] = under->second;
        if (first != entry) {
            others.erase(std::ranges::find(others, entry));
        } else if (!others.empty()) {
            first = others.front();
            others.erase(others.begin());
        } else {
            m_index.m_entries.erase(m_index.m_entries.find(View(under->first)));
        }
    }

    StandardIndex& m_index;
    Unit& m_unit;
    std::size_t m_at = 0;
};

void StandardIndex::Describe(const PipeNode& system, Comparison& to) {
    const std::wstring_view name = ViewOf(system.m_name);
    to.Add({Table::system, name, {}});
    to.Add({Table::systemNoCase, name, {}});
    to.Add({Table::initialName, ViewOf(system.m_initialName), {}});
    for (const auto& [type, layer] : system.LayerIndex()) {
        to.Add({Table::layer, name, ViewOf(type)}, layer.get());
        to.Add({Table::layerByName, ViewOf(layer->m_layerName), {}}, layer.get());
    }
    const auto addType = [&](const CString& typeName, const LayerNode& layer) {
        const std::wstring_view type = ViewOf(typeName);
        const std::wstring_view layerName = ViewOf(layer.m_layerName);
        to.Add({Table::layerByType, type, layerName}, &layer);
        for (std::uint32_t i = 0; i < std::size(pipeTypes); ++i)
            if (IsSameName(type, pipeTypes[i]))
                to.Add({Table::pipeLayer, layerName, {}}, &layer, i);
    };
    for (const auto& layer : system.Layers()) {
        to.Add({Table::systemByLayerName, ViewOf(layer->m_layerName), {}});
        addType(layer->m_layerType, *layer);
        for (const CString& set : layer->m_attachments)
            to.Add({Table::attached, ViewOf(set), {}}, layer.get());
    }
    for (const auto& [type, layer] : system.LayerIndex())
        if (system.IsMapped(type))
            addType(type, *layer);
}

void StandardIndex::Describe(const OtherLayerNode& group, Comparison& to) {
    for (const auto& [key, layer] : group.LayerIndex())
        to.Add({Table::otherLayer, ViewOf(key), ViewOf(group.m_layerType)}, layer.get());
    for (const auto& layer : group.Layers()) {
        to.Add({Table::otherLayerByName, ViewOf(layer->m_layerName), {}}, layer.get());
        for (const CString& set : layer->m_attachments)
            to.Add({Table::otherAttached, ViewOf(set), {}}, layer.get());
    }
}

template<class Record>
void StandardIndex::Bring(Unit& unit, const Record& record) {
    Comparison comparison(*this, unit);
    Describe(record, comparison);
}

void StandardIndex::Drop(const void* record) {
    const auto found = m_units.find(record);
    if (found == m_units.end())
        return;
    {
        const Comparison nothing(*this, found->second); // takes everything back when it ends
    }
    m_units.erase(found);
}

template<class Records>
void StandardIndex::FollowList(const PipeGroupNode* group, std::uint32_t groupPlace, const Records& records) {
    const std::uint32_t stamp = ++m_stamp;
    std::vector<const void*>& list = m_lists[group];
    const std::vector<const void*> old = std::move(list);
    list.clear();
    for (const auto& record : records) {
        Unit& unit = m_units[record.get()];
        unit.stamp = stamp;
        unit.group = group;
        unit.groupPlace = groupPlace;
        unit.place = static_cast<std::uint32_t>(list.size());
        if constexpr (std::is_same_v<decltype(record.get()), const PipeNode*>)
            unit.system = record.get();
        else
            unit.system = nullptr;
        list.push_back(record.get());
    }
    // What is gone; its place in memory may be another group's record by now.
    for (const void* const one : old)
        if (const auto unit = m_units.find(one);
            unit != m_units.end() && unit->second.group == group && unit->second.stamp != stamp)
            Drop(one);
    if (old != list)
        ++m_order;
    for (const auto& record : records)
        Bring(m_units.at(record.get()), *record);
}

StandardIndex::StandardIndex(const PipeStandard& standard) : m_standard(&standard) {
    Follow();
}

void StandardIndex::Follow() {
    std::vector<const PipeGroupNode*> groups;
    for (const auto& group : m_standard->m_groups)
        groups.push_back(group.get());
    for (const PipeGroupNode* const gone : m_groups)
        if (std::ranges::find(groups, gone) == groups.end()) {
            for (const void* const system : m_lists[gone])
                Drop(system);
            m_lists.erase(gone);
        }
    if (groups != m_groups)
        ++m_order;
    m_groups = std::move(groups);
    for (const PipeGroupNode* const group : m_groups)
        Follow(group);
    FollowList(nullptr, 0, m_standard->m_otherLayers);
}

void StandardIndex::Follow(const PipeGroupNode* group) {
    const auto found = std::ranges::find(m_groups, group);
    if (found != m_groups.end())
        FollowList(group, static_cast<std::uint32_t>(found - m_groups.begin()), group->Systems());
}

void StandardIndex::Follow(const PipeNode* system) {
    if (const auto found = m_units.find(system); found != m_units.end() && found->second.system != nullptr)
        Bring(found->second, *system);
}

void StandardIndex::Follow(const OtherLayerNode* group) {
    FollowNewOtherLayers();
    if (const auto found = m_units.find(group); found != m_units.end() && found->second.system == nullptr)
        Bring(found->second, *group);
}

// Those behind the ones that were there before.
void StandardIndex::FollowNewOtherLayers() {
    std::vector<const void*>& list = m_lists[nullptr];
    while (list.size() < m_standard->m_otherLayers.size()) {
        const OtherLayerNode* const group = m_standard->m_otherLayers[list.size()].get();
        Unit& unit = m_units[group];
        unit.place = static_cast<std::uint32_t>(list.size());
        list.push_back(group);
        Bring(unit, *group);
    }
}

// ---- asking

const StandardIndex::Bucket* StandardIndex::BucketAt(const View& key) const {
    const auto found = m_entries.find(key);
    if (found == m_entries.end())
        return nullptr;
    auto& [first, others, sortedAt] = found->second;
    if (!others.empty() && sortedAt != m_order) {
        others.push_back(first);
        std::ranges::sort(others, IsBefore);
        first = others.front();
        others.erase(others.begin());
        sortedAt = m_order;
    }
    return &found->second;
}

const StandardIndex::Entry* StandardIndex::FirstAt(const View& key) const {
    const Bucket* const bucket = BucketAt(key);
    return bucket != nullptr ? &bucket->first : nullptr;
}

template<class Take>
void StandardIndex::ForEachAt(const View& key, Take take) const {
    const Bucket* const bucket = BucketAt(key);
    if (bucket == nullptr || take(bucket->first))
        return;
    for (const Entry& one : bucket->others)
        if (take(one))
            return;
}

bool StandardIndex::IsShadowed(const Unit& unit) const {
    if (unit.shadowedAt != m_order) {
        ForEachAt({Table::systemNoCase, ViewOf(unit.system->m_name), {}}, [&](const Entry& one) {
            unit.isShadowed = one.unit != &unit;
            return one.unit->group == unit.group;
        });
        unit.shadowedAt = m_order;
    }
    return unit.isShadowed;
}

const LayerNode* StandardIndex::LayerAt(const View& key) const {
    const Entry* const first = FirstAt(key);
    return first != nullptr ? first->layer : nullptr;
}

const PipeNode* StandardIndex::SystemAt(const View& key) const {
    const Entry* const first = FirstAt(key);
    return first != nullptr ? first->unit->system : nullptr;
}

const LayerNode* StandardIndex::FindLayer(LPCTSTR system, LPCTSTR layerType) const {
    // Of the systems of one name in a group only the first is asked for its layers.
    const LayerNode* layer = nullptr;
    ForEachAt({Table::layer, TextOf(system), TextOf(layerType)}, [&](const Entry& one) {
        if (IsShadowed(*one.unit))
            return false;
        layer = one.layer;
        return true;
    });
    return layer;
}

const LayerNode* StandardIndex::FindDefinition(LPCTSTR system, LPCTSTR layerType) const {
    const LayerNode* const layer = FindLayer(system, layerType);
    return layer != nullptr ? layer : FindOtherLayer(layerType, system);
}

StandardIndex::Found<LayerNode> StandardIndex::FindLayerByName(LPCTSTR layerName) const {
    const Entry* const first = FirstAt({Table::layerByName, TextOf(layerName), {}});
    return first != nullptr ? Found<LayerNode>{first->layer, first->unit->group} : Found<LayerNode>{};
}

const LayerNode* StandardIndex::FindLayerByType(LPCTSTR layerType, LPCTSTR layerName) const {
    return LayerAt({Table::layerByType, TextOf(layerType), TextOf(layerName)});
}

const LayerNode* StandardIndex::FindLayerByType(const PipeGroupNode* group, LPCTSTR layerType,
                                                LPCTSTR layerName) const {
    const LayerNode* layer = nullptr;
    ForEachAt({Table::layerByType, TextOf(layerType), TextOf(layerName)}, [&](const Entry& one) {
        if (one.unit->group == group)
            layer = one.layer;
        return layer != nullptr;
    });
    return layer;
}

const LayerNode* StandardIndex::FindPipeLayer(LPCTSTR layerName, int& type) const {
    const Entry* const first = FirstAt({Table::pipeLayer, TextOf(layerName), {}});
    if (first == nullptr)
        return nullptr;
    type = static_cast<int>(first->type);
    return first->layer;
}

std::vector<StandardIndex::Found<LayerNode>> StandardIndex::FindPipeLayers(int type,
                                                                           LPCTSTR layerName) const {
    std::vector<Found<LayerNode>> firsts;
    ForEachAt({Table::layerByType, pipeTypes[type], TextOf(layerName)}, [&](const Entry& one) {
        if (firsts.empty() || firsts.back().group != one.unit->group)
            firsts.push_back({one.layer, one.unit->group});
        return false;
    });
    return firsts;
}

StandardIndex::Found<PipeNode> StandardIndex::FindSystem(LPCTSTR name) const {
    const Entry* const first = FirstAt({Table::system, TextOf(name), {}});
    return first != nullptr ? Found<PipeNode>{first->unit->system, first->unit->group} : Found<PipeNode>{};
}

const PipeNode* StandardIndex::FindSystem(const PipeGroupNode* group, LPCTSTR name) const {
    const PipeNode* system = nullptr;
    ForEachAt({Table::systemNoCase, TextOf(name), {}}, [&](const Entry& one) {
        if (one.unit->group == group)
            system = one.unit->system;
        return system != nullptr;
    });
    return system;
}

const PipeNode* StandardIndex::FindSystemByInitialName(LPCTSTR name) const {
    return SystemAt({Table::initialName, TextOf(name), {}});
}

const PipeNode* StandardIndex::FindSystemByLayerName(LPCTSTR layerName) const {
    return SystemAt({Table::systemByLayerName, TextOf(layerName), {}});
}

const LayerNode* StandardIndex::FindOtherLayer(LPCTSTR layerType, LPCTSTR layerKey) const {
    return LayerAt({Table::otherLayer, TextOf(layerKey), TextOf(layerType)});
}

const LayerNode* StandardIndex::FindOtherLayerByName(LPCTSTR layerName) const {
    return LayerAt({Table::otherLayerByName, TextOf(layerName), {}});
}

void StandardIndex::GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const {
    const LayerNode* last = nullptr; // a layer may name a set twice
    const auto isNew = [&](const Entry& one) { return std::exchange(last, one.layer) != one.layer; };
    ForEachAt({Table::attached, TextOf(attachName), {}}, [&](const Entry& one) {
        if (isNew(one))
            set.AddPipeSystemLayerNode(*one.layer);
        return false;
    });
    ForEachAt({Table::otherAttached, TextOf(attachName), {}}, [&](const Entry& one) {
        if (isNew(one))
            set.AddNonPipeSystemLayerNode(*one.layer);
        return false;
    });
}

// ---- lists that are short in every standard

const PipeGroupNode* StandardIndex::FindGroup(LPCTSTR name) const {
    const auto found = std::ranges::find_if(
        m_standard->m_groups, [&](const auto& group) { return ViewOf(group->GroupName()) == TextOf(name); });
    return found != m_standard->m_groups.end() ? found->get() : nullptr;
}

const PipeGroupNode* StandardIndex::FindGroupNoCase(LPCTSTR name) const {
    const auto found = std::ranges::find_if(m_standard->m_groups, [&](const auto& group) {
        return IsSameName(ViewOf(group->GroupName()), TextOf(name));
    });
    return found != m_standard->m_groups.end() ? found->get() : nullptr;
}

const TextStyleNode* StandardIndex::FindTextStyleByKey(LPCTSTR key) const {
    const auto found = std::ranges::find_if(m_standard->m_textStyles, [&](const TextStyleNode& style) {
        return ViewOf(style.m_key) == TextOf(key);
    });
    return found != m_standard->m_textStyles.end() ? &*found : nullptr;
}

const TextStyleNode* StandardIndex::FindTextStyleByName(LPCTSTR name) const {
    const auto found = std::ranges::find_if(m_standard->m_textStyles, [&](const TextStyleNode& style) {
        return ViewOf(style.m_name) == TextOf(name);
    });
    return found != m_standard->m_textStyles.end() ? &*found : nullptr;
}
