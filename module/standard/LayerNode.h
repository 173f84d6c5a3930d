// One layer definition of the standard: of one layer type of a pipe system, or of a group of other layers.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"
#include "dbcolor.h"
#include "dbid.h"

#include <map>
#include <set>
#include <vector>

struct LayerNode {
    CString m_oldKey;    // the layer type's key in older standards
    CString m_layerType; // "管线", "立管", ...; of another layer the name of its group
    CString m_layerKey;  // the name of its system; of another layer its key in the group
    CString m_layerName; // of the drawing's layer
    AcCmColor m_color;
    CString m_linetype;
    int m_lineWeight = -3; // as the drawing database has it, see LineWeightText.h
    CString m_remark;
    bool m_canDelete = false; // by the user
    bool m_canPlot = true;
    std::vector<CString> m_attachments; // the attachment sets that it belongs to

    // Whether an attachment set of exactly that name is among them.
    ZEF_PIPESYSTEM_PORT bool IsContainLayerAttach(LPCTSTR name) const;

    // The working drawing's layer of that name, which is made when it is missing; one that is there stays as
    // it is. A linetype that nobody knows gives a continuous one. `created` becomes true when a layer was
    // made, and else stays. Null when the drawing does not take the layer.
    ZEF_PIPESYSTEM_PORT AcDbObjectId CreateLayer(bool* created = nullptr) const;

    friend bool operator==(const LayerNode&, const LayerNode&) = default;
};
