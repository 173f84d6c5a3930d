// A group of pipe systems, in the order in which users see them.
#pragma once

#include "module/standard/PipeNode.h"

// A flat copy of a group for callers.
struct PipeClassificationNode {
    CString m_groupName;
    std::vector<PipeInfoNode> m_systems;
};

class ZEF_PIPESYSTEM_PORT PipeGroupNode {
public:
    explicit PipeGroupNode(LPCTSTR groupName = L"", bool canRename = false);
    PipeGroupNode(const PipeGroupNode&) = delete;
    PipeGroupNode& operator=(const PipeGroupNode&) = delete;
    ~PipeGroupNode();

    const CString& GroupName() const { return m_groupName; }
    void SetGroupName(LPCTSTR name) { m_groupName = name; }
    bool CanRename() const { return m_canRename; }
    void SetCanRename(bool canRename) { m_canRename = canRename; }

    // ---- systems

    bool IsEmpty() const { return m_systems.empty(); }
    int GetSystemNum() const { return static_cast<int>(m_systems.size()); }
    // The place of a system of exactly that name, -1 when there is none.
    int GetSystemIndex(LPCTSTR name) const;
    // False when there is no system at that place.
    bool GetSystemInfo(int index, PipeBasicNode& info) const;
    void GetAllPipeSystemNames(std::vector<CString>& names) const;
    const std::vector<Owned<PipeNode>>& Systems() const { return m_systems; }
    std::span<Owned<PipeNode>> Systems() { return m_systems; }

    // Adds a system at the end; of two of one name the look-up by name keeps the first. Takes it over; null
    // is passed over.
    void AddPipeSystem(PipeNode* system);
    // Destroys the system of exactly that name with its layers. False when there is none.
    bool DeletePipeSystem(LPCTSTR name);

    // By exact name; by place; null when there is none. With a group's name: only when it is this group's.
    const PipeNode* FindPipeSystem(LPCTSTR name) const;
    PipeNode* FindPipeSystem(LPCTSTR name) { return Changeable(std::as_const(*this).FindPipeSystem(name)); }
    const PipeNode* FindPipeSystem(int index) const;
    PipeNode* FindPipeSystem(int index) { return Changeable(std::as_const(*this).FindPipeSystem(index)); }
    const PipeNode* FindPipeSystem(LPCTSTR groupName, LPCTSTR name) const;
    PipeNode* FindPipeSystem(LPCTSTR groupName, LPCTSTR name) {
        return Changeable(std::as_const(*this).FindPipeSystem(groupName, name));
    }
    // The first one with a layer of that name without case.
    const PipeNode* FindPipeSystemByLayerName(LPCTSTR layerName) const;
    PipeNode* FindPipeSystemByLayerName(LPCTSTR layerName) {
        return Changeable(std::as_const(*this).FindPipeSystemByLayerName(layerName));
    }
    bool IsIncludedSystem(LPCTSTR name) const { return FindPipeSystem(name) != nullptr; }

    // Give a system of exactly the old name another one; its layers' keys follow, of the second form also
    // those that differ in case. False when there is none. Whether the new name is taken is the caller's
    // affair.
    bool RenamePipeSystem(LPCTSTR oldName, LPCTSTR newName);
    bool RenameSystemName(LPCTSTR oldName, LPCTSTR newName);
    // Moves the system of exactly that name by one place. `found` becomes true when there is one; false at
    // the group's ends too.
    bool MovePipeSystem(LPCTSTR name, bool up, bool& found);

    // The current name of the first system whose initial name is exactly the old one. False when there is
    // none.
    bool OldSystemNameToCurrentName(LPCTSTR oldName, CString& currentName) const;
    // Brings the layer keys that still have a system's initial name to its current one; those that have their
    // own system's name stay.
    void ConvertOldSysNameToCurrentName();

    void GetPipeGroupInfo(PipeClassificationNode& info, bool includeMapped = true) const;

    // ---- layers; layer names are compared without case

    // The layer of a type in the first system of that name, both without case; null when there is none.
    const LayerNode* FindLayerNode(LPCTSTR systemName, LPCTSTR layerType) const;
    LayerNode* FindLayerNode(LPCTSTR systemName, LPCTSTR layerType) {
        return Changeable(std::as_const(*this).FindLayerNode(systemName, layerType));
    }
    const LayerNode* FindLayerNode(int index, LPCTSTR layerType) const;
    LayerNode* FindLayerNode(int index, LPCTSTR layerType) {
        return Changeable(std::as_const(*this).FindLayerNode(index, layerType));
    }
    // The first layer of that name: systems in list order, their layer types in key order.
    const LayerNode* FindLayerNode(LPCTSTR layerName) const;
    LayerNode* FindLayerNode(LPCTSTR layerName) {
        return Changeable(std::as_const(*this).FindLayerNode(layerName));
    }
    // The first layer of that type, and of that name, both without case: systems in list order, in each its
    // layers in list order, then aliases.
    const LayerNode* FindLayerNodeByLayerType(LPCTSTR layerType) const;
    LayerNode* FindLayerNodeByLayerType(LPCTSTR layerType) {
        return Changeable(std::as_const(*this).FindLayerNodeByLayerType(layerType));
    }
    const LayerNode* FindLayerNodeByLayerType(LPCTSTR layerType, LPCTSTR layerName) const;
    LayerNode* FindLayerNodeByLayerType(LPCTSTR layerType, LPCTSTR layerName) {
        return Changeable(std::as_const(*this).FindLayerNodeByLayerType(layerType, layerName));
    }

    void GetAllLayer(LayerSet::LayersByName& layers) const;
    void GetAllLayerName(std::vector<CString>& names) const;
    void GetAllLayerName(LPCTSTR layerType, std::vector<CString>& names) const;
    void GetLayerTypes(std::set<CString, KeyOrder>& types) const;
    int CountLayer(LPCTSTR layerName) const;
    // False when a system of another name, without case, has a layer of that name.
    bool CanRenameLayerName(LPCTSTR systemName, LPCTSTR layerName) const;

    // The name of the layer of a type, aliases only when asked for, in the first system of that name; with a
    // layer name only when the system has such a layer. `found` and the answer say whether there is one;
    // without one `result` stays.
    bool GetLayerNameByLayerTypeLayerName(LPCTSTR systemName, LPCTSTR layerType, LPCTSTR layerName,
                                          CString& result, bool includeMapped, bool& found) const;
    void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set) const;

    // Puts a value in the place of the named system's layer of the value's type. False when there is none.
    bool UpdateLayer(LPCTSTR systemName, const LayerNode& value);
    // Puts the layers of this group's systems in the place of those of the systems of the same names.
    void UpdateLayerTo(PipeGroupNode* target) const;

    // The working drawing's layers: that of the first definition of a name (null when there is none), or all
    // of the group's, added by name. One that is missing is made, one that is there stays as it is.
    AcDbObjectId CreateLayer(LPCTSTR layerName) const;
    void InitLayers(PipeNode::LayerIds& ids) const;

    void CopyFrom(const PipeGroupNode* other);

private:
    bool Rename(LPCTSTR oldName, LPCTSTR newName, bool layersWithoutCase);
    void IndexNames();

    CString m_groupName;
    bool m_canRename = false;
    std::vector<Owned<PipeNode>> m_systems;
    std::map<CString, Linked<PipeNode>, KeyOrder> m_byName; // into the list
};
