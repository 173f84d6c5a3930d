// The command gxsz: shows the current standard, and opens, saves and checks standard files.
#pragma once

void ShowStandard();
