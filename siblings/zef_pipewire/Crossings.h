// Where a pipe that is drawn crosses those of the current space in the plan: one of the two passes over the
// other, whose centre line then has a gap.
//
// The higher one passes over. Of two at the same height the one that is drawn later does, as what is drawn
// later lies on top; pipes of one system at the same height meet there, and neither has a gap. Risers cross
// nothing.
#pragma once

#include "afx.h"
#include "dbidar.h"
#include "gepnt3d.h"
#include "siblings/zef_pipewire/PipewirePort.h"

#include <vector>

class TDbPipe;

class ZEF_PIPEWIRE_PORT CCrossings {
public:
    // With the pipes that there are.
    CCrossings();

    // Tells a pipe that is to be drawn of those that pass over it.
    void GoUnder(TDbPipe& pipe) const;
    // Tells those that a pipe passes over of it, which is in the drawing now, and keeps it for further ones.
    // How many could not be told: their layers are locked.
    int GoOver(AcDbObjectId pipe);

private:
    struct Line {
        AcDbObjectId m_id;
        AcGePoint3d m_start;
        AcGePoint3d m_end;
        CString m_system;
    };
    static Line LineOf(const TDbPipe& pipe);
    static bool PassesOver(const Line& line, const Line& other, bool isLater);

    std::vector<Line> m_lines; // of all that do not stand upright
};
