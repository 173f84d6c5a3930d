// An arrangement of a pipe's label.
#pragma once

#include "afx.h"

#include <vector>

struct PipeDimElement {
    int m_type = 0; // siblings/zef_pipewire/TDbPipe.h, PipeDimElementEnum
    CString m_prefix;
    CString m_suffix;
    int m_precision = -1; // decimal places; below 0 as usual for the element
    bool m_keepZeros = false;
};

struct PipeDimNode {
    std::vector<PipeDimElement> m_elements; // in their order
    int m_elementsInLine = 0;               // 0: all
};
