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

    // Pick by pick the layer of an entity is turned off: of a pipe its system's diameter texts, too, of an
    // external reference that of the entity in it that is picked then.
    void CloseSelLayer();
    // The layers of what is picked are turned on, all others off, the current one too.
    void OpenSelLayer();
    // All layers are turned on, and what is hidden in model space is shown.
    void SetAllPipeLayOpen();

    // The layers of what is picked are locked.
    void LockSelLayer();
    // The layers of what is picked are unlocked; with Enter all layers.
    void UnLockSelLayer();
    // The layers of what is picked, of pipes also those of their attachments and end nodes, are unlocked, all
    // others locked.
    void sfxc();

    // Pick by pick the layer of an entity is frozen.
    void FrozenLayer();
    // All layers are thawed.
    void UnFrozenAllLayer();

    // All that is on the layers of what is picked is erased; the layers stay.
    void EraseSelLayer();

    // Of two entities picked, all that is on the layer of the first one goes to that of the second one.
    void ConvertLayer();

    // What is on layers that are picked, named or chosen from a list goes to another one, and the layers go;
    // before that the user sees what lies on them, and confirms.
    void hbtc();

    // Layers that are picked, named or chosen go with all that is on them to a drawing file, or to one each.
    void tcdc();

    // What is on chosen layers inside of references and blocks is copied into the drawing, as it is seen
    // there.
    void tctq();

    // States of all layers by name: saved, restored, renamed, deleted, compared, and as files.
    void cztk();

    // Of the layers that are off those that the user chooses are turned on, and their hidden entities shown.
    void OpenLayer();

    // On a sheet: pick by pick the layer of an entity is frozen in the current viewport; in a viewport that
    // is picked, the layers that the user chooses.
    void FrozenViewLayer();
    // On a sheet: layers that the user chooses are thawed in a viewport.
    void UnFrozenViewAllLayer();

    // Layers that the user chooses are painted in one colour; the drawing remembers what they had.
    void tbds();
    // Layers get back what the drawing remembers.
    void yshf();

private:
    CLayerToolBar() = default;
};
