// A library that is loaded while the program runs.
#pragma once

#include "base/result.h"

#include <filesystem>

namespace sys {

class dynamic_library {
public:
    // Loads exactly that file, with all that it needs; its symbols are not offered to libraries loaded later.
    // Fails with the path and what the system's loader says.
    static base::result<dynamic_library> open(const std::filesystem::path& path);

    dynamic_library(dynamic_library&& other) noexcept;
    dynamic_library& operator=(dynamic_library&& other) noexcept;
    // Closes the library: the system unloads it when nobody else has it open.
    ~dynamic_library();

    // The address of an exported symbol, null when the library has none of that name. Valid until closed.
    void* symbol(const char* name) const;

private:
    explicit dynamic_library(void* handle) : handle_(handle) {}

    void* handle_;
};

} // namespace sys
