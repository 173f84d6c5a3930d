// The dynamic linker's face of the applications.
#pragma once

#include "rxdlinkr.h"

#include <memory>

namespace rx {

std::unique_ptr<AcRxDynamicLinker> make_dynamic_linker();

} // namespace rx
