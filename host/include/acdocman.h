// Documents: the drawings that are open, and which of them is worked on.
#pragma once

#include "acadstrc.h"
#include "adesk.h"
#include "dbmain.h"
#include "rxobject.h"

namespace AcAp {

// How a document is locked; values add up where that makes sense.
enum DocLockMode {
    kNone = 0x00,
    kAutoWrite = 0x01,
    kNotLocked = 0x02,
    kWrite = 0x04,
    kProtectedAutoWrite = 0x14,
    kRead = 0x20,
    kXWrite = 0x40,
};

} // namespace AcAp

class AcApDocManagerReactor;
class AcTransactionManager;

// One open drawing with its command line. Owned by the document manager.
class ACCORE_PORT AcApDocument : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocument);
    ~AcApDocument() override;

    virtual AcDbDatabase* database() const = 0;
    // The path of its file; empty for a new drawing.
    virtual const ACHAR* fileName() const = 0;
    virtual const ACHAR* docTitle() const = 0;
    virtual bool isReadOnly() const = 0;
    // The strongest lock on it, kNotLocked when there is none; without one's own when includeMyLocks is
    // false: those of a command are not those of the application's context.
    virtual AcAp::DocLockMode lockMode(bool includeMyLocks = true) const = 0;
    // Whether no command is under way in it.
    virtual bool isQuiescent() const = 0;
    virtual AcTransactionManager* transactionManager() const = 0;
};

// Looks on the documents in the order in which they were opened. The caller deletes it.
class ACCORE_PORT AcApDocumentIterator {
public:
    AcApDocumentIterator(const AcApDocumentIterator&) = delete;
    AcApDocumentIterator& operator=(const AcApDocumentIterator&) = delete;
    virtual ~AcApDocumentIterator();
    virtual bool done() const = 0;
    virtual void step() = 0;
    virtual AcApDocument* document() = 0;

protected:
    AcApDocumentIterator() = default;
};

// All documents, which of them is current, and who may change them. There is one: acDocManager.
class ACCORE_PORT AcApDocManager : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManager);
    ~AcApDocManager() override;

    // The document whose command runs, or that is worked on; null when none is open.
    virtual AcApDocument* curDocument() const = 0;
    virtual AcApDocument* mdiActiveDocument() const = 0;
    virtual AcApDocument* document(const AcDbDatabase* database) const = 0;
    virtual int documentCount() const = 0;
    virtual AcApDocumentIterator* newAcApDocumentIterator() = 0;

    // Makes a document current; to have it locked at once say how.
    virtual Acad::ErrorStatus setCurDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kNone,
                                             bool activate = false) = 0;
    // A command's own document is locked for it; anything else locks what it changes: commands of the
    // session, entry points, functions in the application's context. Reading needs no lock. The names are
    // what reactors are told, of an unlocking with # in front. A lock stays until it is unlocked, kAutoWrite
    // until the command line is idle. eNoDocument; eLockChangeInProgress from a reactor that is told of
    // another lock; eVetoed.
    virtual Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kWrite,
                                           const ACHAR* globalCmdName = nullptr,
                                           const ACHAR* localCmdName = nullptr, bool prompt = true) = 0;
    // eNoDocument, eLockChangeInProgress, eInvalidInput when the caller has no lock.
    virtual Acad::ErrorStatus unlockDocument(AcApDocument* document) = 0;

    // Whether what runs is no command of a document.
    virtual bool isApplicationContext() const = 0;
    // Calls a function at once, outside the command under way: documents are locked for nobody there.
    virtual void executeInApplicationContext(void (*function)(void*), void* data) = 0;
    // Calls a function as a command of the current document, or outside of any, when the command line is
    // idle. eInvalidInput without a function.
    virtual Acad::ErrorStatus beginExecuteInCommandContext(void (*function)(void*), void* data) = 0;
    virtual Acad::ErrorStatus beginExecuteInApplicationContext(void (*function)(void*), void* data) = 0;

    // Those who want to hear of documents. The caller keeps them, and takes them away before they go.
    virtual void addReactor(AcApDocManagerReactor* reactor) = 0;
    virtual void removeReactor(AcApDocManagerReactor* reactor) = 0;

    // Opens and closes documents, from the application's context: eInvalidContext elsewhere. Opening makes
    // the document current; what was not saved is lost when it is closed. eFileNotFound, eFileAccessErr,
    // eNoDocument.
    virtual Acad::ErrorStatus appContextNewDocument(const ACHAR* templateName) = 0;
    virtual Acad::ErrorStatus appContextOpenDocument(const ACHAR* fileName) = 0;
    virtual Acad::ErrorStatus appContextCloseDocument(AcApDocument* document) = 0;
    virtual Acad::ErrorStatus closeDocument(AcApDocument* document) = 0;
    virtual Acad::ErrorStatus activateDocument(AcApDocument* document) = 0;

    // Types a text at a document's command prompt: it runs when the command under way has ended. A blank or a
    // line feed ends an answer, an escape character in front cancels what is pending. Of a document that is
    // not current it runs when it becomes current, which `activate` sees to. eNoDocument, also for the
    // current document while kLoadDwgMsg tells of it.
    virtual Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                                  bool activate = true, bool wrapUp = false,
                                                  bool echo = true) = 0;
};

// Hears of documents. A new one: documentCreateStarted, documentCreated (or documentCreateCanceled),
// documentToBeActivated, documentBecameCurrent, documentActivated. One that is closed:
// documentToBeDeactivated, documentToBeDestroyed, documentDestroyed, then another one is activated.
class ACCORE_PORT AcApDocManagerReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcApDocManagerReactor);
    ~AcApDocManagerReactor() override;

    virtual void documentCreateStarted(AcApDocument* document);
    virtual void documentCreated(AcApDocument* document);
    virtual void documentToBeDestroyed(AcApDocument* document);
    virtual void documentDestroyed(const ACHAR* fileName);
    virtual void documentCreateCanceled(AcApDocument* document);

    // The locks of who locks, before and after, and all locks together. The second may veto() a lock, not an
    // unlocking; then the third is told to all.
    virtual void documentLockModeWillChange(AcApDocument* document, AcAp::DocLockMode myCurrentMode,
                                            AcAp::DocLockMode myNewMode, AcAp::DocLockMode currentMode,
                                            const ACHAR* globalCmdName);
    virtual void documentLockModeChanged(AcApDocument* document, AcAp::DocLockMode myPreviousMode,
                                         AcAp::DocLockMode myCurrentMode, AcAp::DocLockMode currentMode,
                                         const ACHAR* globalCmdName);
    virtual void documentLockModeChangeVetoed(AcApDocument* document, const ACHAR* globalCmdName);

    virtual void documentBecameCurrent(AcApDocument* document);
    virtual void documentToBeActivated(AcApDocument* document);
    virtual void documentToBeDeactivated(AcApDocument* document);
    virtual void documentActivated(AcApDocument* document);

    // Refuses the lock that is being told of. eInvalidContext at any other time.
    Acad::ErrorStatus veto();

protected:
    AcApDocManagerReactor() = default;
};

ACCORE_PORT AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()

// The current document; null when none is open.
ACCORE_PORT AcApDocument* curDoc();
