// Copies what is on some layers inside of references and blocks into the current drawing, as it is seen
// there.
#pragma once

#include "afx.h"
#include "dbcolor.h"
#include "dbid.h"
#include "dbidar.h"
#include "gemat3d.h"
#include "module/layertools/ReferenceClip.h"

#include <map>
#include <set>
#include <vector>

class AcDbBlockReference;
class AcDbEntity;
class AcDbLine;
class AcDbText;

// What a reference gives to the entities in it: its layer where theirs is 0, and what is ByBlock.
struct ReferenceContext {
    CString m_reference;  // the block of the innermost external reference around; empty in this drawing's own
    AcDbObjectId m_layer; // of this drawing, by which the reference is seen
    AcCmColor m_color;
    AcDb::LineWeight m_lineWeight = AcDb::kLnWtByLayer;
    AcDbObjectId m_linetype; // also of another drawing; null for Continuous
    AcGeMatrix3d m_placing;
    std::vector<CReferenceClip> m_clips; // of all references around
};

class CLayerExtract {
public:
    // The references in this drawing to look through.
    explicit CLayerExtract(const std::vector<AcDbObjectId>& references);

    // Layers of this drawing ("plan|墙" for those of a reference) on which something is seen there, and how
    // much.
    const std::map<AcDbObjectId, int>& GetFound() const { return m_found; }
    // The layer of this drawing by which a layer is seen that a reference of this block has; "" for none.
    static AcDbObjectId GetSeenLayer(const CString& reference, const CString& layer);

    // Puts copies of what is on the layers beside the references; with `namesReference` layers of external
    // references become "reference$0$name", else "name". Attributes of blocks that do not come as a whole,
    // and constant ones, become texts. References and blocks stay as they are.
    void Run(const std::set<AcDbObjectId>& layers, bool namesReference);

    // After Run: how many came, how many could not, how many came whole although a clip shows less of them
    // (lines are cut), and the layers that they are on.
    int GetCopied() const { return m_copied; }
    int GetLeft() const { return m_left; }
    int GetUncut() const { return m_uncut; }
    int GetLayerCount() const { return static_cast<int>(m_targets.size()); }

private:
    enum class Act { Count, Copy };

    void Walk(Act act);
    void WalkReference(const AcDbBlockReference& reference, const ReferenceContext& outer, int depth);
    void WalkPlaced(AcDbObjectId definition, const ReferenceContext& context, int depth);
    bool IsWholeChosen(AcDbObjectId definition, const ReferenceContext& context, int depth);
    void CopyAll(const AcDbObjectIdArray& entities, const ReferenceContext& context);
    void LookAtAttributes(const AcDbBlockReference& reference, const ReferenceContext& outer);
    AcDbObjectId CopyOwn(AcDbObjectId entity);
    void CopyText(const AcDbText& text, const ReferenceContext& context);
    bool CutLine(AcDbLine& line, const ReferenceContext& context);
    void Settle(AcDbObjectId original, AcDbObjectId copy, const ReferenceContext& context);
    AcDbObjectId TargetLayer(AcDbObjectId seen);
    void UnlockFor(AcDbObjectId entity);

    std::vector<AcDbObjectId> m_references;
    std::map<AcDbObjectId, int> m_found;
    Act m_act = Act::Count;
    std::set<AcDbObjectId> m_layers;
    bool m_namesReference = false;
    AcDbObjectId m_byBlock; // linetypes of this drawing
    AcDbObjectId m_continuous;
    AcDbObjectId m_space;                           // that the reference stands in
    std::map<AcDbObjectId, AcDbObjectId> m_targets; // by the layer that is seen
    std::set<AcDbObjectId> m_known;                 // layers that were there before
    std::set<CString> m_knownBlocks;                // names in small letters, of such blocks
    std::set<AcDbObjectId> m_unlocked;              // for the time of the work
    std::map<std::pair<AcDbObjectId, AcDbObjectId>, bool>
        m_wholes; // by definition and layer of the reference
    int m_copied = 0;
    int m_left = 0;
    int m_uncut = 0;
};
