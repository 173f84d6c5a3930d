// One document: its drawing, who has it locked, and what waits to be typed at its command line.
#pragma once

#include "acdocman.h"
#include "host/db/layer_history.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ap {

class document final : public AcApDocument {
public:
    document(std::unique_ptr<AcDbDatabase> database, std::wstring title, bool read_only);
    ~document() override;

    AcDbDatabase* database() const override { return database_.get(); }
    const ACHAR* fileName() const override;
    const ACHAR* docTitle() const override { return title_.c_str(); }
    bool isReadOnly() const override { return read_only_; }
    AcAp::DocLockMode lockMode(bool includeMyLocks) const override;
    bool isQuiescent() const override { return commands == 0; }
    AcTransactionManager* transactionManager() const override;

    void set_title(std::wstring title) { title_ = std::move(title); }
    void set_writable() { read_only_ = false; }

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
    bool read_only_;
    std::vector<held_lock> locks_;
};

} // namespace ap
