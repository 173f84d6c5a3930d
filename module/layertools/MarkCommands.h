// The commands that mark entities and layers; see Marks.h.
#pragma once

// gpsbs: marks for the system that was chosen on the layer control bar.
void MarkForSystem();

// CleanDolmoLayTag: takes the mark of the architecture drawing off entities.
void CleanArchitectureMarks();
