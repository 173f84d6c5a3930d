#include "module/layertools/LayerDisplay.h"

#include "aced.h"
#include "module/frame/KolConfig.h"

void RefreshLayerDisplay() {
    AcApDocument* const document = curDoc();
    const auto send = [document](const wchar_t* text) {
        acDocManager->sendStringToExecute(document, text, true, false, false); // nobody is to read it
    };
    send(L"\x1b-layer\n");
    send(L"\x1b");
    int showsUpdate = 1;
    OpenKolConfig().GetValue(L"LayerLockShowUpdate", showsUpdate);
    if (showsUpdate != 0)
        send(L"re\n");
}

void RegenerateDisplay() {
    acedUpdateDisplay();
}
