// What the current drawing has of the standard, told when that is changed: drawings keep what they have.
#pragma once

#include "module/standard/PipeNode.h"

struct DrawingUse {
    int layers = 0;   // of those that the standard names
    int entities = 0; // on them
    int pipes = 0;    // of the system

    bool IsNone() const { return layers == 0 && pipes == 0; }
    // "图层 2 个(图元 30 个)，管线 5 根"
    CString GetText() const;
};

// Of layers; and of a system with its layers.
DrawingUse UseOfLayers(const std::vector<CString>& names);
DrawingUse UseOfSystem(const PipeNode& system);
