// Marks: what attaches an entity or a layer to a pipe system, or an entity to the architecture drawing. A
// mark is a text in the object's extended data, so it travels with the drawing and follows undo.
#pragma once

#include "module/frame/ModulePort.h"

#include "acadstrc.h"
#include "afx.h"
#include "dbid.h"

#include <vector>

class AcDbObject;

// An entity and what it is marked as.
struct MarkedEntity {
    AcDbObjectId m_entity;
    CString m_mark;
};

namespace MarkTool {

// The application of the extended data: 1001 "VR-LAYER", 1000 and the mark.
inline constexpr wchar_t kApplication[] = L"VR-LAYER";
// The mark of the architecture drawing. Every other one is the name of a pipe system ("给水").
inline constexpr wchar_t kArchitecture[] = L"Dolmo";

inline bool IsArchitecture(const CString& mark) {
    return mark == kArchitecture;
}

// The mark of an entity or of a layer's record; empty when it has none, or can not be opened.
ZEF_PIPESYSTEM_PORT CString GetMark(const AcDbObject& object);
ZEF_PIPESYSTEM_PORT CString GetMark(AcDbObjectId object);

// Marks an object, in the place of the mark that it has, and registers the application in the drawing when
// that is missing. What other applications keep at the object stays. An object that has this mark already is
// not changed. Gives why it can not be marked: eOnLockedLayer for instance.
ZEF_PIPESYSTEM_PORT Acad::ErrorStatus SetMark(AcDbObjectId object, LPCTSTR mark);
// Takes the mark away. An object that has none is not changed. One that is open may be open for reading.
ZEF_PIPESYSTEM_PORT Acad::ErrorStatus ClearMark(AcDbObject& object);
ZEF_PIPESYSTEM_PORT Acad::ErrorStatus ClearMark(AcDbObjectId object);

// All marked entities of the current drawing, in model space and on sheets, seen or not; the newest first.
// Becomes the previous selection, as every search in the whole drawing does.
ZEF_PIPESYSTEM_PORT std::vector<MarkedEntity> GetMarkedEntities();

} // namespace MarkTool
