// The editor: commands, documents and the display.
#pragma once

#include "accmd.h"
#include "acdbads.h"
#include "acdocman.h"
#include "acedads.h"
#include "acutads.h"
#include "dbapserv.h"
#include "dbcolor.h"
#include "dbptrar.h"
#include "rxevent.h"

// Into model space through the viewport of the current sheet that is the first to be on, and back to the
// sheet. eInvalidInput with the Model tab current; eCannotChangeActiveViewport when no viewport is on.
ACCORE_PORT Acad::ErrorStatus acedMspace();
ACCORE_PORT Acad::ErrorStatus acedPspace();
// The current viewport: with the Model tab a record of the viewport table, else the AcDbViewport that the
// user is in, or that of the sheet. Null when there is none.
ACCORE_PORT AcDbObjectId acedGetCurViewportObjectId();
ACCORE_PORT AcDbObjectId acedActiveViewportId();
// The viewport with a number as CVPORT has it.
ACCORE_PORT AcDbObjectId acedViewportIdFromNumber(int number);
// Freezes or thaws layers in a viewport, or gives them the state that they have in new viewports. The
// viewport must be closed: eInvalidInput otherwise, and for what is no viewport of a sheet.
ACCORE_PORT Acad::ErrorStatus acedVPLayer(const AcDbObjectId& viewport, const AcDbObjectIdArray& layers,
                                          AcDb::VpFreezeOps operation);

// Brings the display up to date with the drawing. Nothing to do where there is no screen.
ACCORE_PORT void acedUpdateDisplay();

// Lets the user choose a colour, beginning with the given one, by an index, a name or red,green,blue, as far
// as the tabs allow; of colour books none are offered. With bAllowMetaColor also ByLayer, whose looks
// nCurLayerColor tells, and ByBlock. False when it was cancelled, and `color` is as it was.
ACCORE_PORT bool acedSetColorDialogTrueColor(AcCmColor& color, Adesk::Boolean bAllowMetaColor,
                                             const AcCmColor& nCurLayerColor,
                                             AcCm::DialogTabs tabs = static_cast<AcCm::DialogTabs>(
                                                 AcCm::kACITab | AcCm::kTrueColorTab | AcCm::kColorBookTab));
// The same for an index: 1 to 255, or 0 ByBlock and 256 ByLayer where these are allowed.
ACCORE_PORT Adesk::Boolean acedSetColorDialog(int& nColor, Adesk::Boolean bAllowMetaColor,
                                              int nCurLayerColor);

#define ACED_EDITOR_OBJ ACRX_T("AcEditor")

// Hears of the editor, too: of commands, documents' files, system variables. Names of commands are the global
// ones in capitals, without a prefix. For one command C: commandWillStart(C), what it does, and one of the
// other three; a command that it starts (acedCommandS, or a user in the middle of it) has its own pair
// inside. In commandEnded the document is locked still, so that the drawing may be changed there.
class ACCORE_PORT AcEditorReactor : public AcRxEventReactor {
public:
    ACRX_DECLARE_MEMBERS(AcEditorReactor);
    ~AcEditorReactor() override;

    virtual void commandWillStart(const ACHAR* command);
    virtual void commandEnded(const ACHAR* command);
    // The last thing that it was answered was Escape.
    virtual void commandCancelled(const ACHAR* command);
    virtual void commandFailed(const ACHAR* command);
    // What was typed is no command. Texts in the array are of no use here.
    virtual void unknownCommand(const ACHAR* text, AcDbVoidPtrArray* texts);

    // By its name, also when it has the value already.
    virtual void sysVarWillChange(const ACHAR* name);
    virtual void sysVarChanged(const ACHAR* name, Adesk::Boolean success);

    // A document's file is read; the second only when it could be.
    virtual void beginDwgOpen(const ACHAR* fileName);
    virtual void endDwgOpen(const ACHAR* fileName, AcDbDatabase* database);
    // A document is about to be closed.
    virtual void beginClose(AcDbDatabase* database);
    // The program ends.
    virtual void beginQuit();
    virtual void quitWillStart();

protected:
    AcEditorReactor() = default;
};

// Whom reactors are added to. Stands in the system registry under ACED_EDITOR_OBJ.
class ACCORE_PORT AcEditor : public AcRxEvent {
public:
    ACRX_DECLARE_MEMBERS(AcEditor);
    ~AcEditor() override;

protected:
    AcEditor() = default;
};

#define acedEditor AcEditor::cast(acrxSysRegistry()->at(ACED_EDITOR_OBJ))

// Runs a whole command inside the one under way: types and values as acutBuildList has them, the name first,
// then its answers: RTSTR ("" is Enter), RTREAL, RTSHORT, RTLONG, RTPOINT, RT3DPOINT, RTENAME, RTPICKS; at
// the end 0 or RTNONE. Several commands may follow each other. RTNORM; RTCAN when it was cancelled; RTERROR
// for an unknown command, a refused answer, answers that do not suffice, a command that failed, outside a
// document's command and for whoever is being told of something; RTREJ for a bad list.
ACCORE_PORT int acedCommandS(int type, ...);
// The same with a chain, which stays the caller's.
ACCORE_PORT int acedCmdS(const resbuf* answers);
