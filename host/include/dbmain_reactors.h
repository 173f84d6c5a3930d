// The part of dbmain.h, which programs include, that holds those who hear of objects and drawings.
#pragma once

#include "acdb.h"
#include "dbid.h"
#include "rxboiler.h"
#include "rxobject.h"

class AcDbDatabase;
class AcDbEntity;
class AcDbObject;

// Hears of an object that it was added to. Told at once: cancelled, copied, openedForModify, goodbye. Told
// when the object is closed, or its outermost transaction ends, after which nobody but readers gets at it
// until objectClosed, which comes last: the others. While U, REDO or an aborted transaction work, the object
// answers true to isUndoing().
//
// A reactor may be added and taken away by one that is being told.
class ACDB_PORT AcDbObjectReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbObjectReactor);
    ~AcDbObjectReactor() override;

    virtual void cancelled(const AcDbObject* object);
    virtual void copied(const AcDbObject* object, const AcDbObject* newObject);
    // Erased, or revived.
    virtual void erased(const AcDbObject* object, Adesk::Boolean erasing = true);
    // The object goes: its drawing is closed, or it was deleted before it joined one.
    virtual void goodbye(const AcDbObject* object);
    // It is about to change for the first time since it was opened.
    virtual void openedForModify(const AcDbObject* object);
    // It was changed.
    virtual void modified(const AcDbObject* object);
    // A change was taken back.
    virtual void modifyUndone(const AcDbObject* object);
    // Its extended data were changed, after modified.
    virtual void modifiedXData(const AcDbObject* object);
    // That it joined the drawing was taken back, or given again.
    virtual void unappended(const AcDbObject* object);
    virtual void reappended(const AcDbObject* object);
    // It was changed, or made, and is closed now: it can be opened again.
    virtual void objectClosed(const AcDbObjectId objectId);

protected:
    AcDbObjectReactor() = default;
};

// Hears what of an entity is to be seen, too.
class ACDB_PORT AcDbEntityReactor : public AcDbObjectReactor {
public:
    ACRX_DECLARE_MEMBERS(AcDbEntityReactor);
    ~AcDbEntityReactor() override;

    // More than its extended data was changed, after modified.
    virtual void modifiedGraphics(const AcDbEntity* entity);
};

// Hears of the objects of a drawing. Told when and how AcDbObjectReactor is, after those of the object.
class ACDB_PORT AcDbDatabaseReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDatabaseReactor);
    ~AcDbDatabaseReactor() override;

    // An object joined the drawing. Its maker has it open still: upgradeOpen gives it to the reactor for the
    // time of the call.
    virtual void objectAppended(const AcDbDatabase* database, const AcDbObject* object);
    virtual void objectUnAppended(const AcDbDatabase* database, const AcDbObject* object);
    virtual void objectReAppended(const AcDbDatabase* database, const AcDbObject* object);
    virtual void objectOpenedForModify(const AcDbDatabase* database, const AcDbObject* object);
    virtual void objectModified(const AcDbDatabase* database, const AcDbObject* object);
    virtual void objectErased(const AcDbDatabase* database, const AcDbObject* object,
                              Adesk::Boolean erased = true);
    // A variable that the drawing keeps is set, by its name; also when it has the value already.
    virtual void headerSysVarWillChange(const AcDbDatabase* database, const ACHAR* name);
    virtual void headerSysVarChanged(const AcDbDatabase* database, const ACHAR* name, Adesk::Boolean success);
    // The drawing is closed; nothing is told after it.
    virtual void goodbye(const AcDbDatabase* database);

protected:
    AcDbDatabaseReactor() = default;
};
