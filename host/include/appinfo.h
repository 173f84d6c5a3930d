// Why an application is loaded.
#pragma once

namespace AcadApp {

enum LoadReasons {
    kOnProxyDetection = 0x01,
    kOnAutoCADStartup = 0x02,
    kOnCommandInvocation = 0x04,
    kOnLoadRequest = 0x08,
    kLoadDisabled = 0x10,
    kTransparentlyLoadable = 0x20,
    kOnIdleLoad = 0x40,
};

} // namespace AcadApp
