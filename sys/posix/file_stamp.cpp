#include "sys/file_stamp.h"

#include <sys/stat.h>

namespace sys {

std::optional<file_stamp> stamp_of(const std::filesystem::path& file) {
    struct stat about = {};
    if (::stat(file.c_str(), &about) != 0 || !S_ISREG(about.st_mode))
        return std::nullopt;
    constexpr std::int64_t second = 1'000'000'000;
    return file_stamp{static_cast<std::uint64_t>(about.st_dev), static_cast<std::uint64_t>(about.st_ino),
                      static_cast<std::uint64_t>(about.st_size),
                      about.st_mtim.tv_sec * second + about.st_mtim.tv_nsec};
}

} // namespace sys
