// An application that writes down whatever it is told, and has commands to be told of.
#include "AcApDMgr.h"
#include "aced.h"
#include "actrans.h"
#include "arxEntryPoint.h"
#include "dbents.h"
#include "dbobjptr.h"

#include <memory>

namespace {

void trace(const ACHAR* format, const ACHAR* a = _T(""), const ACHAR* b = _T(""), const ACHAR* c = _T("")) {
    AcString line;
    line.format(format, a, b, c);
    acutPrintf(_T("\n~ %s"), line.kwszPtr());
}

const ACHAR* typeOf(const AcDbObject* object) {
    return object->isA()->name();
}

const ACHAR* undoing(const AcDbObject* object) {
    return object->isUndoing() ? _T(", undoing") : _T("");
}

const ACHAR* titleOf(const AcApDocument* document) {
    return document != nullptr ? document->docTitle() : _T("none");
}

const ACHAR* nameOf(AcAp::DocLockMode mode) {
    switch (mode) {
    case AcAp::kNotLocked:
        return _T("unlocked");
    case AcAp::kWrite:
        return _T("write");
    case AcAp::kRead:
        return _T("read");
    case AcAp::kAutoWrite:
        return _T("auto");
    case AcAp::kXWrite:
        return _T("exclusive");
    default:
        return _T("other");
    }
}

class DatabaseTrace : public AcDbDatabaseReactor {
public:
    void objectAppended(const AcDbDatabase*, const AcDbObject* o) override {
        trace(_T("appended %s"), typeOf(o));
    }
    void objectUnAppended(const AcDbDatabase*, const AcDbObject* o) override {
        trace(_T("unappended %s%s"), typeOf(o), undoing(o));
    }
    void objectReAppended(const AcDbDatabase*, const AcDbObject* o) override {
        trace(_T("reappended %s%s"), typeOf(o), undoing(o));
    }
    void objectOpenedForModify(const AcDbDatabase*, const AcDbObject* o) override {
        trace(_T("opened %s"), typeOf(o));
    }
    void objectModified(const AcDbDatabase*, const AcDbObject* o) override {
        trace(_T("modified %s%s"), typeOf(o), undoing(o));
    }
    void objectErased(const AcDbDatabase*, const AcDbObject* o, Adesk::Boolean erased) override {
        trace(erased ? _T("erased %s%s") : _T("revived %s%s"), typeOf(o), undoing(o));
    }
    void headerSysVarWillChange(const AcDbDatabase*, const ACHAR* name) override {
        trace(_T("header %s will change"), name);
    }
    void headerSysVarChanged(const AcDbDatabase*, const ACHAR* name, Adesk::Boolean success) override {
        trace(success ? _T("header %s changed") : _T("header %s not changed"), name);
    }
    void goodbye(const AcDbDatabase*) override { trace(_T("goodbye")); }
};

// Hears of every drawing to its end.
DatabaseTrace databaseTrace;

// A document's data have its drawing watched.
struct DocumentData {
    DocumentData() { curDoc()->database()->addReactor(&databaseTrace); }
    ~DocumentData() { trace(_T("data of a document go")); }
    int commands = 0;
};

class EditorTrace : public AcEditorReactor {
public:
    void databaseConstructed(AcDbDatabase*) override { trace(_T("database made")); }
    void databaseToBeDestroyed(AcDbDatabase*) override { trace(_T("database goes")); }
    void beginSave(AcDbDatabase*, const ACHAR*) override { trace(_T("save begins")); }
    void saveComplete(AcDbDatabase*, const ACHAR*) override { trace(_T("save complete")); }
    void commandWillStart(const ACHAR* name) override { trace(_T("%s will start"), name); }
    void commandEnded(const ACHAR* name) override;
    void commandCancelled(const ACHAR* name) override { trace(_T("%s cancelled"), name); }
    void commandFailed(const ACHAR* name) override { trace(_T("%s failed"), name); }
    void unknownCommand(const ACHAR* text, AcDbVoidPtrArray*) override { trace(_T("unknown: %s"), text); }
    void sysVarWillChange(const ACHAR* name) override { trace(_T("variable %s will change"), name); }
    void sysVarChanged(const ACHAR* name, Adesk::Boolean success) override {
        trace(success ? _T("variable %s changed") : _T("variable %s not changed"), name);
    }
    void beginDwgOpen(const ACHAR*) override { trace(_T("opening begins")); }
    void endDwgOpen(const ACHAR*, AcDbDatabase*) override { trace(_T("opening ends")); }
    void beginClose(AcDbDatabase*) override { trace(_T("closing begins")); }
    void quitWillStart() override { trace(_T("quit")); }
    AcString changesAfter; // the command in whose end the drawing is changed
};

class DocumentTrace : public AcApDocManagerReactor {
public:
    void documentCreateStarted(AcApDocument* d) override {
        trace(_T("document %s: create started"), titleOf(d));
    }
    void documentCreated(AcApDocument* d) override { trace(_T("document %s: created"), titleOf(d)); }
    void documentCreateCanceled(AcApDocument* d) override {
        trace(_T("document %s: not created"), titleOf(d));
    }
    void documentToBeDestroyed(AcApDocument* d) override { trace(_T("document %s: goes"), titleOf(d)); }
    void documentDestroyed(const ACHAR* name) override {
        trace(*name != 0 ? _T("a document is gone") : _T("a document without a name is gone"));
    }
    void documentBecameCurrent(AcApDocument* d) override { trace(_T("document %s: current"), titleOf(d)); }
    void documentToBeActivated(AcApDocument* d) override {
        trace(_T("document %s: to be active"), titleOf(d));
    }
    void documentToBeDeactivated(AcApDocument* d) override {
        trace(_T("document %s: active no more"), titleOf(d));
    }
    void documentActivated(AcApDocument* d) override { trace(_T("document %s: active"), titleOf(d)); }
    void documentLockModeWillChange(AcApDocument*, AcAp::DocLockMode from, AcAp::DocLockMode to,
                                    AcAp::DocLockMode, const ACHAR* name) override {
        trace(_T("lock of %s: from %s to %s"), name, nameOf(from), nameOf(to));
    }
    void documentLockModeChanged(AcApDocument* document, AcAp::DocLockMode, AcAp::DocLockMode,
                                 AcAp::DocLockMode all, const ACHAR* name) override {
        trace(_T("lock of %s: now %s"), name, nameOf(all));
        if (!vetoed.isEmpty() && vetoed.compareNoCase(name) == 0)
            trace(veto() == Acad::eOk ? _T("vetoed") : _T("not vetoed"));
        if (acDocManager->lockDocument(document) != Acad::eLockChangeInProgress)
            trace(_T("a lock inside of a lock"));
    }
    void documentLockModeChangeVetoed(AcApDocument*, const ACHAR* name) override {
        trace(_T("lock of %s: vetoed"), name);
    }
    AcString vetoed; // the command whose lock is refused
};

class TransactionTrace : public AcTransactionReactor {
public:
    void transactionStarted(int& count, AcDbTransactionManager*) override { tell(_T("started"), count); }
    void transactionEnded(int& count, AcDbTransactionManager*) override { tell(_T("ended"), count); }
    void transactionAborted(int& count, AcDbTransactionManager*) override { tell(_T("aborted"), count); }
    void endCalledOnOutermostTransaction(int&, AcDbTransactionManager*) override {
        trace(_T("the outermost transaction ends"));
    }

private:
    static void tell(const ACHAR* what, int count) {
        AcString line;
        line.format(_T("transaction %s, %d now"), what, count);
        trace(_T("%s"), line.kwszPtr());
    }
};

EditorTrace* editorTrace = nullptr;
DocumentTrace* documentTrace = nullptr;
TransactionTrace* transactionTrace = nullptr;
AcApDataManager<DocumentData>* documentData = nullptr;

AcDbObjectId addLine(double length) {
    AcDbObjectPointer<AcDbLine> line;
    line.create();
    line->setEndPoint(AcGePoint3d(length, 0, 0));
    AcDbBlockTableRecordPointer space(ACDB_MODEL_SPACE, curDoc()->database(), AcDb::kForWrite);
    AcDbObjectId id;
    if (space.openStatus() == Acad::eOk)
        space->appendAcDbEntity(id, line);
    else
        trace(_T("model space: %s"), acadErrorStatusText(space.openStatus()));
    return id;
}

void EditorTrace::commandEnded(const ACHAR* name) {
    trace(_T("%s ended"), name);
    if (curDoc() != nullptr)
        ++documentData->docData().commands;
    int number = 0;
    if (changesAfter.compareNoCase(name) != 0)
        return;
    changesAfter.setEmpty();
    addLine(7);
    if (acedGetInt(_T("\nNobody is asked: "), &number) == RTERROR &&
        acedCommandS(RTSTR, _T("REGEN"), 0) == RTERROR)
        trace(_T("nobody can be asked"));
}

} // namespace

