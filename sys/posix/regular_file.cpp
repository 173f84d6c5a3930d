#include "sys/regular_file.h"

#include "sys/posix/memory.h"
#include "sys/posix/reason.h"

#include <cstdint>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace sys {

base::result<void> check_regular_file(const std::filesystem::path& path) {
    struct stat about = {};
    if (::stat(path.c_str(), &about) != 0 || S_ISDIR(about.st_mode))
        return {};
    if (!S_ISREG(about.st_mode))
        return cannot(L"read", path, L"it is a pipe or a device, not a file");
    struct statfs system = {};
    if (::statfs(path.c_str(), &system) == 0 &&
        (system.f_type == PROC_SUPER_MAGIC || system.f_type == SYSFS_MAGIC))
        return cannot(L"read", path, L"it is no file on a disk: the system makes it up");
    if (static_cast<std::uintmax_t>(about.st_size) > half_of_memory())
        return cannot(L"read", path, L"it is larger than half of this machine's memory");
    return {};
}

} // namespace sys
