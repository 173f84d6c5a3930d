// Puts everything that is on some layers of the current drawing on another one, and takes the layers out.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "module/layertools/StayedEntities.h"

#include <map>
#include <set>
#include <vector>

class AcDbEntity;

// What lies on a layer that is to be merged.
struct LayerContent {
    int m_count = 0;
    std::map<CString, int> m_kinds;  // by type, as drawing files name it
    std::map<CString, int> m_blocks; // of these in definitions of blocks, by the block's name
};

class CLayerMerge {
public:
    // Looks through the drawing: model space and sheets, definitions of blocks, attributes and vertices.
    // Sources must not be the target, the current layer, layer 0 or of references.
    CLayerMerge(std::vector<AcDbObjectId> sources, AcDbObjectId target);

    const std::vector<AcDbObjectId>& GetSources() const { return m_sources; }
    const LayerContent& GetContent(AcDbObjectId source) const { return m_content.at(source); }

    // Unlocks the sources; moves what was found, with the labels and arrows of pipes; thaws the sources in
    // viewports; puts the target in the place of sources in groups and states of layers and in extended data;
    // erases the sources. The drawing is locked for writing.
    void Run();

    // After Run: how many entities were moved, what stayed, which layers are gone and which are still used.
    int GetMoved() const { return m_moved; }
    const CStayedEntities& GetStayed() const { return m_stayed; }
    int GetErased() const { return m_erased; }
    const std::vector<AcDbObjectId>& GetLeft() const { return m_left; }

private:
    bool IsSource(AcDbObjectId layer) const { return m_set.contains(layer); }
    void FindInSpaces();
    void FindInBlocks();
    void Look(AcDbObjectId entity, const CString& block);
    void Count(AcDbObjectId layer, const CString& type, const CString& block, int count);

    void Move(AcDbObjectId entity);
    void MoveWithParts(AcDbObjectId entity);
    void MoveLayersOfPipes();
    void ThawInViewports();
    void FollowInDictionary(AcDbObjectId dictionary);
    void FollowInRecord(AcDbObjectId record);
    void FollowInExtendedData();
    void EraseSources();

    std::vector<AcDbObjectId> m_sources;
    std::set<AcDbObjectId> m_set; // the same
    AcDbObjectId m_target;
    std::map<AcDbObjectId, LayerContent> m_content;
    std::vector<AcDbObjectId> m_entities; // on a source, without parts
    std::vector<AcDbObjectId> m_holders;  // with parts, of which they or a part is on a source
    int m_moved = 0;
    CStayedEntities m_stayed;
    int m_erased = 0;
    std::vector<AcDbObjectId> m_left;
};
