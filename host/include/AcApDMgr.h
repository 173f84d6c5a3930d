// Data of an application for each document.
//
//     AcApDataManager<PipeData> pipeData;         // made when the application comes
//     pipeData.docData().count = 1;               // of the current document
//
// An object of T is made when the data of a document are first asked for, and deleted before the document is.
#pragma once

#include "acdocman.h"

#include <map>
#include <memory>

template<class T>
class AcApDataManager : public AcApDocManagerReactor {
public:
    AcApDataManager() { acDocManager->addReactor(this); }
    AcApDataManager(const AcApDataManager&) = delete;
    AcApDataManager& operator=(const AcApDataManager&) = delete;
    ~AcApDataManager() override { acDocManager->removeReactor(this); }

    void documentToBeDestroyed(AcApDocument* document) override { m_data.erase(document); }

    // Of a document, or of the current one. Data of no document are kept as long as the manager is.
    T& docData(AcApDocument* document) {
        std::unique_ptr<T>& data = m_data[document];
        if (data == nullptr)
            data = std::make_unique<T>();
        return *data;
    }
    T& docData() { return docData(acDocManager->curDocument()); }

private:
    std::map<AcApDocument*, std::unique_ptr<T>> m_data;
};
