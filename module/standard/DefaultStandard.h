// The standard that counts when there is no standard file: the systems of Chinese building practice, with the
// layers that a drafter needs of each. "share/kol.vrsl" holds the same.
#pragma once

#include "module/standard/PipeStandard.h"

ZEF_PIPESYSTEM_PORT PipeStandard MakeDefaultStandard();

// Tells a system the built-in mapping of layer types, beside which its own one is seen to be the default.
void AddDefaultMappings(PipeNode& system);

// The keys of the layers that belong to no pipe system, in their order.
ZEF_PIPESYSTEM_PORT const std::vector<CString>& GetIndependentLayerKeys();
