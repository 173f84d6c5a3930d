// The command that marks entities as those of the architecture drawing.
#pragma once

// SetDolmoLayTag: the entities that are picked; with the keyword A all that are no water and drainage. What
// is marked for a pipe system, and is picked, is the architecture's from then on.
void MarkArchitecture();
