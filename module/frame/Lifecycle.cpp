#include "module/frame/Lifecycle.h"

#include "module/fonts/FontCatalogues.h"
#include "module/frame/CommandTable.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/Options.h"
#include "module/layertools/LayerToolBar.h"
#include "module/standard/StandardManager.h"

void InitialiseModule() {
    RemoveForeignCommands();
    RegisterCommands();
    CStandardManager::Create().ChooseAndLoad();
    // Here the holder of per-document data and its document reactor will be made (frame/).
    OptionTool::ReadAlignType();
    LoadDrawingDefaults();
    // Here the fitting tables will be loaded and their flange function put in place.
    // Here the command reactor will be added to the editor (frame/).
}

void ShutDownModule() {
    RemoveCommands();
    // Here the layer control bar will be taken down (layertools/).
    CStandardManager::Release();
    // Here the holder of per-document data and its document reactor will be deleted.
    OptionTool::WriteAlignType();
    // Here the fitting tables will be deleted and the flange function that they replaced restored.
    // Here the command reactor will be taken from the editor and deleted.
    CLayerToolBar::Release();
    ReleaseFontCatalogues();
}
