// Layer states: what the layers of a drawing show, kept in the drawing by name and given back.
#pragma once

#include "acarray.h"
#include "acstring.h"
#include "dbidar.h"
#include "dbmain.h"

typedef AcArray<AcString> AcStringArray;

// The states of one drawing, which must outlive it; it holds nothing itself. Names are compared without case.
// Every call answers eKeyNotFound for a state that is not there, eLockViolation where the drawing is not
// locked for writing.
class ACDB_PORT AcDbLayerStateManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbLayerStateManager);
    explicit AcDbLayerStateManager(AcDbDatabase* pHostDb);

    // What of a layer a state gives back.
    enum LayerStateMask {
        kNone = 0x0,
        kOn = 0x1,
        kFrozen = 0x2,
        kLocked = 0x4,
        kPlot = 0x8,
        kNewViewport = 0x10, // frozen in viewports that are made later
        kColor = 0x20,
        kLineType = 0x40,
        kLineWeight = 0x80,
        kPlotStyle = 0x100,
        kCurrentViewport = 0x200, // frozen in the viewport that the state was saved with
        kTransparency = 0x400,
        kAll = 0x7FF,
        kStateIsHidden = 0x8000, // lists leave it out: what keeps it is another part of the editor
    };
    // What is done to layers that a state does not know; the words may be added to each other.
    enum RestoreFlags { kUndefDoNothing = 0, kUndefTurnOff = 1, kUndefFreeze = 2 };

    // The dictionary that holds the states; null when there is none and it is not to be made, or can not be
    // (drawings of R12 and before).
    AcDbObjectId layerStatesDictionaryId(bool bCreateIfNotPresent = false);

    bool hasLayerState(const ACHAR* sName);
    // The names, sorted; those of hidden states when bIncludeHidden is true.
    Acad::ErrorStatus getLayerStateNames(AcStringArray& lsArray, bool bIncludeHidden = true);
    // The names of the layers that a state knows, or with bInvert of those that it does not.
    Acad::ErrorStatus getLayerStateLayers(AcStringArray& layerArray, const ACHAR* sName,
                                          bool bInvert = false);

    // Keeps what all layers show under a name; a state of that name is replaced, but its description stays.
    // With a viewport of a sheet also what is frozen in it. eNotApplicable in drawings that can not hold
    // states, eInvalidKey for what is no name.
    Acad::ErrorStatus saveLayerState(const ACHAR* sName, LayerStateMask mask);
    Acad::ErrorStatus saveLayerState(const ACHAR* sName, LayerStateMask mask, const AcDbObjectId& idVp);
    // Gives the layers what a state keeps of them, as far as its mask goes and the client's, when there is
    // one; with a viewport also what was frozen in the one that it was saved with. The current layer stays
    // thawed.
    Acad::ErrorStatus restoreLayerState(const ACHAR* sName, AcDbObjectId idVp = AcDbObjectId::kNull,
                                        int nRestoreFlags = kUndefDoNothing,
                                        const LayerStateMask* pClientMask = nullptr);
    // Whether the layers show what restoring the state would give them.
    bool compareLayerStateToDb(const ACHAR* sName, const AcDbObjectId& idVp = AcDbObjectId::kNull);

    Acad::ErrorStatus deleteLayerState(const ACHAR* sName);
    // eDuplicateKey when there is one of the new name already, eInvalidKey.
    Acad::ErrorStatus renameLayerState(const ACHAR* sOldName, const ACHAR* sNewName);

    // A state as a file (.las) that the editor reads, and from there. Importing makes the layers that the
    // drawing lacks, those of references left out. eFileNotFound, eInvalidInput for what is no such file,
    // eDuplicateKey when there is a state of the name, which `sName` gets all the same; eFileAccessErr when
    // the file can not be read or written.
    Acad::ErrorStatus exportLayerState(const ACHAR* sNameToExport, const ACHAR* sFilename);
    Acad::ErrorStatus importLayerState(const ACHAR* sFilename);
    Acad::ErrorStatus importLayerState(const ACHAR* sFilename, AcString& sName);
    // The same from another drawing. eNullObjectPointer without one.
    Acad::ErrorStatus importLayerStateFromDb(const ACHAR* pStateName, AcDbDatabase* pDb);

    Acad::ErrorStatus getLayerStateMask(const ACHAR* sName, LayerStateMask& returnMask);
    Acad::ErrorStatus setLayerStateMask(const ACHAR* sName, LayerStateMask mask);
    Acad::ErrorStatus getLayerStateDescription(const ACHAR* sName, AcString& description);
    Acad::ErrorStatus setLayerStateDescription(const ACHAR* sName, const ACHAR* sDesc);
    // Whether a state was saved with a viewport.
    bool layerStateHasViewportData(const ACHAR* sName);

private:
    AcDbDatabase& m_drawing;
};
