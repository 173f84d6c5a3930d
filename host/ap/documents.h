// The documents that are open, behind the document manager of the interface.
#pragma once

#include "base/result.h"
#include "host/ap/document.h"
#include "host/rx/reactor_list.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace ap {

class ACCORE_PORT documents {
public:
    // The one that the process has.
    static documents& instance();

    documents(const documents&) = delete;
    documents& operator=(const documents&) = delete;

    // Opens a drawing file, or with an empty path a new drawing, and makes it current. The applications are
    // told. One that somebody else has open at a terminal is opened read-only, and the user is told who it
    // is.
    base::result<void> open(const std::wstring& path, bool read_only);
    // Closes a document, the applications told, and what was opened last of the others becomes current. Not
    // while a command is under way in it.
    base::result<void> close(document& closing);
    // The same of the current document, if there is one, and of all of them.
    void close_current();
    void close_all();

    // Whose command runs, or that is worked on; and that which the user looks at.
    document* current() const { return current_; }
    document* active() const { return active_; }
    // What a window would be headed with; empty when none is open.
    std::wstring current_title() const;
    // The database of the current document; null when none is open.
    AcDbDatabase* current_database() const;
    std::vector<AcDbDatabase*> databases() const;
    const std::vector<std::unique_ptr<document>>& all() const { return all_; }
    // The document of that address; null when there is none any more.
    document* find(const AcApDocument* wanted) const;
    // Makes one current for what runs; for the user, too.
    void make_current(document* wanted);
    void activate(document& wanted);

    // Saves the current document's drawing; an empty path means its own file. The document is tied to the
    // file from then on. As AcDbImpDatabase::save has `version`; a drawing that was saved as a newer version
    // than its own is read from the file anew when the command has ended. Fails, with words for the user,
    // when it was opened read-only, somebody else has that file open, or it was changed on the disk since it
    // was opened and `changed` does not say that it may be lost. With ISAVEBAK the old file is kept beside
    // the new one, with the ending ".bak".
    enum class if_changed { refuse, replace };
    base::result<void> save(const std::wstring& path, int version = 0,
                            if_changed changed = if_changed::refuse);
    // Writes a copy; the document stays tied to its own file, which this may not be.
    base::result<void> save_copy(const std::wstring& path, int version = 0);
    // At a prompt: the automatic saves that are due.
    void save_automatically();
    // Whether a path means the current document's own file, and that was changed on the disk since it was
    // opened.
    bool was_changed_on_disk(const std::wstring& path) const;

    // ---- locks

    // What runs: a document's command, or something else.
    document::owner context() const { return context_; }
    class in_context {
    public:
        explicit in_context(document::owner context);
        in_context(const in_context&) = delete;
        in_context& operator=(const in_context&) = delete;
        ~in_context();

    private:
        document::owner before_;
    };
    // As AcApDocManager has it, for what runs.
    Acad::ErrorStatus lock(document& locked, AcAp::DocLockMode mode, const std::wstring& name);
    Acad::ErrorStatus unlock(document& locked);
    // What a reactor that is told of a lock does.
    Acad::ErrorStatus veto();

    // ---- the time between commands

    // What was to be done then. Locks that hold until then go, and what the user looks at is current again.
    struct call {
        document::owner context;
        void (*function)(void*);
        void* data;
    };
    std::deque<call> calls;
    void be_idle();
    // What was typed at the command line of the document that is to run it now, which becomes current; empty
    // when nothing was.
    std::vector<document::typed_text> take_typed();
    bool has_typed() const;
    // Whether a document is being told of by kLoadDwgMsg.
    bool is_loading(const document& one) const { return loading_ == &one; }

    rx::reactor_list<AcApDocManagerReactor>& reactors() { return reactors_; }

private:
    documents();
    ~documents();

    base::result<sys::file_lock> lock_target(const std::wstring& target) const;
    void set_current(document* wanted);
    void settle_locks();

    std::vector<std::unique_ptr<document>> all_;
    document* current_ = nullptr;
    document* active_ = nullptr;
    document* loading_ = nullptr;
    document::owner context_ = document::owner::application;
    bool locking_ = false;
    bool may_veto_ = false;
    bool vetoed_ = false;
    rx::reactor_list<AcApDocManagerReactor> reactors_;
};

} // namespace ap
