#include "sys/posix/reason.h"

#include "base/utf.h"
#include "sys/folders.h"

#include <cerrno>
#include <system_error>

namespace sys {

namespace {

using base::failure_kind;

failure_kind kind_of(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return failure_kind::not_found;
    case EACCES:
    case EPERM:
    case EROFS:
        return failure_kind::no_access;
    default:
        return failure_kind::other;
    }
}

} // namespace

base::failure cannot(std::wstring_view act, const std::filesystem::path& path, std::wstring_view reason,
                     failure_kind kind) {
    return {L"cannot " + std::wstring(act) + L" '" + from_path(path) + L"': " + std::wstring(reason), kind};
}

base::failure cannot(std::wstring_view act, const std::filesystem::path& path, int error) {
    if (error == ENOENT)
        return cannot(act, path, L"no such file", kind_of(error));
    if (error == EISDIR)
        return cannot(act, path, L"it is a folder", kind_of(error));
    std::string words = std::generic_category().message(error);
    if (!words.empty() && words[0] >= 'A' && words[0] <= 'Z')
        words[0] = static_cast<char>(words[0] + ('a' - 'A'));
    return cannot(act, path, base::widen(words), kind_of(error));
}

} // namespace sys
