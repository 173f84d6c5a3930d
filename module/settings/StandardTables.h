// A whole standard as tables on the command line.
#pragma once

#include "module/standard/PipeStandard.h"

// Groups with their systems, layers and aliases, other layers, text styles, and the materials there are.
// False when the user has stopped it.
bool PrintStandard(const PipeStandard& standard);
