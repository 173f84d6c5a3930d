// The editor: commands, documents and the display.
#pragma once

#include "accmd.h"
#include "acdbads.h"
#include "acdocman.h"
#include "acedads.h"
#include "acutads.h"
#include "dbapserv.h"

// Into model space through the viewport of the current sheet that is the first to be on, and back to the
// sheet. eInvalidInput with the Model tab current; eCannotChangeActiveViewport when no viewport is on.
ACCORE_PORT Acad::ErrorStatus acedMspace();
ACCORE_PORT Acad::ErrorStatus acedPspace();
// The current viewport: with the Model tab a record of the viewport table, else the AcDbViewport that the
// user is in, or that of the sheet. Null when there is none.
ACCORE_PORT AcDbObjectId acedGetCurViewportObjectId();
ACCORE_PORT AcDbObjectId acedActiveViewportId();
// The viewport with a number as CVPORT has it.
ACCORE_PORT AcDbObjectId acedViewportIdFromNumber(int number);
// Freezes or thaws layers in a viewport, or gives them the state that they have in new viewports. The
// viewport must be closed: eInvalidInput otherwise, and for what is no viewport of a sheet.
ACCORE_PORT Acad::ErrorStatus acedVPLayer(const AcDbObjectId& viewport, const AcDbObjectIdArray& layers,
                                          AcDb::VpFreezeOps operation);

// Brings the display up to date with the drawing. Nothing to do where there is no screen.
ACCORE_PORT void acedUpdateDisplay();
