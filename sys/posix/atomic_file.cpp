#include "sys/atomic_file.h"

#include "sys/posix/reason.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace sys {

namespace {

using std::filesystem::path;

// Smaller pieces are gathered up to this size.
constexpr std::size_t gathered_size = 256 * 1024;

path hidden_name(const path& target) {
    static std::atomic<unsigned> count = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return target.parent_path() / (".zef-" + std::to_string(::getpid()) + "-" + std::to_string(++count) +
                                   "-" + std::to_string(now) + ".tmp");
}

// The same for each program that writes this target, however long its name is.
path shared_name(const path& target) {
    return target.parent_path() /
           (".zef-" + std::to_string(std::hash<std::string>()(target.filename().string())) + ".new");
}

// The file that a chain of symbolic links ends at, whether it exists or not.
base::result<path> follow_links(const path& target) {
    std::error_code error;
    path file = std::filesystem::absolute(target, error);
    for (int links = 0; std::filesystem::is_symlink(file, error); ++links) {
        const path next = std::filesystem::read_symlink(file, error);
        if (error || links == 40)
            return cannot(L"write", target, error ? error.value() : ELOOP);
        file = file.parent_path() / next;
    }
    return file;
}

std::string name_of_descriptor(int file) {
    return "/proc/self/fd/" + std::to_string(file);
}

// A file without a name in that folder: nothing is left of it when this process is killed. -1 where the file
// system has no such, or where it could not be given a name later.
int open_unnamed([[maybe_unused]] const path& folder, [[maybe_unused]] mode_t mode) {
#ifdef O_TMPFILE
    const int file = ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode);
    if (file >= 0 && ::access(name_of_descriptor(file).c_str(), F_OK) == 0)
        return file;
    if (file >= 0)
        ::close(file);
#endif
    return -1;
}

// Marks a file as one that a living program writes: the system takes the lock away when the program ends.
bool lock(int file) {
    struct flock whole = {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    return ::fcntl(file, F_OFD_SETLK, &whole) == 0;
}

// Removes a file that no living program has locked. False when one has, or when it is not ours to touch.
bool clear_if_left_behind(const path& name) {
    const int file = ::open(name.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0)
        return errno == ENOENT;
    struct stat opened = {};
    struct stat named = {};
    const bool left = lock(file) && ::fstat(file, &opened) == 0 && ::stat(name.c_str(), &named) == 0 &&
                      opened.st_ino == named.st_ino && ::unlink(name.c_str()) == 0;
    ::close(file);
    return left;
}

} // namespace

struct atomic_file::state {
    path asked;     // as the caller named it
    path target;    // absolute, no symbolic link
    path temporary; // empty while the new file has no name
    int file = -1;
    std::string gathered;
    base::result<void> outcome;

    ~state() {
        if (file >= 0)
            ::close(file);
        if (!temporary.empty())
            ::unlink(temporary.c_str());
    }

    base::result<void> fail(int error) {
        outcome = cannot(L"write", asked, error);
        return outcome;
    }