class Tracing : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        editorTrace = new EditorTrace;
        documentTrace = new DocumentTrace;
        transactionTrace = new TransactionTrace;
        acedEditor->addReactor(editorTrace);
        acDocManager->addReactor(documentTrace);
        actrTransactionManager->addReactor(transactionTrace);
        documentData = new AcApDataManager<DocumentData>;
        return AcRxArxApp::On_kInitAppMsg(packet);
    }
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        delete documentData;
        acedEditor->removeReactor(editorTrace);
        acDocManager->removeReactor(documentTrace);
        actrTransactionManager->removeReactor(transactionTrace);
        delete editorTrace;
        delete documentTrace;
        delete transactionTrace;
        return AcRxArxApp::On_kUnloadAppMsg(packet);
    }
    AcRx::AppRetCode On_kLoadDwgMsg(void* packet) override {
        trace(_T("load message for %s"), titleOf(curDoc()));
        documentData->docData();
        addLine(1);
        if (acDocManager->sendStringToExecute(curDoc(), _T("REGEN\n")) != Acad::eNoDocument)
            trace(_T("a text for a document that is not there yet"));
        return AcRxArxApp::On_kLoadDwgMsg(packet);
    }
    AcRx::AppRetCode On_kUnloadDwgMsg(void* packet) override {
        trace(_T("unload message for %s"), titleOf(curDoc()));
        return AcRxArxApp::On_kUnloadDwgMsg(packet);
    }
    void RegisterServerComponents() override {}

    // Adds a line, changes it, erases another one.
    static void TRACING_TRCHANGE() {
        const AcDbObjectId first = addLine(1);
        const AcDbObjectId second = addLine(2);
        {
            AcDbObjectPointer<AcDbLine> line(first, AcDb::kForWrite);
            line->setEndPoint(AcGePoint3d(5, 0, 0));
        }
        AcDbObjectPointer<AcDbLine> other(second, AcDb::kForWrite);
        other->erase();
    }
    static void TRACING_TRASK() {
        int number = 0;
        while (acedGetInt(_T("\nNumber: "), &number) == RTNORM)
            addLine(number);
    }
    static void TRACING_TRFAIL() { throw 1; }
    // Refuses the next lock for a command; changes the drawing at the end of one.
    static void TRACING_TRVETO() { acedGetString(0, _T("\nRefuse: "), documentTrace->vetoed); }
    static void TRACING_TRAFTER() { acedGetString(0, _T("\nAfter: "), editorTrace->changesAfter); }
    // In the application's context: without a lock, and with one.
    static void TRACING_TRSESSION() {
        trace(acDocManager->isApplicationContext() ? _T("application context") : _T("document context"));
        addLine(1);
        if (acedCommandS(RTSTR, _T("REGEN"), 0) == RTERROR)
            trace(_T("no commands here"));
        acDocManager->lockDocument(curDoc(), AcAp::kWrite, _T("TRLOCK"), _T("TRLOCK"));
        addLine(1);
        acDocManager->unlockDocument(curDoc());
    }
    static void TRACING_TROUTSIDE() {
        acDocManager->executeInApplicationContext([](void*) { addLine(1); }, nullptr);
        acDocManager->beginExecuteInCommandContext(
            [](void*) {
                trace(_T("called later"));
                addLine(1);
            },
            nullptr);
        acDocManager->sendStringToExecute(curDoc(), _T("TRASK 3 \n"));
    }
    // A command inside of a command.
    static void TRACING_TRNEST() {
        const int good = acedCommandS(RTSTR, _T("_.TRASK"), RTSHORT, 4, RTLONG, 5, RTSTR, _T(""), 0);
        const int bad = acedCommandS(RTSTR, _T("TRASK"), RTSTR, _T("x"), RTSTR, _T(""), 0);
        const int few = acedCommandS(RTSTR, _T("TRASK"), RTNONE);
        const int none = acedCommandS(RTSTR, _T("NOSUCHTHING"), RTNONE);
        acutPrintf(_T("\n~ %d %d %d %d"), good, bad, few, none);
    }
    static void TRACING_TRTRANS() {
        AcDbTransactionManager* const manager = actrTransactionManager;
        manager->startTransaction();
        AcDbObject* layer = nullptr;
        manager->getObject(layer, curDoc()->database()->clayer(), AcDb::kForWrite);
        AcDbLayerTableRecord::cast(layer)->setVPDFLT(true);
        manager->startTransaction();
        addLine(9);
        manager->abortTransaction();
        manager->endTransaction();
        manager->startTransaction(); // and forgotten
    }
    // Draws in the documents that are not looked at, and types a command there.
    static void TRACING_TROTHERS() {
        const std::unique_ptr<AcApDocumentIterator> each(acDocManager->newAcApDocumentIterator());
        for (; !each->done(); each->step()) {
            AcApDocument* const other = each->document();
            if (other == acDocManager->mdiActiveDocument())
                continue;
            if (acDocManager->setCurDocument(other, AcAp::kWrite) == Acad::eOk)
                addLine(1);
            acDocManager->unlockDocument(other);
            acDocManager->sendStringToExecute(other, _T("TRCOUNT\n"));
        }
    }
    static void TRACING_TRCOUNT() {
        acutPrintf(_T("\n~ %d commands in %s"), documentData->docData().commands, titleOf(curDoc()));
    }
};

IMPLEMENT_ARX_ENTRYPOINT(Tracing)

ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRCHANGE, TRCHANGE, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRASK, TRASK, ACRX_CMD_TRANSPARENT, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRFAIL, TRFAIL, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRVETO, TRVETO, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRAFTER, TRAFTER, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRSESSION, TRSESSION, ACRX_CMD_SESSION, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TROUTSIDE, TROUTSIDE, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRNEST, TRNEST, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRTRANS, TRTRANS, ACRX_CMD_MODAL, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TROTHERS, TROTHERS, ACRX_CMD_SESSION, nullptr)
ACED_ARXCOMMAND_ENTRY_AUTO(Tracing, TRACING, _TRCOUNT, TRCOUNT, ACRX_CMD_MODAL, nullptr)
