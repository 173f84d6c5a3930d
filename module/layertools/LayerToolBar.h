// The layer tools: commands that change the state of layers by pointing at entities.
#pragma once

// One object for the whole module. It holds nothing: nothing carries over from one command to the next. Each
// method is a command, runs with the current document locked for writing, and passes over layers that cannot
// be opened.
class CLayerToolBar {
public:
    // Made on the first call, kept until Release.
    static CLayerToolBar& Instance();
    static void Release();

    // The layers of what is picked are turned on, all others off, the current one too.
    void OpenSelLayer();
    // All layers are turned on, and what is hidden in model space is shown.
    void SetAllPipeLayOpen();

    // The layers of what is picked are locked.
    void LockSelLayer();
    // The layers of what is picked are unlocked; with Enter all layers.
    void UnLockSelLayer();

    // All layers are thawed.
    void UnFrozenAllLayer();

    // Of two entities picked, all that is on the layer of the first one goes to that of the second one.
    void ConvertLayer();

private:
    CLayerToolBar() = default;
};
