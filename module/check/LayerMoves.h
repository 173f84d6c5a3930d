// Gives layers of the current drawing other names: what lies on them, and all that names them, follows. Where
// a name is taken, or several get one, they are merged.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "module/layertools/StayedEntities.h"

#include <vector>

struct LayerMove {
    AcDbObjectId m_layer;
    CString m_name;
};

class CLayerMoves {
public:
    // What will be done, of what was asked for in its order.
    struct Step {
        AcDbObjectId m_layer;
        CString m_from;
        CString m_to;
        bool m_isMerged = false;
        CString m_obstacle; // why nothing is done; empty for most
    };
    // A layer that has its name already is left out.
    explicit CLayerMoves(const std::vector<LayerMove>& moves);
    const std::vector<Step>& GetSteps() const { return m_steps; }

    // Does it. What was the current layer stays current under its new name. The drawing is locked for
    // writing.
    void Run();

    // After Run: how many layers were renamed and merged, and what stayed.
    int GetRenamed() const { return m_renamed; }
    int GetMerged() const { return m_merged; }
    const CStayedEntities& GetStayed() const { return m_stayed; }

private:
    void Rename();
    void Merge();

    std::vector<Step> m_steps;
    int m_renamed = 0;
    int m_merged = 0;
    CStayedEntities m_stayed;
};
