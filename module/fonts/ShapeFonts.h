// The catalogue of shape fonts: what kind of font a file is, its first bytes tell.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <vector>

struct ShapeFonts {
    std::vector<CString> m_shapeFonts; // shape files and those with the signs of Unicode
    std::vector<CString> m_bigFonts;
};

// The files "*.shx" of the folders, in their order; of several of one name the first. Their names up to the
// first dot, sorted by code point. Files that are no fonts, or can not be read, are passed over.
ZEF_PIPESYSTEM_PORT ShapeFonts ListShapeFonts(const std::vector<CString>& folders);
