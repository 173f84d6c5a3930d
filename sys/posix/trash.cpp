// The trash of the desktops (freedesktop.org, Trash specification 1.0): below a trash folder the things lie
// in "files", and "info" tells of each from where it came and when.
#include "sys/trash.h"

#include "sys/file.h"
#include "sys/folders.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <pwd.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace sys {

namespace fs = std::filesystem;

namespace {

// Where the file system begins that a folder lies on.
fs::path top_of(fs::path folder) {
    while (!is_root(folder))
        folder = folder.parent_path();
    return folder;
}

// As the value of Path wants it: bytes that are none of a URL's as %XX.
std::string escaped(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x80 && std::isalnum(byte) != 0) ||
            std::string_view("/-_.~").find(c) != std::string_view::npos)
            text += c;
        else
            text += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return text;
}

std::string now_text() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return text;
}

// Makes a new file; false when there is one, or it can not be written.
bool write_new(const fs::path& path, const std::string& bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return false;
    const bool written = ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    ::close(file);
    if (!written)
        ::unlink(path.c_str());
    return written;
}

// False, and the thing where it was, when this trash can not take it: it lies on another file system, or the
// folder can not be made.
bool put_into(const fs::path& trash, const fs::path& thing, const std::string& origin) {
    std::error_code fault;
    fs::create_directories(trash.parent_path(), fault);
    ::mkdir(trash.c_str(), S_IRWXU);
    // Where everybody may write, it may be somebody else's.
    struct stat status {};
    if (::lstat(trash.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != ::getuid())
        return false;
    for (const char* const part : {"files", "info"})
        ::mkdir((trash / part).c_str(), S_IRWXU);
    const std::string note = "[Trash Info]\nPath=" + escaped(origin) + "\nDeletionDate=" + now_text() + "\n";
    constexpr int tries = 10000;
    for (int number = 1; number <= tries; ++number) {
        std::string name = thing.filename().native();
        if (number > 1)
            name += "." + std::to_string(number);
        const fs::path info = trash / "info" / (name + ".trashinfo");
        if (!write_new(info, note)) {
            if (errno == EEXIST)
                continue;
            return false;
        }
        fs::rename(thing, trash / "files" / name, fault);
        if (!fault)
            return true;
        ::unlink(info.c_str());
        return false;
    }
    return false;
}

bool put_into_trash(const fs::path& thing) {
    const fs::path parent = thing.parent_path();
    fs::path data = std::getenv("XDG_DATA_HOME") != nullptr ? std::getenv("XDG_DATA_HOME") : "";
    if (!data.is_absolute())
        data = home_folder().empty() ? fs::path() : home_folder() / ".local" / "share";
    if (!data.empty() && put_into(data / "Trash", thing, thing.native()))
        return true;
    const fs::path top = top_of(parent);
    return put_into(top / (".Trash-" + std::to_string(::getuid())), thing,
                    thing.lexically_relative(top).native());
}

// What a folder holds can be deleted, and the folder moved, only where it may be written to.
void allow_writing(const fs::path& path) {
    std::error_code ignored;
    const auto allow = [&](const fs::path& folder) {
        fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    };
    if (!fs::is_directory(fs::symlink_status(path, ignored)))
        return;
    allow(path);
    for (fs::recursive_directory_iterator at(path, fs::directory_options::skip_permission_denied, ignored),
         end;
         at != end; at.increment(ignored))
        if (fs::is_directory(at->symlink_status(ignored)))
            allow(at->path());
}

} // namespace

base::result<void> discard(const fs::path& path) {
    std::error_code fault;
    const fs::path thing = fs::absolute(path, fault).lexically_normal();
    if (!fs::exists(fs::symlink_status(thing, fault)))
        return {};
    allow_writing(thing);
    if (put_into_trash(thing))
        return {};
    fs::remove_all(thing, fault);
    if (fault)
        return base::failure{L"cannot delete '" + from_path(thing) + L"'"};
    return {};
}

fs::path home_folder() {
    if (const char* const home = std::getenv("HOME"); home != nullptr && *home != '\0')
        return home;
    const passwd* const user = ::getpwuid(::getuid());
    return user != nullptr ? user->pw_dir : "";
}

bool is_root(const fs::path& folder) {
    const fs::path above = folder.parent_path();
    if (above.empty() || above == folder)
        return true;
    struct stat here {};
    struct stat there {};
    return ::stat(folder.c_str(), &here) == 0 && ::stat(above.c_str(), &there) == 0 &&
           here.st_dev != there.st_dev;
}

} // namespace sys
