// Labels pipes through the module as a drafter wants it: labelling again never loses the nominal diameter.
#pragma once

#include "afx.h"
#include "dbid.h"

struct TLabelOrder {
    CString m_style = L"自动";
    int m_dn = 0;          // 0: the pipe's own
    double m_height = 3.5; // mm on paper, or of the model where the drawing's sizes are absolute
    bool m_otherSide = false;
    bool m_force = false; // labels that are there are placed anew
};

// The order of this session's last labelling, for the next one.
TLabelOrder& LastLabelOrder();

enum LabellingEnum { kLabelled, kTooShort, kRiserLabelled, kNotLabelled };

// Labels one pipe. Labels by outer diameters put these in the place of the nominal one; it is kept on the
// pipe as "PIPE_NOMINAL" and handed on by the next labelling, unless the diameter was changed meanwhile. A
// riser gets its diameter, which texts about it follow. kNotLabelled for what is no pipe or can not be
// changed, kTooShort where the label is there but not drawn.
LabellingEnum LabelPipe(AcDbObjectId id, const TLabelOrder& order);
