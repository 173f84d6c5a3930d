#include "sys/memory.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace sys {

void expect_writes([[maybe_unused]] void* begin, [[maybe_unused]] std::size_t size) {
#ifdef MADV_POPULATE_WRITE
    static const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto address = reinterpret_cast<std::uintptr_t>(begin);
    const std::uintptr_t first = (address + page - 1) / page * page;
    const std::uintptr_t end = (address + size) / page * page;
    if (first >= end)
        return;
    void* const memory = reinterpret_cast<void*>(first);
#ifdef MADV_HUGEPAGE
    ::madvise(memory, end - first, MADV_HUGEPAGE); // far fewer pages
#endif
    ::madvise(memory, end - first, MADV_POPULATE_WRITE);
#endif
}

} // namespace sys
