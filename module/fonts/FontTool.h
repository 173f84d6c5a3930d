// The fonts that text styles may use: the Windows fonts installed on the machine, script by script, and the
// shape fonts that lie on the support path.
//
// Both are looked for when they are first asked for, and anew when `refresh` says so. What is found is
// appended to what the caller's lists hold.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <vector>

namespace FontTool {

// The scripts of all fonts, or of one face, whose name is compared without case: each script once, in the
// form met first, sorted.
ZEF_PIPESYSTEM_PORT void GetFontEncoded(std::vector<CString>& scripts, bool refresh);
ZEF_PIPESYSTEM_PORT void GetFontEncoded(const CString& face, std::vector<CString>& scripts, bool refresh);

// The faces that have a script, without case.
ZEF_PIPESYSTEM_PORT void GetWinFont(const CString& script, std::vector<CString>& faces, bool refresh);

// Whether there is a face of exactly that name with that script, which is compared without case. Its
// character set and its family and spacing go where the pointers say, unless they are null; a font that is
// not there leaves them as they were.
ZEF_PIPESYSTEM_PORT bool IsWinFont(const CString& face, const CString& script, int* charSet, int* familyFlags,
                                   bool refresh);

// The names, without extension, of ordinary shape fonts and of big fonts, each list sorted by code point.
ZEF_PIPESYSTEM_PORT void GetShxFont(std::vector<CString>& shapeFonts, std::vector<CString>& bigFonts,
                                    bool refresh);

} // namespace FontTool
