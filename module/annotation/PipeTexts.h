// What the module answers when labels of pipes ask (siblings/zef_public/PipeLabels.h): layers and their
// prefixes by the current standard, and texts about a pipe that follow its diameter.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <vector>

namespace PipeTexts {

// Has the module answer; lets answer again who did before.
ZEF_PIPESYSTEM_PORT void Load();
ZEF_PIPESYSTEM_PORT void Release();

// Puts `label` in the place of the first of these diameters in a text: a sign ("DN", "De", "dn", "Dw", "D",
// "d", "%%c", "φ", or one of those given), right behind it the number `dn`, rounded, or `outer`, and what
// tells the wall ("x4"). False, and nothing changed, when there is none.
ZEF_PIPESYSTEM_PORT bool ReplaceDiameter(CString& text, const std::vector<CString>& signs, int dn,
                                         double outer, LPCTSTR label);

} // namespace PipeTexts
