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
    virtual AcAp::DocLockMode lockMode(bool includeMyLocks = true) const = 0;
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

    // Makes a document current.
    virtual Acad::ErrorStatus setCurDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kNone,
                                             bool activate = false) = 0;
    // A command's own document is locked for it; anything else locks what it changes. eNoDocument,
    // eLockConflict.
    virtual Acad::ErrorStatus lockDocument(AcApDocument* document, AcAp::DocLockMode mode = AcAp::kWrite,
                                           const ACHAR* globalCmdName = nullptr,
                                           const ACHAR* localCmdName = nullptr, bool prompt = true) = 0;
    virtual Acad::ErrorStatus unlockDocument(AcApDocument* document) = 0;

    // Types a text at a document's command prompt: it runs when the command under way has ended. A blank or a
    // line feed ends an answer, an escape character in front cancels what is pending. eNoDocument.
    virtual Acad::ErrorStatus sendStringToExecute(AcApDocument* document, const ACHAR* text,
                                                  bool activate = true, bool wrapUp = false,
                                                  bool echo = true) = 0;
};

ACCORE_PORT AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()

// The current document; null when none is open.
ACCORE_PORT AcApDocument* curDoc();
