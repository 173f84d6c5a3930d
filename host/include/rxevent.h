// News of drawings as a whole, whichever program opened them.
#pragma once

#include "acdb.h"
#include "rxboiler.h"
#include "rxobject.h"

#define ACRX_EVENT_OBJ ACRX_T("AcRxEvent")

// Hears of drawings that come, go, are read and written. The caller keeps it, and takes it away before it
// goes; it may come and go while others are told.
class ACDB_PORT AcRxEventReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxEventReactor);
    ~AcRxEventReactor() override;

    // Drawings that programs make besides the documents, too.
    virtual void databaseConstructed(AcDbDatabase* database);
    virtual void databaseToBeDestroyed(AcDbDatabase* database);

    // A drawing is saved as its document's file; the name is that which was asked for, and the file's.
    virtual void beginSave(AcDbDatabase* database, const ACHAR* intendedName);
    virtual void saveComplete(AcDbDatabase* database, const ACHAR* actualName);
    virtual void abortSave(AcDbDatabase* database);

    // A file is read into a drawing, or a copy of one is written.
    virtual void beginDxfIn(AcDbDatabase* database);
    virtual void abortDxfIn(AcDbDatabase* database);
    virtual void dxfInComplete(AcDbDatabase* database);
    virtual void beginDxfOut(AcDbDatabase* database);
    virtual void abortDxfOut(AcDbDatabase* database);
    virtual void dxfOutComplete(AcDbDatabase* database);

protected:
    AcRxEventReactor() = default;
};

// Whom reactors are added to. Stands in the system registry under ACRX_EVENT_OBJ.
class ACDB_PORT AcRxEvent : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxEvent);
    ~AcRxEvent() override;

    // One that is there already is not added again; one that is not there is not missed.
    virtual void addReactor(AcRxEventReactor* reactor);
    virtual void removeReactor(AcRxEventReactor* reactor);

protected:
    AcRxEvent() = default;
};

#define acrxEvent AcRxEvent::cast(acrxSysRegistry()->at(ACRX_EVENT_OBJ))
