#include "module/layertools/LayerDisplay.h"

#include "aced.h"
#include "module/frame/KolConfig.h"

void RefreshLayerDisplay() {
    AcApDocument* const document = curDoc();
    acDocManager->sendStringToExecute(document, L"\x1b-layer\n");
    acDocManager->sendStringToExecute(document, L"\x1b");
    int showsUpdate = 1;
    OpenKolConfig().GetValue(L"LayerLockShowUpdate", showsUpdate);
    if (showsUpdate != 0)
        acDocManager->sendStringToExecute(document, L"re\n");
}

void RegenerateDisplay() {
    acedUpdateDisplay();
}
