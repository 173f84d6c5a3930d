// The dialog in which rules are graded and switched off.
#pragma once

#include "module/check/CheckRules.h"

// Shows it; with OK the rules become what it says and are written to their file. False otherwise, also when
// the file can not be written, which the user is told.
bool EditCheckRules(CheckRules& rules);