    base::result<void> write_through(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = ::write(file, bytes.data(), bytes.size());
            if (count >= 0)
                bytes.remove_prefix(static_cast<std::size_t>(count));
            else if (errno != EINTR)
                return fail(errno);
        }
        return {};
    }

    base::result<void> flush() {
        const auto written = write_through(gathered);
        gathered.clear();
        return written;
    }

    // Gives the new file the old one's bits and, as far as the system lets us, its owner and group. The bits
    // go last: a new owner may take some away.
    bool take_over_rights() {
        struct stat old = {};
        if (::stat(target.c_str(), &old) != 0)
            return errno == ENOENT;
        [[maybe_unused]] const bool given = ::fchown(file, old.st_uid, old.st_gid) == 0 ||
                                            ::fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
        return ::fchmod(file, old.st_mode & 07777) == 0;
    }

    // Puts the new file in the target's place. A file without a name gets one for a moment, always the same
    // beside one target: what a program that was killed just then left behind is cleared away by the next
    // one.
    bool take_place() {
        if (temporary.empty() && !give_name())
            return false;
        if (::rename(temporary.c_str(), target.c_str()) != 0)
            return false;
        temporary.clear();
        return true;
    }

    // The old file keeps its bytes under a second name, where the file system knows such; else they are
    // copied.
    base::result<void> keep_old(const path& backup) {
        std::error_code error;
        if (!std::filesystem::exists(target, error))
            return {};
        ::unlink(backup.c_str());
        if (::link(target.c_str(), backup.c_str()) == 0 ||
            (errno != EEXIST &&
             std::filesystem::copy_file(target, backup, std::filesystem::copy_options::overwrite_existing,
                                        error)))
            return {};
        return cannot(L"keep the old file as", backup, error ? error.value() : EEXIST);
    }

    bool give_name() {
        const path shared = shared_name(target);
        constexpr auto pause = std::chrono::milliseconds(1);
        constexpr int patience = 1000;
        for (int attempt = 0;; ++attempt) {
            // Where locks do not work a name that was left behind looks taken for ever: then one of our own.
            const path name = attempt < patience ? shared : hidden_name(target);
            if (::linkat(AT_FDCWD, name_of_descriptor(file).c_str(), AT_FDCWD, name.c_str(),
                         AT_SYMLINK_FOLLOW) == 0) {
                temporary = name;
                return true;
            }
            if (errno != EEXIST)
                return false;
            // Another program saves this target too, or one was killed while it did.
            if (!clear_if_left_behind(name))
                std::this_thread::sleep_for(pause);
        }
    }

    // True also where folders cannot be opened or flushed: the system then keeps names safe in its own way.
    bool sync_folder() {
        const int folder = ::open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder < 0)
            return true;
        const bool done = ::fsync(folder) == 0 || errno == EINVAL;
        ::close(folder);
        return done;
    }
};

atomic_file::atomic_file(std::unique_ptr<state> made) : state_(std::move(made)) {
}
atomic_file::atomic_file(atomic_file&&) noexcept = default;
atomic_file& atomic_file::operator=(atomic_file&&) noexcept = default;
atomic_file::~atomic_file() = default;

base::result<atomic_file> atomic_file::create(const path& target) {
    auto file = follow_links(target);
    if (!file)
        return file.why();
    auto made = std::make_unique<state>();
    made->asked = target;
    made->target = std::move(*file);

    struct stat old = {};
    const bool is_old = ::stat(made->target.c_str(), &old) == 0;
    if (is_old && S_ISDIR(old.st_mode))
        return cannot(L"write", target, EISDIR);
    if (is_old && !S_ISREG(old.st_mode))
        return cannot(L"write", target, L"it is a device or a pipe");
    if (is_old && ::faccessat(AT_FDCWD, made->target.c_str(), W_OK, AT_EACCESS) != 0)
        return cannot(L"write", target, errno);

    // An old file's bytes may be private: nobody else may read the new ones before they have its bits.
    const mode_t mode = is_old ? 0600 : 0666;
    made->file = open_unnamed(made->target.parent_path(), mode);
    if (made->file >= 0)
        lock(made->file);
    while (made->file < 0) {
        const path name = hidden_name(made->target);
        made->file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (made->file >= 0)
            made->temporary = name;
        else if (errno == ENOENT)
            return cannot(L"write", target, L"no such folder", base::failure_kind::not_found);
        else if (errno != EEXIST)
            return cannot(L"write", target, errno);
    }
    return atomic_file(std::move(made));
}

base::result<void> atomic_file::write(std::string_view bytes) {
    state& s = *state_;
    if (!s.outcome)
        return s.outcome;
    if (s.gathered.size() + bytes.size() > gathered_size) {
        if (const auto written = s.flush(); !written)
            return written;
        if (bytes.size() >= gathered_size)
            return s.write_through(bytes);
    }
    s.gathered += bytes;
    return {};
}

base::result<void> atomic_file::commit(const path& backup) {
    state& s = *state_;
    if (!s.outcome)
        return s.outcome;
    if (const auto written = s.flush(); !written)
        return written;
    if (!s.take_over_rights() || ::fsync(s.file) != 0)
        return s.fail(errno);
    if (!backup.empty())
        if (auto kept = s.keep_old(backup); !kept)
            return s.outcome = kept;
    if (!s.take_place())
        return s.fail(errno);
    if (!s.sync_folder())
        return s.fail(errno);
    return {};
}

} // namespace sys
