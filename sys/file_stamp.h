// What tells whether a file is still the one that was read: which file it is, how long, and when it was
// written last.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace sys {

struct file_stamp {
    std::uint64_t device = 0;
    std::uint64_t number = 0; // of the file on its device
    std::uint64_t size = 0;
    std::int64_t written = 0; // nanoseconds

    bool operator==(const file_stamp&) const = default;
};

// The stamp of a regular file, links followed; nothing for anything else, and for what is not there.
std::optional<file_stamp> stamp_of(const std::filesystem::path& file);

} // namespace sys
