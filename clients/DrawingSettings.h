// The command that sets the sizes of a drawing's annotation.
#pragma once

// tzsz: asks for the plot scale and whether sizes are absolute; pipes that are there can follow the scale.
void SetDrawingSettings();
