// What is wrong in a standard file, for who writes one by hand: reading is lenient and says nothing.
#pragma once

#include "module/standard/PipeStandard.h"
#include "siblings/zef_public/PipeMaterials.h"

struct StandardFault {
    int line = 0;    // counted from 1; 0 for the whole file
    CString element; // where, by its tag; "" for no element
    CString what;    // in words
};

// What a standard may name besides its own.
struct StandardKnowledge {
    std::vector<CString> linetypes;      // compared without case
    std::vector<PipeMaterial> materials; // by exact name
};

// Appends the faults of a file in the order of its lines: names that are empty or taken, mappings to a type
// that is not there, linetypes and materials that nobody knows, materials that are used indoors or outdoors
// against their own mark, colours, lineweights, sizes and flags that are none, layer names that no drawing
// takes, a file without systems, and bytes that are none of the encoding that it declares. False when the
// file can not be read or is not well-formed; then why is the only fault.
ZEF_PIPESYSTEM_PORT bool CheckStandardFile(LPCTSTR path, const StandardKnowledge& known,
                                           std::vector<StandardFault>& faults);
