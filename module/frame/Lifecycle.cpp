#include "module/frame/Lifecycle.h"

#include "module/annotation/PipeTexts.h"
#include "module/fonts/FontCatalogues.h"
#include "module/frame/CommandTable.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/Options.h"
#include "module/frame/PerDocData.h"
#include "module/frame/Reactors.h"
#include "module/frame/SpecData.h"
#include "module/layertools/LayerControlBar.h"
#include "module/layertools/LayerToolBar.h"
#include "module/standard/StandardManager.h"

void InitialiseModule() {
    RemoveForeignCommands();
    RegisterCommands();
    CStandardManager::Create().Choose();
    TPipeAppDocGlobals::Create();
    CStandardManager::Create().ChooseAndLoad();
    OptionTool::ReadAlignType();
    LoadDrawingDefaults();
    SpecData::Load();
    PipeTexts::Load();
    TCmdReactor::Create();
}

void ShutDownModule() {
    RemoveCommands();
    CLayerToolBar::Release();
    CLayerControlBar::Release();
    CStandardManager::Release();
    TPipeAppDocGlobals::Release();
    OptionTool::WriteAlignType();
    PipeTexts::Release();
    SpecData::Release();
    TCmdReactor::Release();
    ReleaseFontCatalogues();
}
