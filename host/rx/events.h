// Who hears of drawings as a whole, and of the editor.
#pragma once

#include "host/rx/reactor_list.h"
#include "rxevent.h"

namespace rx {

ACBASE_PORT reactor_list<AcRxEventReactor>& event_reactors();

} // namespace rx
