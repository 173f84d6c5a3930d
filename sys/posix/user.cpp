#include "sys/user.h"

#include "base/utf.h"

#include <array>
#include <ctime>
#include <pwd.h>
#include <unistd.h>

namespace sys {

std::wstring login_name() {
    const passwd* const user = ::getpwuid(::geteuid());
    return user != nullptr ? base::widen(user->pw_name) : std::to_wstring(::geteuid());
}

std::wstring computer_name() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? base::widen(name.data()) : std::wstring();
}

std::wstring local_time() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    std::array<char, 32> text{};
    ::localtime_r(&now, &parts);
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &parts);
    return base::widen(text.data());
}

} // namespace sys
