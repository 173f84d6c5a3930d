// The editor: commands, documents and the display.
#pragma once

#include "accmd.h"
#include "acdbads.h"
#include "acdocman.h"
#include "acedads.h"
#include "acutads.h"
#include "dbapserv.h"

// Brings the display up to date with the drawing. Nothing to do where there is no screen.
ACCORE_PORT void acedUpdateDisplay();
