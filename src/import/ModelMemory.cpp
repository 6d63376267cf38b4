#include "import/ModelMemory.h"

#include "platform/MemoryAdvice.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t LARGE_ARRAY = 128 * 1024;
constexpr std::size_t BLOCK_SIZE = std::size_t{32} << 20;
constexpr std::size_t ALIGNMENT = alignof(std::max_align_t);

} // namespace

void* ModelMemory::AllocateBytes(std::size_t size)
{
    if (size < LARGE_ARRAY) return AddBlock(size);
    const std::size_t rounded = (size + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
    if (rounded > m_Left) {
        const std::size_t blockSize = std::max(BLOCK_SIZE, rounded);
        m_Next = static_cast<unsigned char*>(AddBlock(blockSize));
        m_Left = blockSize;
        PreferLargePages(m_Next, blockSize);
    }
    void* memory = m_Next;
    m_Next += rounded;
    m_Left -= rounded;
    return memory;
}

void* ModelMemory::AddBlock(std::size_t size)
{
    void*& block = m_Model.memory.emplace_back();
    block = std::malloc(size);
    if (!block) throw std::bad_alloc();
    return block;
}
