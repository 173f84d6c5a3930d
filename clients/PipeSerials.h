// The serial number of one pipe: it stands in the pipe's extended data, and a text about it shows it.
#pragma once

#include "afx.h"
#include "dbid.h"

// "" for a pipe without one.
CString SerialOf(AcDbObjectId pipe);

// Gives a pipe a serial. The text that shows its serial follows; when there is none, one is made beside it,
// in the layer and the text style of riser labels, and with the flag one of its diameter below it. False when
// the pipe, or the drawing, can not be changed.
bool SetSerial(AcDbObjectId pipe, LPCTSTR serial, bool withDiameter);
