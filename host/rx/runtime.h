// The part of the host that knows no drawing, as one whole that comes to life when it is first asked for.
#pragma once

#include "host/rx/class_registry.h"
#include "host/rx/dictionary.h"
#include "rxdlinkr.h"

#include <memory>

namespace rx {

struct runtime {
    // The one that the process has. It is never destroyed: applications ask it things to the very end.
    static runtime& instance();

    dictionary system{{.refuses_doubles = true}};
    dictionary services{{.refuses_doubles = true}};
    class_registry classes;
    std::unique_ptr<AcRxDynamicLinker> linker;

private:
    runtime();
};

} // namespace rx
