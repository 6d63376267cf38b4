#include "platform/SystemObjects.h"

#include "platform/MemoryAdvice.h"

#include <cstddef>
#include <cstring>
#include <new>

bool SystemObjects::MakePen(const CPen& /*pen*/, std::shared_ptr<void>& /*handle*/)
{
    return true;
}

bool SystemObjects::MakeBrush(const CBrush& /*brush*/, std::shared_ptr<void>& /*handle*/)
{
    return true;
}

bool SystemObjects::MakeFont(const FontWish& /*wish*/, std::shared_ptr<void>& /*handle*/)
{
    return true;
}

/// Lines go from row to row, and so from page to page: in pages of 4 KiB most pixels of a large bitmap would
/// cost a walk through the page tables.
bool SystemObjects::MakeBitmap(int width, int height, std::shared_ptr<void>& handle, std::uint32_t*& pixels)
{
    constexpr std::size_t LARGE_PAGE = 2 << 20;
    const std::size_t size =
        sizeof(std::uint32_t) * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const std::align_val_t alignment{size < LARGE_PAGE ? alignof(std::uint32_t) : LARGE_PAGE};
    void* memory = ::operator new(size, alignment, std::nothrow);
    if (!memory) return false;
    handle.reset(memory, [alignment](void* p) { ::operator delete(p, alignment); });
    PreferLargePages(memory, size);
    pixels = static_cast<std::uint32_t*>(std::memset(memory, 0, size));
    return true;
}
