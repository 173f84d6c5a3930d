#include "sys/registry.h"

#include "sys/atomic_file.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/posix/reason.h"
#include "sys/posix/registry_text.h"

#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace sys {

namespace {

namespace fs = std::filesystem;

fs::path registry_path() {
    return profile_folder() / "registry.reg";
}

// Held while a program changes the file. The lock file stays: were it removed, two programs could each hold
// the lock of a file of that name.
class update_lock {
public:
    update_lock() {
        std::error_code ignored;
        fs::create_directories(profile_folder(), ignored);
        file_ = ::open(path().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (file_ < 0) {
            error_ = errno;
            return;
        }
        struct flock whole = {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        // The lock is the descriptor's, not the process': it holds off other threads too.
        do {
            error_ = ::fcntl(file_, F_OFD_SETLKW, &whole) != 0 ? errno : 0;
        } while (error_ == EINTR);
    }
    ~update_lock() {
        if (file_ >= 0)
            ::close(file_);
    }
    update_lock(const update_lock&) = delete;
    update_lock& operator=(const update_lock&) = delete;

    base::result<void> outcome() const {
        return error_ == 0 ? base::result<void>() : base::result<void>(cannot(L"lock", path(), error_));
    }

private:
    static fs::path path() { return profile_folder() / "registry.lock"; }

    int file_ = -1;
    int error_ = 0;
};

// The file as it was read last. It is kept open: as long as it is, no new file gets its number, and so a file
// with the same number, size and time is the same.
class cache {
public:
    std::optional<registry_value> read(std::wstring_view key, std::wstring_view name) {
        const std::lock_guard lock(mutex_);
        const fs::path path = registry_path();
        struct stat about = {};
        if (::stat(path.c_str(), &about) != 0)
            return std::nullopt;
        if (file_ < 0 || !is_same(about, about_))
            load(path);
        return text_.read(key, name);
    }

private:
    static bool is_same(const struct stat& a, const struct stat& b) {
        return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
               a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
    }

    // When another program replaces the file between these steps, what is kept says it is the older one, and
    // the next call reads again.
    void load(const fs::path& path) {
        if (file_ >= 0)
            ::close(file_);
        file_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const bool is_known = file_ >= 0 && ::fstat(file_, &about_) == 0;
        const auto bytes = read_file(path);
        text_ = registry_text(bytes ? bytes->view() : "");
        if (file_ >= 0 && !(is_known && bytes))
            ::close(std::exchange(file_, -1));
    }

    std::mutex mutex_;
    int file_ = -1;
    struct stat about_ = {};
    registry_text text_;
};

// Reads the file, lets `change` work on it and, when that says true, writes it.
template<class Change>
base::result<void> update(Change change) {
    const update_lock lock;
    if (auto locked = lock.outcome(); !locked)
        return locked;
    const fs::path path = registry_path();
    registry_text text;
    const auto bytes = read_file(path);
    if (!bytes && !bytes.failed(base::failure_kind::not_found))
        return bytes.why();
    if (bytes) {
        if (!registry_text::is_text(bytes->view()))
            return base::failure{L"cannot write '" + from_path(path) +
                                 L"': it is neither UTF-16 nor UTF-8 and is left as it is"};
        text = registry_text(bytes->view());
    }
    if (!change(text))
        return {};
    auto file = atomic_file::create(path);
    if (!file)
        return file.why();
    if (auto written = file->write(text.bytes()); !written)
        return written;
    return file->commit();
}

bool has_line_end(std::wstring_view text) {
    return text.find_first_of(std::wstring_view(L"\r\n\0", 3)) != text.npos;
}

} // namespace

std::optional<registry_value> registry_read(std::wstring_view key, std::wstring_view name) {
    static cache the_cache;
    return the_cache.read(key, name);
}

base::result<void> registry_write(std::wstring_view key,
                                  std::span<const std::pair<std::wstring, registry_value>> values) {
    if (key.find_first_not_of(L'\\') == key.npos || has_line_end(key))
        return base::failure{L"no registry key can be named '" + std::wstring(key) + L"'"};
    for (const auto& [name, value] : values) {
        const auto* const text = std::get_if<std::wstring>(&value);
        if (has_line_end(name) || (text != nullptr && has_line_end(*text)))
            return base::failure{L"the registry cannot keep the line end in '" + name + L"' of '" +
                                 std::wstring(key) + L"'"};
    }
    return update([&](registry_text& text) {
        bool changed = false;
        for (const auto& [name, value] : values)
            changed = text.write(key, name, value) || changed;
        return changed;
    });
}

base::result<void> registry_erase(std::wstring_view key, std::wstring_view name) {
    return update([&](registry_text& text) { return text.erase(key, name); });
}

} // namespace sys
