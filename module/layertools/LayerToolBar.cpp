#include "module/layertools/LayerToolBar.h"

#include <memory>

namespace {

std::unique_ptr<CLayerToolBar> instance;

} // namespace

CLayerToolBar& CLayerToolBar::Instance() {
    if (!instance)
        instance.reset(new CLayerToolBar);
    return *instance;
}

void CLayerToolBar::Release() {
    instance.reset();
}
