// zhcc: a copy of the drawing in which every entity of the add-on is taken apart, for programs that know none
// of them.
#pragma once

void SaveExploded();
