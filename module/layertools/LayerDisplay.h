// Brings what is shown up to date with the layers.
#pragma once

// Makes the host's own list of layers, and unless the option "LayerLockShowUpdate" is 0 the drawing, show the
// layers' state; this happens when the command has ended.
void RefreshLayerDisplay();

// Regenerates the current view.
void RegenerateDisplay();
