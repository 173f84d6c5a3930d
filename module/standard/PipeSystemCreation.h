// What the current standard makes in the working drawing: layers, linetypes and text styles, each when it is
// first needed. What the drawing has already is never overwritten, but for UpdateTextStyle; what is added to
// the standard or changed in it here stays in memory until the standard is saved.
//
// Ids are null, names "" and answers false when there is no standard, or nothing in it to make.
#pragma once

#include "module/standard/TextStyleNode.h"

#include "dbid.h"
#include "dbmain.h"

namespace PipeSystemTool {

// ---- layers; names and types of layers are compared without case

// Adds a layer definition to the standard: for a pipe system, which the owner's name names exactly, or with
// the flag clear to the group of other layers of that type, under the owner's name as its key; such a group
// is made when there is none. False, and nothing changed, when type or owner is empty, the system unknown or
// the definition there already; a type that the system only maps to another one is not there. The lineweight
// is not taken: the definition has the default one. A type that is new to systems joins the list of layer
// types.
ZEF_PIPESYSTEM_PORT bool AddLayer(bool isPipeSystemLayer, LPCTSTR layerType, LPCTSTR ownerName,
                                  LPCTSTR layerName, int colorIndex, LPCTSTR linetype,
                                  AcDb::LineWeight lineWeight, LPCTSTR remark);

// Whether a system's layer of a type has that name.
ZEF_PIPESYSTEM_PORT bool ContainLayer(LPCTSTR systemName, LPCTSTR layerName, LPCTSTR layerType);

// The drawing's layer for a type in a system (PipeSystemTool.h, GetLayerName); its name goes where the
// pointer says, "" when there is no such layer. And that of a name: one that the drawing has already, else
// the one that the standard calls so.
ZEF_PIPESYSTEM_PORT AcDbObjectId InitLayer(LPCTSTR systemName, LPCTSTR layerType, CString* layerName);
ZEF_PIPESYSTEM_PORT AcDbObjectId InitLayer(LPCTSTR layerName);

// The same for a layer of no system, by its key.
ZEF_PIPESYSTEM_PORT AcDbObjectId InitIndependentLayer(LPCTSTR layerKey, CString* layerName);
// Its name; with `create` the drawing gets the layer.
ZEF_PIPESYSTEM_PORT CString GetIndependentLayerName(LPCTSTR layerKey, bool create);
// Puts the 42 keys in the place of what the list held.
ZEF_PIPESYSTEM_PORT void GetIndependentLayerKey(std::vector<CString>& keys);

// The drawing's linetype for a type of layer in a system.
ZEF_PIPESYSTEM_PORT AcDbObjectId InitLinetyle(LPCTSTR systemName, LPCTSTR layerType);

// ---- text styles: by exact name, or of a use

// The drawing's text style; of the drawing's own the name is compared without case. When one is made whose
// Windows font this machine lacks, a line tells so: it names a shape font file instead, and there is none.
ZEF_PIPESYSTEM_PORT AcDbObjectId InitTextStyle(LPCTSTR styleName);
ZEF_PIPESYSTEM_PORT AcDbObjectId InitTextStyle(TextStyleEnum use);

// Gives the drawing's text style what the standard says about it. False only when the drawing has none of
// that name.
ZEF_PIPESYSTEM_PORT bool UpdateTextStyle(LPCTSTR styleName);
ZEF_PIPESYSTEM_PORT bool UpdateTextStyle(TextStyleEnum use);

// Whether a style differs from the standard's of exactly the same key; heights and scales may differ by 1e-6.
// False when the standard has none.
ZEF_PIPESYSTEM_PORT bool IsModified(const TextStyleNode& style);

// Change the standard's style. False when there is none.
ZEF_PIPESYSTEM_PORT bool SetTextStyleHeight(LPCTSTR styleName, double height);
ZEF_PIPESYSTEM_PORT bool SetTextStyleHeight(TextStyleEnum use, double height);
ZEF_PIPESYSTEM_PORT bool SetTextStyleScale(LPCTSTR styleName, double scale);
ZEF_PIPESYSTEM_PORT bool SetTextStyleScale(TextStyleEnum use, double scale);
ZEF_PIPESYSTEM_PORT bool SetTextStyleInfo(LPCTSTR styleName, const TextStyleNode& style);
ZEF_PIPESYSTEM_PORT bool SetTextStyleInfo(TextStyleEnum use, const TextStyleNode& style);

} // namespace PipeSystemTool
