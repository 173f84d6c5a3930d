// Whether what a path names is a file that can be read whole.
#pragma once

#include "base/result.h"

#include <filesystem>

namespace sys {

// Fails for pipes, devices and sockets, for what the system makes up while it is read, and for files larger
// than half of the machine's memory, with words that name the path and the reason. What cannot be looked at
// is left to who reads it.
base::result<void> check_regular_file(const std::filesystem::path& path);

} // namespace sys
