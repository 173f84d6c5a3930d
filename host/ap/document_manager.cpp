// The document manager of the interface.
#include "dbapserv.h"
#include "host/ap/documents.h"
#include "host/db/core/file_status.h"
#include "host/rx/reactor_list.h"
#include "rxregsvc.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocument, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManager, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManagerReactor, AcRxObject)

AcApDocument::~AcApDocument() = default;
AcApDocManager::~AcApDocManager() = default;
AcApDocumentIterator::~AcApDocumentIterator() = default;

AcDbHostApplicationServices::~AcDbHostApplicationServices() = default;

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}

AcApDocManagerReactor::~AcApDocManagerReactor() = default;
void AcApDocManagerReactor::documentCreateStarted(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentCreated(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentToBeDestroyed(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentDestroyed(const ACHAR* /*fileName*/) {
}
void AcApDocManagerReactor::documentCreateCanceled(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentLockModeWillChange(AcApDocument* /*document*/,
                                                       AcAp::DocLockMode /*myCurrentMode*/,
                                                       AcAp::DocLockMode /*myNewMode*/,
                                                       AcAp::DocLockMode /*currentMode*/,
                                                       const ACHAR* /*globalCmdName*/) {
}
void AcApDocManagerReactor::documentLockModeChanged(AcApDocument* /*document*/,
                                                    AcAp::DocLockMode /*myPreviousMode*/,
                                                    AcAp::DocLockMode /*myCurrentMode*/,
                                                    AcAp::DocLockMode /*currentMode*/,
                                                    const ACHAR* /*globalCmdName*/) {
}
void AcApDocManagerReactor::documentLockModeChangeVetoed(AcApDocument* /*document*/,
                                                         const ACHAR* /*globalCmdName*/) {
}
void AcApDocManagerReactor::documentBecameCurrent(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentToBeActivated(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentToBeDeactivated(AcApDocument* /*document*/) {
}
void AcApDocManagerReactor::documentActivated(AcApDocument* /*document*/) {
}
Acad::ErrorStatus AcApDocManagerReactor::veto() {
    return ap::documents::instance().veto();
}

namespace ap {

namespace {

class iterator final : public AcApDocumentIterator {
public:
    iterator() {
        for (const auto& one : documents::instance().all())
            all_.push_back(one.get());
    }
    bool done() const override { return at_ >= all_.size(); }
    void step() override { ++at_; }
    AcApDocument* document() override { return done() ? nullptr : all_[at_]; }

private:
    std::vector<AcApDocument*> all_;
    std::size_t at_ = 0;
};

class manager final : public AcApDocManager {
public:
    AcApDocument* curDocument() const override { return all_.current(); }
    AcApDocument* mdiActiveDocument() const override { return all_.active(); }
    AcApDocument* document(const AcDbDatabase* database) const override {
        for (const auto& one : all_.all())
            if (one->database() == database)
                return one.get();
        return nullptr;
    }
    int documentCount() const override { return static_cast<int>(all_.all().size()); }
    AcApDocumentIterator* newAcApDocumentIterator() override { return new iterator; } // the caller's

    Acad::ErrorStatus setCurDocument(AcApDocument* wanted, AcAp::DocLockMode mode, bool activate) override {
        ap::document* const known = all_.find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        if (mode != AcAp::kNone)
            if (const Acad::ErrorStatus status = all_.lock(*known, mode, {}); status != Acad::eOk)
                return status;
        if (activate)
            all_.activate(*known);
        else
            all_.make_current(known);
        return Acad::eOk;
    }

    Acad::ErrorStatus lockDocument(AcApDocument* wanted, AcAp::DocLockMode mode, const ACHAR* globalCmdName,
                                   const ACHAR* /*localCmdName*/, bool /*prompt*/) override {
        ap::document* const known = all_.find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        return mode == AcAp::kNone ? Acad::eOk
                                   : all_.lock(*known, mode, globalCmdName != nullptr ? globalCmdName : L"");
    }
    Acad::ErrorStatus unlockDocument(AcApDocument* wanted) override {
        ap::document* const known = all_.find(wanted);
        return known != nullptr ? all_.unlock(*known) : Acad::eNoDocument;
    }

    bool isApplicationContext() const override { return all_.context() == document::owner::application; }
    void executeInApplicationContext(void (*function)(void*), void* data) override {
        const documents::in_context application(document::owner::application);
        if (function != nullptr)
            function(data);
    }
    Acad::ErrorStatus beginExecuteInCommandContext(void (*function)(void*), void* data) override {
        return begin(document::owner::command, function, data);
    }
    Acad::ErrorStatus beginExecuteInApplicationContext(void (*function)(void*), void* data) override {
        return begin(document::owner::application, function, data);
    }

    void addReactor(AcApDocManagerReactor* reactor) override { all_.reactors().add(reactor); }
    void removeReactor(AcApDocManagerReactor* reactor) override { all_.reactors().remove(reactor); }

    Acad::ErrorStatus appContextNewDocument(const ACHAR* /*templateName*/) override {
        return isApplicationContext() ? opened({}) : Acad::eInvalidContext;
    }
    Acad::ErrorStatus appContextOpenDocument(const ACHAR* fileName) override {
        if (fileName == nullptr || *fileName == 0)
            return Acad::eInvalidInput;
        return isApplicationContext() ? opened(fileName) : Acad::eInvalidContext;
    }
    Acad::ErrorStatus appContextCloseDocument(AcApDocument* wanted) override {
        ap::document* const known = all_.find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        return isApplicationContext() && all_.close(*known) ? Acad::eOk : Acad::eInvalidContext;
    }
    Acad::ErrorStatus closeDocument(AcApDocument* wanted) override { return appContextCloseDocument(wanted); }
    Acad::ErrorStatus activateDocument(AcApDocument* wanted) override {
        ap::document* const known = all_.find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        if (!isApplicationContext() && known != all_.current())
            return Acad::eInvalidContext;
        all_.activate(*known);
        return Acad::eOk;
    }

    Acad::ErrorStatus sendStringToExecute(AcApDocument* wanted, const ACHAR* text, bool activate,
                                          bool /*wrapUp*/, bool echo) override {
        ap::document* const known = all_.find(wanted);
        if (known == nullptr || all_.is_loading(*known))
            return Acad::eNoDocument;
        if (text == nullptr)
            return Acad::eInvalidInput;
        if (known->typed.empty() || known->typed.back().echo != echo)
            known->typed.push_back({{}, echo});
        known->typed.back().text += text;
        known->activates = known->activates || activate;
        return Acad::eOk;
    }

private:
    Acad::ErrorStatus begin(document::owner context, void (*function)(void*), void* data) {
        if (function == nullptr)
            return Acad::eInvalidInput;
        all_.calls.push_back({context, function, data});
        return Acad::eOk;
    }
    Acad::ErrorStatus opened(const std::wstring& path) {
        const auto done = all_.open(path, false);
        return done ? Acad::eOk : db::status_of(done.why(), Acad::eFileAccessErr);
    }

    documents& all_ = documents::instance();
};

} // namespace

} // namespace ap

AcApDocManager* acDocManagerPtr() {
    static ap::manager manager;
    return &manager;
}

AcApDocument* curDoc() {
    return ap::documents::instance().current();
}
