// What can be told the system about memory.
#pragma once

#include <cstddef>

namespace sys {

// The memory from `begin` on is new and will be written from end to end, soon: so it may be made ready at
// once and not page by page, as it is touched. To be asked for megabytes; it is a hint that the system may
// ignore.
void expect_writes(void* begin, std::size_t size);

} // namespace sys
