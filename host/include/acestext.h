// Statuses under their short names, as programs write them.
#pragma once

#include "acadstrc.h"

using namespace Acad;
