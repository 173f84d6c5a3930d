// Text styles of drawings as they are drawn with.
#pragma once

#include "acgi.h"

// The style that a record of the text style table stands for: its fonts, height, width factor, slant and the
// ways in which it mirrors texts. eNullObjectId, eNoDatabase for a drawing that is gone, eWasErased, and
// eWrongObjectType for what is no text style; `textStyle` stays as it was then.
ACDB_PORT Acad::ErrorStatus fromAcDbTextStyle(AcGiTextStyle& textStyle, const AcDbObjectId& styleId);
