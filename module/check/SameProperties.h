// Whether entities can stand for each other as far as their properties go.
#pragma once

#include <string>

class AcDbEntity;

// Puts a number's bytes behind a key.
template<class Number>
void AddBytes(std::string& key, Number number) {
    key.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// Bytes that two entities share exactly when layer, colour, linetype and its scale, lineweight, visibility
// and extended data are the same. One that has a dictionary of its own shares it with nobody.
std::string PropertyKey(const AcDbEntity& entity);
