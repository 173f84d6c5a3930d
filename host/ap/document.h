// One document: its drawing, who has it locked, and what waits to be typed at its command line.
#pragma once

#include "acdocman.h"
#include "host/ap/automatic_save.h"
#include "host/db/tables/layer_history.h"
#include "sys/file_lock.h"
#include "sys/file_stamp.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ap {

class document final : public AcApDocument {
public:
    document(std::unique_ptr<AcDbDatabase> database, std::wstring title);
    ~document() override;

    AcDbDatabase* database() const override { return database_.get(); }
    const ACHAR* fileName() const override;
    const ACHAR* docTitle() const override { return title_.c_str(); }
    bool isReadOnly() const override { return read_only_; }
    AcAp::DocLockMode lockMode(bool includeMyLocks) const override;
    bool isQuiescent() const override { return commands == 0; }
    AcTransactionManager* transactionManager() const override;

    void set_title(std::wstring title) { title_ = std::move(title); }
    // Of a document with that file.
    static std::wstring title_of(const std::wstring& path);

    // What ties the document to its file on the disk.
    struct file_tie {
        sys::file_lock lock;
        std::optional<sys::file_stamp> stamp; // when it was read or saved; none: there was no such file
        std::wstring in_use_by;               // somebody else has it: who, and since when
    };
    const file_tie& file() const { return file_; }
    sys::file_lock take_lock() { return std::move(file_.lock); }
    void tie_to(file_tie file, bool read_only) {
        file_ = std::move(file);
        read_only_ = read_only;
    }

    // Whose a lock is: that of a command, or of what runs outside of commands.
    enum class owner { command, application };

    void lock(owner who, AcAp::DocLockMode mode, std::wstring name);
    // Takes the last lock of an owner off; its name, nothing when there is none.
    std::optional<std::wstring> unlock(owner who);
    // The name of the last lock of an owner.
    const std::wstring* last_lock(owner who) const;
    // The strongest lock of an owner, and of all.
    AcAp::DocLockMode mode_of(owner who) const;
    AcAp::DocLockMode mode() const;
    // The same with one more.
    AcAp::DocLockMode mode_with(owner who, AcAp::DocLockMode more) const;
    bool has_automatic_lock(owner who) const;
    bool may_write(owner who) const;

    automatic_save automatic;

    // Texts that programs typed, for the next time when its command line is idle; what is to be shown alike
    // stands together.
    struct typed_text {
        std::wstring text;
        bool echo;
    };
    std::vector<typed_text> typed;
    bool activates = false; // for which it is made current
    int commands = 0;       // under way in it
    db::layer_history layer_history;

private:
    struct held_lock {
        owner who;
        AcAp::DocLockMode mode;
        std::wstring name;
    };

    std::unique_ptr<AcDbDatabase> database_;
    std::wstring title_;
    bool read_only_ = false;
    file_tie file_;
    std::vector<held_lock> locks_;
};

} // namespace ap
