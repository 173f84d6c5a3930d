// Locks the current document for writing for the time of a scope.
#pragma once

#include "acdocman.h"

class CDocumentLock {
public:
    CDocumentLock() : m_document(curDoc()) {
        if (m_document != nullptr && acDocManager->lockDocument(m_document, AcAp::kWrite) != Acad::eOk)
            m_document = nullptr;
    }
    ~CDocumentLock() {
        if (m_document != nullptr)
            acDocManager->unlockDocument(m_document);
    }
    CDocumentLock(const CDocumentLock&) = delete;
    CDocumentLock& operator=(const CDocumentLock&) = delete;

private:
    AcApDocument* m_document; // null when it is not locked
};
