// The layer control bar as the rest of the module sees it.
#pragma once

#include "module/frame/ModulePort.h"

#include <memory>

class ZEF_PIPESYSTEM_PORT CLayerControlBar {
public:
    // The one that the module has, null before it is shown first and after Release, which destroys it.
    static CLayerControlBar* Get();
    static void Own(std::unique_ptr<CLayerControlBar> bar);
    static void Release();

    CLayerControlBar() = default;
    CLayerControlBar(const CLayerControlBar&) = delete;
    CLayerControlBar& operator=(const CLayerControlBar&) = delete;
    virtual ~CLayerControlBar();

    // Whether the user can click in it.
    virtual void EnableWindow(bool enable) = 0;
    // Shows the current drawing's layers as they are now.
    virtual void Refresh() = 0;
};
