// Flags of commands.
#pragma once

#define ACRX_CMD_MODAL 0x00000000       // only when no command is under way
#define ACRX_CMD_TRANSPARENT 0x00000001 // may run inside another one, called with ' in front
#define ACRX_CMD_USEPICKSET 0x00000002  // begins with what was picked first
#define ACRX_CMD_REDRAW 0x00000004      // keeps what was picked first
#define ACRX_CMD_NOPERSPECTIVE 0x00000008
#define ACRX_CMD_NOMULTIPLE 0x00000010
#define ACRX_CMD_NOTILEMODE 0x00000020
#define ACRX_CMD_NOPAPERSPACE 0x00000040
#define ACRX_CMD_UNDEFINED 0x00000200
#define ACRX_CMD_INPROGRESS 0x00000400
#define ACRX_CMD_DEFUN 0x00000800
#define ACRX_CMD_NONEWSTACK 0x00010000
#define ACRX_CMD_NOINTERNALLOCK 0x00020000
#define ACRX_CMD_DOCREADLOCK 0x00080000
#define ACRX_CMD_DOCEXCLUSIVELOCK 0x00100000
#define ACRX_CMD_SESSION 0x00200000 // runs in the context of the application, not of a document
#define ACRX_CMD_INTERRUPTIBLE 0x00400000
#define ACRX_CMD_NOHISTORY 0x00800000
#define ACRX_CMD_NO_UNDO_MARKER 0x01000000 // is no undo step of its own
