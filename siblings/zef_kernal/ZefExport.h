// The kernel's small tools: for the current drawing, the working database, where names of layers and text
// styles are compared without case, and for the add-on's files.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "siblings/zef_kernal/KernalPort.h"

#include <vector>

class AcDbDatabase;
class AcDbTextStyleTableRecord;

namespace ZefExport {

// The layer of that name; null when there is none.
ZEF_KERNAL_PORT AcDbObjectId GetLayerIdFromString(LPCTSTR layerName);

// Turns the layer of that name on or off. False when there is none, or it can not be opened. Asks whether it
// is on; true when there is none.
ZEF_KERNAL_PORT bool SetLayerOnOff(LPCTSTR layerName, bool on);
ZEF_KERNAL_PORT bool IsLayerOn(LPCTSTR layerName);

// A pattern that only this name fits, for filters of selections.
ZEF_KERNAL_PORT CString GetLiteralPattern(LPCTSTR name);

// The text style of that name; null when there is none.
ZEF_KERNAL_PORT AcDbObjectId GetTextStyleId(LPCTSTR styleName);
// Adds a text style to a drawing, which owns it from then on, and closes it unless it is wanted open. Null,
// and the style deleted, when the drawing does not take it; null for none.
ZEF_KERNAL_PORT AcDbObjectId AddTextStyle(AcDbTextStyleTableRecord* style, bool close,
                                          AcDbDatabase* database);

// Appends the folders in which support files (fonts, linetypes) are looked for, in their order: those of the
// system variable ACADPREFIX, and without it the system folder.
ZEF_KERNAL_PORT void GetSupportPaths(std::vector<CString>& folders);
// Whether the add-on has a file of that name, told without case, and where: in the user's system folder.
// False, and the path as it was, for a name with a folder in it, and for what is no file.
ZEF_KERNAL_PORT bool FindFile(LPCTSTR name, CString& path);

// Ends a command, with a word to the user, that the files of the drawing's version can not take: those of R12
// and before have neither dictionaries nor entities of applications. `lacks` says what they can not hold, as
// the middle of a sentence. False, and nothing is told, for drawings that can.
ZEF_KERNAL_PORT bool RefusesOldDrawing(LPCTSTR lacks);

} // namespace ZefExport
