// What the labels of pipes ask of the add-on's other modules, and what follows them. Who can answer puts a
// function here; it keeps the one that was there, and puts that back before it goes. None of them is ever
// null.
#pragma once

#include "siblings/zef_kernal/TEntitySet.h"
#include "siblings/zef_public/PublicPort.h"

#include "afx.h"

#include <vector>

// What stands in front of outer diameters in labels, by the index of the pipe's layer: "J" for cold water.
ZEF_PUBLIC_PORT extern std::vector<CString> g_csPipeDim;

// Answers with the index of a pipe layer, told without case, and sees to it that g_csPipeDim says what holds
// now for it; -1 for what is no pipe layer. Built in is one that knows none.
typedef int (*TPipeLayerFunction)(LPCTSTR layerName);
ZEF_PUBLIC_PORT extern TPipeLayerFunction g_pfnGetPipeLayerIdxByName;
// Asks it.
ZEF_PUBLIC_PORT int GetPipeLayerIdxByName(LPCTSTR layerName);

// Has the texts about pipes (of the set's first entity) follow a label that was changed. `prefix` and `dn`
// are the label prefix and the rounded diameter that the pipe had before. Built in is one that does nothing.
typedef void (*TPipeTextFunction)(const TEntitySet& pipes, LPCTSTR prefix, int dn);
ZEF_PUBLIC_PORT extern TPipeTextFunction g_pfnUpdatePipeTextDim;
// Asks for it.
ZEF_PUBLIC_PORT void UpdatePipeTextDim(const TEntitySet& pipes, LPCTSTR prefix, int dn);
