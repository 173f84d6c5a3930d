#include "host/ap/documents.h"

#include "aced.h"
#include "host/ap/surroundings.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/xref/loading.h"
#include "host/rx/applications.h"
#include "host/rx/editor_reactors.h"
#include "host/rx/events.h"
#include "sys/folders.h"

#include <algorithm>
#include <utility>

namespace ap {

namespace {

std::wstring title_of(const std::wstring& path) {
    static int unnamed = 0;
    return !path.empty() ? document::title_of(path) : L"Drawing" + std::to_wstring(++unnamed) + L".dxf";
}

// Who works at a terminal has a drawing to himself as long as it is open, a run without a person while it
// saves.
void tie_for_opening(document& made, const std::wstring& path, bool read_only) {
    document::file_tie tie;
    if (!read_only) {
        const auto file = sys::to_path(path);
        sys::lock_holder holder;
        if (has_person() ? !sys::file_lock::take(file, tie.lock, holder)
                         : sys::file_lock::is_held(file, holder))
            tie.in_use_by = holder.words();
    }
    // Before it is read: what is written while we read counts as a change.
    tie.stamp = sys::stamp_of(sys::to_path(path));
    const bool in_use = !tie.in_use_by.empty();
    made.tie_to(std::move(tie), read_only || in_use);
}

void tell_in_use(const document& opened) {
    if (const std::wstring& who = opened.file().in_use_by;
        !who.empty() && AcDbImpDatabase::how_to_read().tell)
        AcDbImpDatabase::how_to_read().tell(std::wstring(opened.fileName()) + L": in use by " + who +
                                            L"; opened read-only");
}

// Reads what the drawing refers to. What was found and what not is told, and nothing of it is a failure.
void tell_references(AcDbImpDatabase& drawing) {
    for (const std::wstring& line : db::load_references(drawing))
        show(line);
}

} // namespace

documents& documents::instance() {
    static documents the_documents;
    return the_documents;
}

documents::documents() {
    AcApDocument::rxInit();
    AcApDocManager::rxInit();
    AcApDocManagerReactor::rxInit();
    // An application that comes or goes while drawings are open is told of each of them.
    const auto tell = [this](AcRx::AppMsgCode message) {
        return [this, message](const std::wstring& name) {
            const in_context application(document::owner::application);
            for (const auto& one : all_) {
                document* const before = current_;
                set_current(one.get());
                rx::applications::instance().send_to(name, message);
                set_current(before);
            }
        };
    };
    rx::applications::instance().on_loaded = tell(AcRx::kLoadDwgMsg);
    rx::applications::instance().on_unloading = tell(AcRx::kUnloadDwgMsg);
}
documents::~documents() = default;

base::result<void> documents::open(const std::wstring& path, bool read_only) {
    const in_context application(document::owner::application);
    if (!path.empty())
        rx::tell_editor([&](AcEditorReactor& reactor) { reactor.beginDwgOpen(path.c_str()); });
    all_.push_back(std::make_unique<document>(std::make_unique<AcDbDatabase>(path.empty()), title_of(path)));
    document& made = *all_.back();
    if (!path.empty())
        tie_for_opening(made, path, read_only);
    settle_locks();
    reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentCreateStarted(&made); });
    if (!path.empty())
        if (auto read = made.database()->imp().read(path); !read) {
            reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentCreateCanceled(&made); });
            std::erase_if(all_, [&](const auto& one) { return one.get() == &made; });
            return read;
        }
    reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentCreated(&made); });
    if (!path.empty())
        rx::tell_editor([&](AcEditorReactor& reactor) { reactor.endDwgOpen(path.c_str(), made.database()); });
    activate(made);
    tell_in_use(made);
    tell_references(made.database()->imp());
    loading_ = &made;
    rx::applications::instance().send(AcRx::kLoadDwgMsg);
    loading_ = nullptr;
    return {};
}

void documents::set_current(document* wanted) {
    current_ = wanted;
    acdbHostApplicationServices()->setWorkingDatabase(current_database());
}

void documents::make_current(document* wanted) {
    if (current_ == wanted)
        return;
    set_current(wanted);
    if (wanted != nullptr)
        reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentBecameCurrent(wanted); });
}

void documents::activate(document& wanted) {
    if (active_ == &wanted) {
        make_current(&wanted);
        return;
    }
    if (document* const before = active_)
        reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentToBeDeactivated(before); });
    reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentToBeActivated(&wanted); });
    active_ = &wanted;
    make_current(&wanted);
    reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentActivated(&wanted); });
}

