// Look-ups in a whole standard, each in constant time, with the same answers as a walk through the records:
// groups in their order, the first hit wins.
//
// The index looks on the records and owns the texts that it looks for. When something changed, Follow brings
// it up to date: it compares what a record says now with what it said, and so costs no more than the record.
#pragma once

#include "module/standard/PipeStandard.h"

#include <cstdint>
#include <string>
#include <unordered_map>

class StandardIndex {
public:
    explicit StandardIndex(const PipeStandard& standard);
    StandardIndex(const StandardIndex&) = delete;
    StandardIndex& operator=(const StandardIndex&) = delete;

    // ---- after changes

    // Everything may have changed.
    void Follow();
    // A group and its systems, one system, a group of other layers; one that is not there any more is passed
    // over, as long as the group that had it, or everything, was followed before. A group of other layers may
    // be new, behind those that the index has.
    void Follow(const PipeGroupNode* group);
    void Follow(const PipeNode* system);
    void Follow(const OtherLayerNode* group);

    // ---- look-ups

    // What is found in a group: the record, and the group.
    template<class Record>
    struct Found {
        const Record* record = nullptr;
        const PipeGroupNode* group = nullptr;
        explicit operator bool() const { return record != nullptr; }
    };

    // The layer of a type in a system, both without case.
    const LayerNode* FindLayer(LPCTSTR system, LPCTSTR layerType) const;
    // The same; else, in a group of other layers of that type, the layer whose key is the system's name.
    const LayerNode* FindDefinition(LPCTSTR system, LPCTSTR layerType) const;
    // The first layer of a name, systems in list order and layer types in key order.
    Found<LayerNode> FindLayerByName(LPCTSTR layerName) const;
    // The first layer of a type and a name, layers in list order and then aliases; in all groups or in one.
    const LayerNode* FindLayerByType(LPCTSTR layerType, LPCTSTR layerName) const;
    const LayerNode* FindLayerByType(const PipeGroupNode* group, LPCTSTR layerType, LPCTSTR layerName) const;

    // The first pipe, riser or bend layer of a name, an earlier group before an earlier type; `type` becomes
    // the place of its type among pipeTypes. All of one of those types, the first of each group.
    static constexpr const wchar_t* pipeTypes[] = {L"管线", L"立管", L"扣弯"};
    const LayerNode* FindPipeLayer(LPCTSTR layerName, int& type) const;
    std::vector<Found<LayerNode>> FindPipeLayers(int type, LPCTSTR layerName) const;

    // By exact name; by the initial name; by the name of one of its layers.
    Found<PipeNode> FindSystem(LPCTSTR name) const;
    // The first one of a group, without case.
    const PipeNode* FindSystem(const PipeGroupNode* group, LPCTSTR name) const;
    const PipeNode* FindSystemByInitialName(LPCTSTR name) const;
    const PipeNode* FindSystemByLayerName(LPCTSTR layerName) const;

    // By exact name, and without case.
    const PipeGroupNode* FindGroup(LPCTSTR name) const;
    const PipeGroupNode* FindGroupNoCase(LPCTSTR name) const;

    // Of other layers: the layer of a key, without case, in a group of that type; the first of a name.
    const LayerNode* FindOtherLayer(LPCTSTR layerType, LPCTSTR layerKey) const;
    const LayerNode* FindOtherLayerByName(LPCTSTR layerName) const;

    // The layers that belong to an attachment set of exactly that name, each once.
    void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const;

    // By exact key and name.
    const TextStyleNode* FindTextStyleByKey(LPCTSTR key) const;
    const TextStyleNode* FindTextStyleByName(LPCTSTR name) const;

private:
    // What is looked for.
    enum class Table : std::uint8_t {
        // exact
        system,
        initialName,
        attached,
        otherAttached,
        // without case
        systemNoCase,
        layer, // by system and type
        layerByName,
        layerByType,
        pipeLayer,
        systemByLayerName,
        otherLayer,
        otherLayerByName,
    };
    struct View {
        Table table = {};
        std::wstring_view first;
        std::wstring_view second;
    };
    struct Key {
        explicit Key(const View& view);
        operator View() const;
        Table table;
        std::wstring text; // both, one behind the other
        std::size_t firstLength;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const View& key) const;
    };
    struct Same {
        using is_transparent = void;
        bool operator()(const View& a, const View& b) const;
    };

    struct Unit;
    // What stands under a key, in the order of the standard.
    struct Entry {
        const Unit* unit = nullptr;
        std::uint32_t place = 0;          // among those of the unit
        std::uint32_t type = 0;           // of a pipe layer
        const LayerNode* layer = nullptr; // none for a system
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    struct Bucket {
        Entry first; // most keys have one entry
        std::vector<Entry> others;
        std::uint32_t sortedAt = 0;
    };
    using Entries = std::unordered_map<Key, Bucket, Hash, Same>;

    // A system or a group of other layers, and what it has put into the buckets.
    struct Unit {
        const PipeGroupNode* group = nullptr;
        const PipeNode* system = nullptr;
        std::uint32_t groupPlace = 0;
        std::uint32_t place = 0; // in the group
        std::uint32_t stamp = 0; // of the last walk that met it
        std::vector<std::pair<Entries::value_type*, Entry>> made;
        // Whether a system before it in its group has its name without case, as of that order.
        mutable bool isShadowed = false;
        mutable std::uint32_t shadowedAt = 0;
    };
    class Comparison;

    static bool IsBefore(const Entry& a, const Entry& b);
    static void Describe(const PipeNode& system, Comparison& to);
    static void Describe(const OtherLayerNode& group, Comparison& to);
    template<class Record>
    void Bring(Unit& unit, const Record& record);
    template<class Records>
    void FollowList(const PipeGroupNode* group, std::uint32_t groupPlace, const Records& records);
    void FollowNewOtherLayers();
    void Drop(const void* record);

    // The first entry of a key, and, until a function says true, all of them in their order.
    const Entry* FirstAt(const View& key) const;
    template<class Take>
    void ForEachAt(const View& key, Take take) const;
    const Bucket* BucketAt(const View& key) const;
    bool IsShadowed(const Unit& unit) const;
    const LayerNode* LayerAt(const View& key) const;
    const PipeNode* SystemAt(const View& key) const;

    const PipeStandard* m_standard;
    mutable Entries m_entries; // sorted when they are asked for
    std::unordered_map<const void*, Unit> m_units;
    // The records of each group in their order, of other layers under null; the groups in theirs.
    std::unordered_map<const PipeGroupNode*, std::vector<const void*>> m_lists;
    std::vector<const PipeGroupNode*> m_groups;
    std::uint32_t m_order = 1; // another number when places, or names of systems, changed
    std::uint32_t m_stamp = 0;
};
