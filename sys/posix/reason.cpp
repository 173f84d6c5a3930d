#include "sys/posix/reason.h"

#include "base/utf.h"
#include "sys/folders.h"

#include <cerrno>
#include <system_error>

namespace sys {

base::failure cannot(std::wstring_view act, const std::filesystem::path& path, std::wstring_view reason) {
    return {L"cannot " + std::wstring(act) + L" '" + from_path(path) + L"': " + std::wstring(reason)};
}

base::failure cannot(std::wstring_view act, const std::filesystem::path& path, int error) {
    if (error == ENOENT)
        return cannot(act, path, L"no such file");
    if (error == EISDIR)
        return cannot(act, path, L"it is a folder");
    std::string words = std::generic_category().message(error);
    if (!words.empty() && words[0] >= 'A' && words[0] <= 'Z')
        words[0] = static_cast<char>(words[0] + ('a' - 'A'));
    return cannot(act, path, base::widen(words));
}

} // namespace sys
