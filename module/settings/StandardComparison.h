// Two standards compared, record by record and value by value.
#pragma once

#include "module/standard/PipeStandard.h"

struct StandardDifference {
    enum Kind { kAdded, kRemoved, kChanged };
    Kind kind = kChanged;
    CString record; // "系统 给水", "图层 给水/管线": what it is, and its keys
    CString field;  // of a value that changed
    CString before;
    CString after;

    // In one line for the user.
    ZEF_PIPESYSTEM_PORT CString GetText() const;
};

// What makes `after` out of `before`, in the order of the standards. The layers of a system that came or went
// are not told one by one. The order of groups and systems counts; that of layers does not.
ZEF_PIPESYSTEM_PORT std::vector<StandardDifference> CompareStandards(const PipeStandard& before,
                                                                     const PipeStandard& after);
