// Transactions: objects that are opened together, and whose changes are kept or taken back together.
#pragma once

#include "dbmain.h"

class AcDbTransactionManager;

// One transaction, as a name of it; the manager owns it until it ends.
class ACDB_PORT AcTransaction : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcTransaction);
    ~AcTransaction() override;

    // As the manager has it.
    virtual Acad::ErrorStatus getObject(AcDbObject*& object, AcDbObjectId id,
                                        AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) = 0;

protected:
    AcTransaction() = default;
};

// Hears of transactions. The numbers are those of the transactions that are under way, before and after.
class ACDB_PORT AcTransactionReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcTransactionReactor);
    ~AcTransactionReactor() override;

    virtual void transactionAboutToStart(int& count, AcDbTransactionManager* manager);
    virtual void transactionAboutToEnd(int& count, AcDbTransactionManager* manager);
    virtual void transactionAboutToAbort(int& count, AcDbTransactionManager* manager);
    virtual void transactionStarted(int& count, AcDbTransactionManager* manager);
    virtual void transactionEnded(int& count, AcDbTransactionManager* manager);
    virtual void transactionAborted(int& count, AcDbTransactionManager* manager);
    // The outermost one ends; a transaction that is started here delays nothing.
    virtual void endCalledOnOutermostTransaction(int& count, AcDbTransactionManager* manager);

protected:
    AcTransactionReactor() = default;
};

// Starts and ends transactions. They stand in each other; when the outermost one ends, what was changed is
// put into the drawings, all of it is told, and the objects are closed. Aborting one takes back what was
// changed since it started, whoever changed it.
//
// An object that a transaction opened is got again by any that stands in it, as often as wanted, for reading
// and for writing; it need not be closed. Anybody else meets it as one that is open.
class ACDB_PORT AcDbTransactionManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbTransactionManager);
    ~AcDbTransactionManager() override;

    // Null while undo or redo tell what they do.
    virtual AcTransaction* startTransaction() = 0;
    // Of the innermost one: eNoActiveTransactions, eInProcessOfCommitting for who is told of its end.
    virtual Acad::ErrorStatus endTransaction() = 0;
    virtual Acad::ErrorStatus abortTransaction() = 0;
    virtual int numActiveTransactions() = 0;
    virtual int numOpenedObjects() = 0;
    // Null when there is none.
    virtual AcTransaction* topTransaction() = 0;

    // As acdbOpenObject, and eNoActiveTransactions.
    virtual Acad::ErrorStatus getObject(AcDbObject*& object, AcDbObjectId id,
                                        AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) = 0;
    // Makes an object that has just joined a drawing, and is open for write still, one of the innermost
    // transaction's. eNoActiveTransactions, eNoDatabase, eNotOpenForWrite; nothing to do without add.
    virtual Acad::ErrorStatus addNewlyCreatedDBRObject(AcDbObject* object, bool add = true) = 0;
    // There is no screen: eOk.
    virtual Acad::ErrorStatus queueForGraphicsFlush() = 0;

    // Those who want to hear of transactions. The caller keeps them, and takes them away before they go.
    virtual void addReactor(AcTransactionReactor* reactor) = 0;
    virtual void removeReactor(AcTransactionReactor* reactor) = 0;

protected:
    AcDbTransactionManager() = default;
};

ACDB_PORT AcDbTransactionManager* acdbTransactionManagerPtr();
#define acdbTransactionManager acdbTransactionManagerPtr()
