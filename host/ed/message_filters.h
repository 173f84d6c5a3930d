// Window messages that applications want to see before the editor does: here the clicks that picks are.
#pragma once

#include "gepnt3d.h"

namespace ed {

// A press of the left button at a point (of the user's coordinates), and letting it go. False when a filter
// kept it for itself: then nothing is picked there.
bool click(const AcGePoint3d& point);

} // namespace ed
