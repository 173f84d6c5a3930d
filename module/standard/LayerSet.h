// Layers under keys, and keys that are aliases of others: what pipe systems and groups of other layers have
// in common. The keys of a pipe system are its layer types, those of other layers their layer keys.
#pragma once

#include "module/standard/LayerAttachNode.h"
#include "module/standard/Owned.h"

#include <memory>
#include <span>

class ZEF_PIPESYSTEM_PORT LayerSet {
public:
    using Map = std::map<CString, CString, KeyOrder>; // from a key to the one whose layer it shares
    using Index = std::map<CString, Linked<LayerNode>, KeyOrder>;
    // By name without case; of layers of one name the first.
    using LayersByName = std::map<CString, const LayerNode*, NoCaseOrder>;

    LayerSet(const LayerSet&) = delete;
    LayerSet& operator=(const LayerSet&) = delete;

    // Adds a layer at the end and under its key, where it takes the place of an earlier one; a key that gets
    // a layer of its own is no alias any more. Takes it over; null is passed over.
    void AddLayerNode(LayerNode* layer);
    // Destroys a layer, with the aliases of it. Another one is passed over.
    void DelLayerNode(const LayerNode* layer);

    int GetLayerNum() const { return static_cast<int>(m_layers.size()); }

    // By position; null when there is none.
    const LayerNode* FindLayerNode(int index) const;
    LayerNode* FindLayerNode(int index) { return Changeable(std::as_const(*this).FindLayerNode(index)); }
    // The first key, in their order, that is equal without case; aliases count only when they are asked for.
    const LayerNode* FindLayerNode(LPCTSTR key, bool includeMapped) const;
    LayerNode* FindLayerNode(LPCTSTR key, bool includeMapped) {
        return Changeable(std::as_const(*this).FindLayerNode(key, includeMapped));
    }
    // The layer of exactly that key when it has that name without case.
    const LayerNode* FindLayerNode(LPCTSTR key, LPCTSTR layerName, bool includeMapped) const;
    LayerNode* FindLayerNode(LPCTSTR key, LPCTSTR layerName, bool includeMapped) {
        return Changeable(std::as_const(*this).FindLayerNode(key, layerName, includeMapped));
    }
    // The first layer in list order of that name without case. Aliases are no layers of their own: the flag
    // tells nothing.
    const LayerNode* FindLayerNodeByLayerName(LPCTSTR layerName, bool includeMapped = true) const;
    LayerNode* FindLayerNodeByLayerName(LPCTSTR layerName, bool includeMapped = true) {
        return Changeable(std::as_const(*this).FindLayerNodeByLayerName(layerName, includeMapped));
    }
    // The first layer of that key without case, and of that name when it is not null: layers in list order,
    // then aliases in key order.
    const LayerNode* FindLayerNodeByKey(LPCTSTR key, LPCTSTR layerName = nullptr) const;
    LayerNode* FindLayerNodeByKey(LPCTSTR key, LPCTSTR layerName = nullptr) {
        return Changeable(std::as_const(*this).FindLayerNodeByKey(key, layerName));
    }

    // Add what is not there yet, in list order.
    void GetAllLayer(LayersByName& layers) const;
    // Append the names in list order; of one key: of its layers, and of what it is an alias of.
    void GetAllLayerName(std::vector<CString>& names) const;
    void GetAllLayerName(LPCTSTR key, std::vector<CString>& names) const;
    // How many layers have that name without case.
    int CountLayer(LPCTSTR layerName) const;

    // Puts a value in the place of the layer of exactly that key, else of the first one without case; its key
    // stays. False when there is none.
    bool UpdateLayer(LPCTSTR key, const LayerNode& value);
    // Puts copies of all layers in the place of those of exactly the same keys in another set; adds those it
    // lacks.
    void UpdateLayerTo(LayerSet* target) const;

    // From now on a key shares the layer of another one, and by the built-in mapping, too, when asked for.
    // The map counts from UpdateLayerTypeMap on.
    void AddMapping(LPCTSTR source, LPCTSTR destination, bool isDefault = false);
    // The same in the built-in mapping alone.
    void AddDefaultMapping(LPCTSTR source, LPCTSTR destination) { m_defaultMap[source] = destination; }
    // Ends the mapping of a key: one that was an alias has no layer then. False when there is none.
    bool RemoveMapping(LPCTSTR source);
    // Whether the map and the built-in one both have the key, and the same destination for it.
    bool IsDefaultMapping(LPCTSTR key) const;
    // Makes every key of the map that has no layer of its own, and whose destination has one, an alias.
    void UpdateLayerTypeMap();
    // The same with the map of another set.
    void UpdateLayerTypeMap(const LayerSet* from);

    const std::vector<Owned<LayerNode>>& Layers() const { return m_layers; }
    std::span<Owned<LayerNode>> Layers() { return m_layers; }
    const Index& LayerIndex() const { return m_index; }
    const Map& LayerTypeMap() const { return m_map; }
    bool IsMapped(const CString& key) const { return m_mapped.contains(key); }

protected:
    using KeyField = CString LayerNode::*;
    explicit LayerSet(KeyField key) : m_key(key) {}
    ~LayerSet() = default;

    void CopyLayersFrom(const LayerSet& other);
    void GatherAttached(LPCTSTR attachName, std::vector<LayerNode>& layers) const;

private:
    const LayerNode* FindExactly(const CString& key) const;
    void Replace(LayerNode& layer, const LayerNode& value) const;

    KeyField m_key;
    std::vector<Owned<LayerNode>> m_layers;
    Index m_index; // into the list; aliases too
    Map m_map;
    Map m_defaultMap;
    std::set<CString, KeyOrder> m_mapped; // the keys that are aliases
};
