// The defaults that new drawings begin with.
#pragma once

// Loads them, and takes the current drawing's settings over into the shared variables.
void LoadDrawingDefaults();
