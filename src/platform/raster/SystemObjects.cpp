#include "platform/SystemObjects.h"

#include <cstddef>
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

bool SystemObjects::MakeBitmap(int width, int height, std::shared_ptr<void>& handle, std::uint32_t*& pixels)
{
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const std::shared_ptr<std::uint32_t> memory(new (std::nothrow) std::uint32_t[count](),
                                                [](const std::uint32_t* p) { delete[] p; });
    pixels = memory.get();
    handle = memory;
    return pixels != nullptr;
}
