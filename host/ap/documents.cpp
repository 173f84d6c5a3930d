#include "host/ap/documents.h"

#include "dbapserv.h"
#include "host/db/imp_database.h"
#include "host/db/xrefs.h"
#include "host/ed/editor.h"
#include "host/rx/applications.h"
#include "rxregsvc.h"
#include "sys/folders.h"

#include <algorithm>

ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocument, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcApDocManager, AcRxObject)

AcApDocument::~AcApDocument() = default;
AcApDocManager::~AcApDocManager() = default;
AcApDocumentIterator::~AcApDocumentIterator() = default;

AcDbHostApplicationServices::~AcDbHostApplicationServices() = default;

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}

namespace ap {

class document final : public AcApDocument {
public:
    AcDbDatabase* database() const override { return database_.get(); }
    const ACHAR* fileName() const override { return database_->imp().file_name.c_str(); }
    const ACHAR* docTitle() const override { return title_.c_str(); }
    bool isReadOnly() const override { return read_only_; }
    AcAp::DocLockMode lockMode(bool /*includeMyLocks*/) const override {
        return locks_ != 0 || ed::editor::instance().command() != nullptr ? AcAp::kWrite : AcAp::kNotLocked;
    }

    document(std::unique_ptr<AcDbDatabase> database, std::wstring title, bool read_only)
        : database_(std::move(database)), title_(std::move(title)), read_only_(read_only) {}

    void lock() { ++locks_; }
    bool unlock() {
        if (locks_ == 0)
            return false;
        --locks_;
        return true;
    }
    void set_title(std::wstring title) { title_ = std::move(title); }
    void set_writable() { read_only_ = false; }

private:
    std::unique_ptr<AcDbDatabase> database_;
    std::wstring title_;
    bool read_only_;
    int locks_ = 0;
};

namespace {

std::wstring title_of(const std::wstring& path) {
    return path.empty() ? L"Drawing1.dxf" : sys::from_path(sys::to_path(path).filename());
}

// Reads what the drawing refers to. What was found and what not is told, and nothing of it is a failure.
void tell_references(AcDbImpDatabase& drawing) {
    for (const std::wstring& line : drawing.references().load()) {
        ed::command_line::instance().fresh_line();
        ed::command_line::instance().print(line + L"\n");
    }
}

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
    AcApDocument* curDocument() const override { return documents::instance().current(); }
    AcApDocument* mdiActiveDocument() const override { return documents::instance().current(); }
    AcApDocument* document(const AcDbDatabase* database) const override {
        for (const auto& one : documents::instance().all())
            if (one->database() == database)
                return one.get();
        return nullptr;
    }
    int documentCount() const override { return static_cast<int>(documents::instance().all().size()); }
    AcApDocumentIterator* newAcApDocumentIterator() override { return new iterator; } // the caller's

    Acad::ErrorStatus setCurDocument(AcApDocument* wanted, AcAp::DocLockMode mode,
                                     bool /*activate*/) override {
        ap::document* const known = find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        documents::instance().make_current(known);
        return mode == AcAp::kNone ? Acad::eOk : lockDocument(wanted, mode, nullptr, nullptr, true);
    }

    Acad::ErrorStatus lockDocument(AcApDocument* wanted, AcAp::DocLockMode mode,
                                   const ACHAR* /*globalCmdName*/, const ACHAR* /*localCmdName*/,
                                   bool /*prompt*/) override {
        ap::document* const known = find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        if (mode != AcAp::kNone)
            known->lock();
        return Acad::eOk;
    }

    Acad::ErrorStatus unlockDocument(AcApDocument* wanted) override {
        ap::document* const known = find(wanted);
        if (known == nullptr)
            return Acad::eNoDocument;
        return known->unlock() ? Acad::eOk : Acad::eInvalidInput;
    }

    Acad::ErrorStatus sendStringToExecute(AcApDocument* wanted, const ACHAR* text, bool /*activate*/,
                                          bool /*wrapUp*/, bool /*echo*/) override {
        if (find(wanted) == nullptr)
            return Acad::eNoDocument;
        if (text == nullptr)
            return Acad::eInvalidInput;
        ed::editor::instance().send_when_ended(text);
        return Acad::eOk;
    }

private:
    static ap::document* find(const AcApDocument* wanted) {
        for (const auto& one : documents::instance().all())
            if (one.get() == wanted)
                return one.get();
        return nullptr;
    }
};

} // namespace

documents& documents::instance() {
    static documents the_documents;
    return the_documents;
}

documents::documents() {
    // An application that comes or goes while drawings are open is told of each of them.
    const auto tell = [this](AcRx::AppMsgCode message) {
        return [this, message](const std::wstring& name) {
            for (const auto& one : all_) {
                document* const before = current_;
                make_current(one.get());
                rx::applications::instance().send_to(name, message);
                make_current(before);
            }
        };
    };
    rx::applications::instance().on_loaded = tell(AcRx::kLoadDwgMsg);
    rx::applications::instance().on_unloading = tell(AcRx::kUnloadDwgMsg);
}
documents::~documents() = default;

base::result<void> documents::open(const std::wstring& path, bool read_only) {
    AcApDocument::rxInit();
    AcApDocManager::rxInit();
    auto database = std::make_unique<AcDbDatabase>(path.empty(), true);
    if (!path.empty())
        if (auto read = database->imp().read(path); !read)
            return read;
    all_.push_back(std::make_unique<document>(std::move(database), title_of(path), read_only));
    make_current(all_.back().get());
    tell_references(current_database()->imp());
    rx::applications::instance().send(AcRx::kLoadDwgMsg);
    return {};
}

void documents::make_current(document* wanted) {
    current_ = wanted;
    acdbHostApplicationServices()->setWorkingDatabase(current_database());
}

void documents::close_all() {
    while (!all_.empty()) {
        make_current(all_.back().get());
        rx::applications::instance().send(AcRx::kUnloadDwgMsg);
        current_ = nullptr;
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
        all_.pop_back();
    }
}

AcDbDatabase* documents::current_database() const {
    return current_ != nullptr ? current_->database() : nullptr;
}

std::vector<AcDbDatabase*> documents::databases() const {
    std::vector<AcDbDatabase*> found;
    for (const auto& one : all_)
        found.push_back(one->database());
    return found;
}

base::result<void> documents::save(const std::wstring& path) {
    if (current_ == nullptr)
        return base::failure{L"no drawing is open"};
    const std::wstring target = path.empty() ? current_->fileName() : path;
    if (target.empty())
        return base::failure{L"the drawing has no name yet; use SAVEAS"};
    std::error_code ignored;
    for (const auto& other : all_)
        if (other.get() != current_ &&
            std::filesystem::equivalent(sys::to_path(target), sys::to_path(other->fileName()), ignored))
            return base::failure{L"'" + target + L"' is open in another document"};
    if (current_->isReadOnly() &&
        std::filesystem::equivalent(sys::to_path(target), sys::to_path(current_->fileName()), ignored))
        return base::failure{L"'" + target + L"' was opened read-only"};
    if (auto saved = current_->database()->imp().save(target); !saved)
        return saved;
    if (!path.empty())
        current_->set_writable();
    current_->set_title(title_of(target));
    return {};
}

} // namespace ap

AcApDocManager* acDocManagerPtr() {
    static ap::manager manager;
    return &manager;
}

AcApDocument* curDoc() {
    return ap::documents::instance().current();
}
