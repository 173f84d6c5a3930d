// Window messages on their way to the editor.
#pragma once

#include "adesk.h"
#include "windows.h"

// Sees a message before the editor does; TRUE keeps it from the editor. Where there is no window, the
// messages are those of picks: 513, the left button pressed, also in empty space, and 514, let go. Points
// that are typed for other questions are no clicks.
typedef BOOL (*AcedFilterWinMsgFn)(MSG* message);

// TRUE when the filter was added; FALSE when it was there already. The newest filter is asked first.
ACCORE_PORT BOOL acedRegisterFilterWinMsg(const AcedFilterWinMsgFn filter);
// FALSE when it was not there. A filter may remove itself.
ACCORE_PORT BOOL acedRemoveFilterWinMsg(const AcedFilterWinMsgFn filter);
