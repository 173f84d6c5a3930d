// Lineweights and colours as texts of the standard.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"
#include "dbcolor.h"

// "默认" is -3, "随层" -1, "随块" -2; "0.00" to "2.11" are hundredths of a millimetre, of the drawing
// format's own values only. Any other text, also one in other digits ("0.3"), is -3.
ZEF_PIPESYSTEM_PORT int ParseLineWeight(LPCTSTR text);
// The reverse; "默认" for a number that is no lineweight.
ZEF_PIPESYSTEM_PORT CString GetLineWeightText(int lineWeight);

// "256" and "ByLayer", "0" and "ByBlock", "red,green,blue", else an index. A number is read as far as it is
// one and 0 where it is none; of a true colour the lowest eight bits of each count. An index that is no
// colour gives a new colour.
ZEF_PIPESYSTEM_PORT AcCmColor ParseColor(LPCTSTR text);
// The reverse, with "ByLayer" and "ByBlock".
ZEF_PIPESYSTEM_PORT CString GetColorText(const AcCmColor& color);
