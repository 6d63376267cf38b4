#include "platform/MemoryAdvice.h"

#include <cstdint>

#include <sys/mman.h>

void PreferLargePages(void* memory, std::size_t size)
{
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t LARGE_PAGE = std::uintptr_t{2} << 20;
    const std::uintptr_t begin =
        (reinterpret_cast<std::uintptr_t>(memory) + LARGE_PAGE - 1) & ~(LARGE_PAGE - 1);
    const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(memory) + size) & ~(LARGE_PAGE - 1);
    // Advice only: memory is as good without it.
    if (begin < end) (void)::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
    (void)memory;
    (void)size;
#endif
}
