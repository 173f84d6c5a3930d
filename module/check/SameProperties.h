// Whether entities can stand for each other as far as their properties go.
#pragma once

#include <string>

class AcDbEntity;

// A text that two entities share exactly when layer, colour, linetype and its scale, lineweight, visibility
// and extended data are the same. One that has a dictionary of its own shares it with nobody.
std::wstring PropertyKey(const AcDbEntity& entity);
