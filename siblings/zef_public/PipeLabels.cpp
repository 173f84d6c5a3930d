#include "siblings/zef_public/PipeLabels.h"

std::vector<CString> g_csPipeDim;
TPipeLayerFunction g_pfnGetPipeLayerIdxByName = [](LPCTSTR) { return -1; };
TPipeTextFunction g_pfnUpdatePipeTextDim = [](const TEntitySet&, LPCTSTR, int) {};

int GetPipeLayerIdxByName(LPCTSTR layerName) {
    return g_pfnGetPipeLayerIdxByName(layerName);
}

void UpdatePipeTextDim(const TEntitySet& pipes, LPCTSTR prefix, int dn) {
    g_pfnUpdatePipeTextDim(pipes, prefix, dn);
}
