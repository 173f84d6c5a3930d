// A file that is written whole or not at all: the bytes go to a new file in the target's folder, which takes
// the target's place when all of them are on the disk. Until then, and after any failure, the old file is as
// it was.
#pragma once

#include "base/result.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace sys {

class atomic_file {
public:
    // Begins to write `target`, new or old; of a symbolic link the file that it points to, which need not
    // exist yet. Fails when the target is a folder, a device or may not be written, and when its folder is
    // missing.
    static base::result<atomic_file> create(const std::filesystem::path& target);

    atomic_file(atomic_file&&) noexcept;
    atomic_file& operator=(atomic_file&&) noexcept;
    // Drops what was written unless it was committed.
    ~atomic_file();

    // Appends. After a failure every further call fails with the same words.
    base::result<void> write(std::string_view bytes);

    // Puts the new file in the old one's place, with its permission bits and, where the system allows it, its
    // owner; the bytes are on the disk then. To be called once, as the last call. A hard link to the old file
    // keeps the old bytes. Should the very last step fail, the flush of the folder, the new file stands there
    // all the same, but a loss of power may bring the old one back.
    //
    // With the name of a backup, in whatever folder, the old file is kept under that name, in the place of
    // what was there; when that fails nothing is written.
    base::result<void> commit(const std::filesystem::path& backup = {});

private:
    struct state;
    explicit atomic_file(std::unique_ptr<state> made);

    std::unique_ptr<state> state_;
};

} // namespace sys
