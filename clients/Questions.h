// Questions that several commands ask.
#pragma once

#include "afx.h"

// "PROMPT[是(Y)/否(N)]<...>:", in which Enter keeps the answer as it is. False when the asking was ended.
bool AskYesNo(LPCTSTR prompt, bool& answer);

// "PROMPT(m)<...>:", an elevation in metres; Enter keeps the one that it has. False when the asking was
// ended.
bool AskForElevation(LPCTSTR prompt, double& elevation);
