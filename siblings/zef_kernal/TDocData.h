// What the kernel keeps for each open document.
#pragma once

#include "siblings/zef_kernal/KernalPort.h"

struct TDocData {
    // The drawing is worked with the add-on: modules do of their own accord what they do for such drawings.
    // Off when the user says so (command cjkg), until the drawing is closed.
    bool m_isUsed = true;
};

// Of the current document; null when none is open, or the kernel is not loaded.
ZEF_KERNAL_PORT TDocData* GetCurDocData();
