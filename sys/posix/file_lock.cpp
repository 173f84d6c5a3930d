#include "sys/file_lock.h"

#include "base/utf.h"
#include "sys/user.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace sys {

namespace fs = std::filesystem;

namespace {

// Of a whole file, of this opening of it and not of this process: a second opening in here does not get it.
struct flock whole_file() {
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return whole;
}

// Whether the file that was opened still has this name: its owner removes it while he has the lock.
bool still_has_name(int file, const fs::path& name) {
    struct stat opened = {};
    struct stat named = {};
    return ::fstat(file, &opened) == 0 && ::lstat(name.c_str(), &named) == 0 &&
           opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
}

// What the holder has written; it comes a moment after he has the lock.
lock_holder read_holder(int file) {
    constexpr int patience = 20;
    constexpr auto pause = std::chrono::milliseconds(5);
    std::array<char, 1024> bytes{};
    std::string_view text;
    for (int attempt = 0; attempt < patience && !text.ends_with('\n'); ++attempt) {
        if (attempt != 0)
            std::this_thread::sleep_for(pause);
        const ssize_t count = ::pread(file, bytes.data(), bytes.size(), 0);
        text = {bytes.data(), static_cast<std::size_t>(count > 0 ? count : 0)};
    }
    lock_holder holder;
    for (std::wstring* const field : {&holder.user, &holder.computer, &holder.since}) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        *field = base::widen(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return holder;
}

// The lock file of a regular file, and its permissions: who may write the one may lock it. Empty of anything
// else.
fs::path lock_name(const fs::path& file, mode_t& mode) {
    std::error_code error;
    fs::path name = fs::canonical(file, error);
    struct stat about = {};
    if (error || ::stat(name.c_str(), &about) != 0 || !S_ISREG(about.st_mode))
        return {};
    mode = (about.st_mode & 0666) | 0600;
    name += ".dwl";
    return name;
}

// A lock file, closed at the end; none where that name is a link, a pipe or a folder.
class open_lock {
public:
    open_lock(const fs::path& name, int flags, mode_t mode)
        : number_(::open(name.c_str(), flags | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, mode)) {
        struct stat about = {};
        if (number_ >= 0 && (::fstat(number_, &about) != 0 || !S_ISREG(about.st_mode)))
            ::close(std::exchange(number_, -1));
    }
    open_lock(const open_lock&) = delete;
    open_lock& operator=(const open_lock&) = delete;
    ~open_lock() {
        if (number_ >= 0)
            ::close(number_);
    }
    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }

private:
    int number_;
};

void write_holder(int file) {
    const std::string text =
        base::narrow(login_name() + L"\n" + computer_name() + L"\n" + local_time() + L"\n");
    // A lock that does not tell who has it is a lock all the same.
    if (::ftruncate(file, 0) == 0) [[maybe_unused]]
        const ssize_t count = ::pwrite(file, text.data(), text.size(), 0);
}

} // namespace

std::wstring lock_holder::words() const {
    if (user.empty())
        return L"another program";
    return user + (computer.empty() ? L"" : L" on " + computer) + (since.empty() ? L"" : L" since " + since);
}

struct file_lock::state {
    fs::path name;
    int file;

    state(fs::path locked, int opened) : name(std::move(locked)), file(opened) {}
    state(const state&) = delete;
    state& operator=(const state&) = delete;
    ~state() {
        if (still_has_name(file, name))
            ::unlink(name.c_str());
        ::close(file);
    }
};

file_lock::file_lock() = default;
file_lock::file_lock(file_lock&&) noexcept = default;
file_lock& file_lock::operator=(file_lock&&) noexcept = default;
file_lock::~file_lock() = default;

bool file_lock::take(const fs::path& file, file_lock& taken, lock_holder& holder) {
    taken = {};
    mode_t mode = 0;
    const fs::path name = lock_name(file, mode);
    // Whoever leaves takes the name away: then it is made anew.
    while (!name.empty()) {
        const open_lock opened(name, O_RDWR | O_CREAT, mode);
        if (!opened)
            return !is_held(file, holder); // of somebody else, or nobody can make one here
        struct flock whole = whole_file();
        if (::fcntl(opened.number(), F_OFD_SETLK, &whole) == 0) {
            if (!still_has_name(opened.number(), name))
                continue;
            taken.state_ = std::make_unique<state>(name, ::fcntl(opened.number(), F_DUPFD_CLOEXEC, 0));
            ::fchmod(opened.number(), mode);
            write_holder(opened.number());
            return true;
        }
        if (errno != EAGAIN && errno != EACCES)
            return true; // a file system without locks
        holder = read_holder(opened.number());
        if (still_has_name(opened.number(), name))
            return false;
    }
    return true;
}

bool file_lock::is_held(const fs::path& file, lock_holder& holder) {
    mode_t mode = 0;
    const fs::path name = lock_name(file, mode);
    const open_lock opened(name, O_RDONLY, 0);
    struct flock whole = whole_file();
    if (name.empty() || !opened || ::fcntl(opened.number(), F_OFD_GETLK, &whole) != 0 ||
        whole.l_type == F_UNLCK)
        return false;
    holder = read_holder(opened.number());
    return true;
}

} // namespace sys