base::result<void> documents::close(document& closing) {
    if (!closing.isQuiescent())
        return base::failure{L"a command is under way in '" + std::wstring(closing.docTitle()) + L"'"};
    const in_context application(document::owner::application);
    document* const before = current_;
    rx::tell_editor([&](AcEditorReactor& reactor) { reactor.beginClose(closing.database()); });
    set_current(&closing);
    rx::applications::instance().send(AcRx::kUnloadDwgMsg);
    if (active_ == &closing)
        reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentToBeDeactivated(&closing); });
    reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentToBeDestroyed(&closing); });
    const std::wstring name = closing.fileName();
    if (active_ == &closing)
        active_ = nullptr;
    set_current(nullptr);
    const auto at =
        std::find_if(all_.begin(), all_.end(), [&](const auto& one) { return one.get() == &closing; });
    std::unique_ptr<document> gone = std::move(*at);
    all_.erase(at);
    gone.reset(); // before it is told so
    reactors_.tell([&](AcApDocManagerReactor& reactor) { reactor.documentDestroyed(name.c_str()); });
    if (active_ != nullptr)
        set_current(find(before));
    else if (!all_.empty())
        activate(*all_.back());
    return {};
}

void documents::close_current() {
    if (current_ != nullptr)
        static_cast<void>(close(*current_)); // one that is busy stays
}

void documents::close_all() {
    while (!all_.empty())
        if (!close(*all_.back()))
            return;
}

document* documents::find(const AcApDocument* wanted) const {
    for (const auto& one : all_)
        if (one.get() == wanted)
            return one.get();
    return nullptr;
}

std::wstring documents::current_title() const {
    return current_ != nullptr ? current_->docTitle() : std::wstring();
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

// ---- locks

documents::in_context::in_context(document::owner context)
    : before_(std::exchange(instance().context_, context)) {
    instance().settle_locks();
}

documents::in_context::~in_context() {
    instance().context_ = before_;
    instance().settle_locks();
}

void documents::settle_locks() {
    for (const auto& one : all_)
        one->database()->imp().objects().write_locked = one->may_write(context_);
}

Acad::ErrorStatus documents::lock(document& locked, AcAp::DocLockMode mode, const std::wstring& name) {
    if (locking_)
        return Acad::eLockChangeInProgress;
    locking_ = true;
    vetoed_ = false;
    const AcAp::DocLockMode before = locked.mode_of(context_);
    const AcAp::DocLockMode after = locked.mode_with(context_, mode);
    reactors_.tell([&](AcApDocManagerReactor& reactor) {
        reactor.documentLockModeWillChange(&locked, before, after, locked.mode(), name.c_str());
    });
    locked.lock(context_, mode, name);
    may_veto_ = true;
    reactors_.tell([&](AcApDocManagerReactor& reactor) {
        reactor.documentLockModeChanged(&locked, before, after, locked.mode(), name.c_str());
    });
    may_veto_ = false;
    if (vetoed_) {
        locked.unlock(context_);
        reactors_.tell([&](AcApDocManagerReactor& reactor) {
            reactor.documentLockModeChangeVetoed(&locked, name.c_str());
        });
    }
    locking_ = false;
    settle_locks();
    return vetoed_ ? Acad::eVetoed : Acad::eOk;
}

Acad::ErrorStatus documents::unlock(document& locked) {
    if (locking_)
        return Acad::eLockChangeInProgress;
    const std::wstring* const last = locked.last_lock(context_);
    if (last == nullptr)
        return Acad::eInvalidInput;
    locking_ = true;
    const std::wstring name = L"#" + *last;
    const AcAp::DocLockMode before = locked.mode_of(context_);
    const AcAp::DocLockMode all_before = locked.mode();
    locked.unlock(context_);
    const AcAp::DocLockMode after = locked.mode_of(context_);
    reactors_.tell([&](AcApDocManagerReactor& reactor) {
        reactor.documentLockModeWillChange(&locked, before, after, all_before, name.c_str());
    });
    reactors_.tell([&](AcApDocManagerReactor& reactor) {
        reactor.documentLockModeChanged(&locked, before, after, locked.mode(), name.c_str());
    });
    locking_ = false;
    settle_locks();
    return Acad::eOk;
}

Acad::ErrorStatus documents::veto() {
    if (!may_veto_)
        return Acad::eInvalidContext;
    vetoed_ = true;
    return Acad::eOk;
}

// ---- the time between commands

void documents::be_idle() {
    for (const document::owner who : {document::owner::command, document::owner::application}) {
        const in_context context(who);
        for (std::size_t i = 0; i < all_.size(); ++i)
            while (all_[i]->has_automatic_lock(who) && unlock(*all_[i]) == Acad::eOk) {
            }
    }
    if (active_ != nullptr)
        make_current(active_);
}

bool documents::has_typed() const {
    return std::any_of(all_.begin(), all_.end(), [&](const auto& one) {
        return !one->typed.empty() && (one.get() == current_ || one->activates);
    });
}

std::vector<document::typed_text> documents::take_typed() {
    if (current_ != nullptr && !current_->typed.empty())
        return std::exchange(current_->typed, {});
    for (const auto& one : all_)
        if (!one->typed.empty() && one->activates) {
            one->activates = false;
            activate(*one);
            return std::exchange(current_->typed, {});
        }
    return {};
}

} // namespace ap
