// Who works on a file: a lock file beside it, its name with ".dwl" behind, says who and since when. What
// counts is the system's lock on that file, which goes with the program however it ends; a file that a killed
// program left behind locks nothing, and the next one takes it over.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace sys {

struct lock_holder {
    std::wstring user;
    std::wstring computer;
    std::wstring since; // "2026-11-22 09:12:31"

    // "anna on pc7 since 2026-11-22 09:12:31"; "another program" when the lock file does not tell.
    std::wstring words() const;
};

class file_lock {
public:
    file_lock(); // of nothing
    file_lock(file_lock&& other) noexcept;
    file_lock& operator=(file_lock&& other) noexcept;
    // Gives the lock back and removes its file.
    ~file_lock();

    // Takes the lock of a file that is there, of a symbolic link that of the file it points to. False when
    // somebody has it, in this program too; `holder` is who. True otherwise: where the folder can not hold a
    // lock (it is read-only, the file system knows no locks), or the file is none, `taken` is a lock of
    // nothing.
    static bool take(const std::filesystem::path& file, file_lock& taken, lock_holder& holder);

    // Whether somebody has the lock of a file, in this program too; `holder` is who.
    static bool is_held(const std::filesystem::path& file, lock_holder& holder);

    bool holds() const { return state_ != nullptr; }

private:
    struct state;
    std::unique_ptr<state> state_;
};

} // namespace sys
