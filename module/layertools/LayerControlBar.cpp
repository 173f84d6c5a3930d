#include "module/layertools/LayerControlBar.h"

namespace {

std::unique_ptr<CLayerControlBar> g_bar;

} // namespace

CLayerControlBar* CLayerControlBar::Get() {
    return g_bar.get();
}

void CLayerControlBar::Own(std::unique_ptr<CLayerControlBar> bar) {
    g_bar = std::move(bar);
}

void CLayerControlBar::Release() {
    g_bar.reset();
}

CLayerControlBar::~CLayerControlBar() = default;
