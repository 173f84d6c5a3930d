#include "sys/dynamic_library.h"

#include "base/utf.h"
#include "sys/posix/reason.h"

#include <dlfcn.h>
#include <string>
#include <utility>

namespace sys {

base::result<dynamic_library> dynamic_library::open(const std::filesystem::path& path) {
    // A bare name would be looked for in the system's folders.
    const std::string file = std::filesystem::absolute(path).native();
    if (void* const handle = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
        return dynamic_library(handle);
    std::string_view why = ::dlerror();
    if (why.starts_with(file + ": "))
        why.remove_prefix(file.size() + 2);
    return cannot(L"load", path, base::widen(why));
}

dynamic_library::dynamic_library(dynamic_library&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)) {
}

dynamic_library& dynamic_library::operator=(dynamic_library&& other) noexcept {
    dynamic_library taken(std::move(other));
    std::swap(handle_, taken.handle_);
    return *this;
}

dynamic_library::~dynamic_library() {
    if (handle_ != nullptr)
        ::dlclose(handle_);
}

void* dynamic_library::symbol(const char* name) const {
    return ::dlsym(handle_, name);
}

} // namespace sys
