// Look-ups in a whole standard, each in constant time, with the same answers as a walk through the records:
// groups in their order, the first hit wins.
//
// The index looks on the records: it is good until one of them, or a name in it, changes.
#pragma once

#include "module/standard/PipeStandard.h"

#include <cstdint>
#include <span>
#include <unordered_map>

class StandardIndex {
public:
    explicit StandardIndex(const PipeStandard& standard);

    // What is found in a group: the record, and the group.
    template<class Record>
    struct Found {
        Record* record = nullptr;
        PipeGroupNode* group = nullptr;
        explicit operator bool() const { return record != nullptr; }
    };

    // The layer of a type in a system, both without case.
    LayerNode* FindLayer(LPCTSTR system, LPCTSTR layerType) const;
    // The first layer of a name, systems in list order and layer types in key order.
    Found<LayerNode> FindLayerByName(LPCTSTR layerName) const;
    // The first layer of a type and a name, layers in list order and then aliases; in all groups or in one.
    LayerNode* FindLayerByType(LPCTSTR layerType, LPCTSTR layerName) const;
    LayerNode* FindLayerByType(const PipeGroupNode* group, LPCTSTR layerType, LPCTSTR layerName) const;

    // The first pipe, riser or bend layer of a name, an earlier group before an earlier type; `type` becomes
    // the place of its type among pipeTypes. All of one of those types, the first of each group.
    static constexpr const wchar_t* pipeTypes[] = {L"管线", L"立管", L"扣弯"};
    LayerNode* FindPipeLayer(LPCTSTR layerName, int& type) const;
    std::span<const Found<LayerNode>> FindPipeLayers(int type, LPCTSTR layerName) const;

    // By exact name; by the initial name; by the name of one of its layers.
    Found<PipeNode> FindSystem(LPCTSTR name) const;
    // The first one of a group, without case.
    PipeNode* FindSystem(const PipeGroupNode* group, LPCTSTR name) const;
    PipeNode* FindSystemByInitialName(LPCTSTR name) const;
    PipeNode* FindSystemByLayerName(LPCTSTR layerName) const;

    // By exact name, and without case.
    PipeGroupNode* FindGroup(LPCTSTR name) const;
    PipeGroupNode* FindGroupNoCase(LPCTSTR name) const;

    // Of other layers: the layer of a key, without case, in a group of that type; the first of a name.
    LayerNode* FindOtherLayer(LPCTSTR layerType, LPCTSTR layerKey) const;
    LayerNode* FindOtherLayerByName(LPCTSTR layerName) const;

    // The layers that belong to an attachment set of exactly that name.
    void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const;

    // By exact key and name.
    const TextStyleNode* FindTextStyleByKey(LPCTSTR key) const;
    const TextStyleNode* FindTextStyleByName(LPCTSTR name) const;

private:
    struct Key {
        std::wstring_view first;
        std::wstring_view second;
        const void* scope = nullptr;
    };
    struct ExactHash {
        std::size_t operator()(const Key& key) const;
    };
    struct NoCaseHash {
        std::size_t operator()(const Key& key) const;
    };
    struct Exact {
        bool operator()(const Key& a, const Key& b) const;
    };
    struct NoCase {
        bool operator()(const Key& a, const Key& b) const;
    };
    template<class Value>
    using ExactTable = std::unordered_map<Key, Value, ExactHash, Exact>;
    template<class Value>
    using NoCaseTable = std::unordered_map<Key, Value, NoCaseHash, NoCase>;
    struct PipeLayer {
        LayerNode* layer = nullptr;
        int type = 0;
    };
    struct Attached {
        std::vector<const LayerNode*> pipeLayers;
        std::vector<const LayerNode*> otherLayers;
    };

    void AddGroup(PipeGroupNode& group);
    void AddOtherLayers(const OtherLayerNode& group);

    NoCaseTable<LayerNode*> m_layers;
    NoCaseTable<Found<LayerNode>> m_layersByName;
    NoCaseTable<LayerNode*> m_layersByType; // of one group, and of all with no scope
    NoCaseTable<PipeLayer> m_pipeLayers;
    NoCaseTable<std::vector<Found<LayerNode>>> m_pipeLayersByType;
    ExactTable<Found<PipeNode>> m_systems;
    NoCaseTable<PipeNode*> m_systemsOfGroups;
    ExactTable<PipeNode*> m_systemsByInitialName;
    NoCaseTable<PipeNode*> m_systemsByLayerName;
    ExactTable<PipeGroupNode*> m_groups;
    NoCaseTable<PipeGroupNode*> m_groupsNoCase;
    NoCaseTable<LayerNode*> m_otherLayers;
    NoCaseTable<LayerNode*> m_otherLayersByName;
    ExactTable<Attached> m_attached;
    ExactTable<const TextStyleNode*> m_stylesByKey;
    ExactTable<const TextStyleNode*> m_stylesByName;
};
