#include "sys/folders.h"

#include "base/utf.h"

#include <cstdlib>
#include <pwd.h>
#include <system_error>
#include <unistd.h>

namespace sys {

namespace fs = std::filesystem;

namespace {

// The value of an environment variable; empty when it is unset, too.
fs::path from_environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

fs::path to_path(std::wstring_view text) {
    return base::narrow(text);
}

std::wstring from_path(const fs::path& path) {
    return base::widen(path.native());
}

fs::path default_profile_folder() {
    if (const fs::path folder = from_environment("ZEF_PROFILE"); !folder.empty())
        return fs::absolute(folder).lexically_normal();
    // By the rules for these folders a relative one is ignored.
    if (const fs::path folder = from_environment("XDG_CONFIG_HOME"); folder.is_absolute())
        return folder / "zef";
    fs::path home = from_environment("HOME");
    if (const passwd* const user = home.empty() ? ::getpwuid(::getuid()) : nullptr)
        home = user->pw_dir;
    return fs::absolute(home / ".config" / "zef");
}

fs::path executable_folder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::current_path(error) : program.parent_path();
}

} // namespace sys
