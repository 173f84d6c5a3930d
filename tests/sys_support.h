// What tests of the system's floor need besides: a profile of their own, and children to starve or kill.
#pragma once

#include "sys/folders.h"
#include "tests/support.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

// A folder that is the profile meanwhile, in memory where the system offers that, so that a thousand saved
// values are not a thousand waits for the disk.
class profile {
public:
    profile() {
        std::string name = std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : "/tmp";
        name += "/zef-test-profile-XXXXXX";
        if (::mkdtemp(name.data()) == nullptr)
            std::abort();
        path_ = name;
        sys::set_profile_folder(path_);
    }
    ~profile() {
        sys::set_profile_folder(before_);
        std::filesystem::remove_all(path_);
    }
    profile(const profile&) = delete;
    profile& operator=(const profile&) = delete;

    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

private:
    std::filesystem::path path_;
    std::filesystem::path before_ = sys::profile_folder();
};

inline void put(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::size_t count_entries(const std::filesystem::path& path) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path), {}));
}

// Runs `work` in a child, which ends with the status that it gives.
template<class Work>
pid_t start_child(Work work) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    return child;
}

// The exit status; -1 when a signal ended the child.
inline int wait_for(pid_t child) {
    int status = 0;
    return ::waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// To be called in a child: the superuser becomes nobody, so that permissions count for it too.
inline bool give_up_rights() {
    return ::geteuid() != 0 || (::setgid(65534) == 0 && ::setuid(65534) == 0);
}

} // namespace test
