// How this system's errors are told: what was tried, with which file, and the reason in plain words.
#pragma once

#include "base/result.h"

#include <filesystem>
#include <string_view>

namespace sys {

// "cannot read 'a.dxf': no such file" of the act "read", a path and a value of errno.
base::failure cannot(std::wstring_view act, const std::filesystem::path& path, int error);

// The same with a reason in words of its own.
base::failure cannot(std::wstring_view act, const std::filesystem::path& path, std::wstring_view reason,
                     base::failure_kind kind = base::failure_kind::other);

} // namespace sys
