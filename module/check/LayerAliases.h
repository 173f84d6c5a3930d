// How layers that mean a system's layer are called elsewhere.
#pragma once

#include "module/check/CheckRules.h"

// The families met in drawings of other offices, as far as they tell one system and one kind of layer: the
// four-letter fields of layer lists in English (W-WSUP-COOL-PIPE) and the letters of pinyin and English.
// Practice, not a norm; a file of rules may name others. Patterns are compared with "_" as "-".
std::vector<LayerAlias> GetUsualAliases();
