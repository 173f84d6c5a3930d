// The pipe systems that the layer control bar lists, in its order.
#pragma once

#include "afx.h"

#include <vector>

struct BarSystem {
    CString m_rowName; // on the bar: "给水管线2"
    CString m_system;  // "给水2"
};

// The built-in rows, the first eight of the user's own systems, then what else the current standard has, in
// its order. A built-in row stands for the system of that name without "管线", else for the one that had it
// at first and was renamed; it is there also when the standard has none.
std::vector<BarSystem> GetBarSystems();
