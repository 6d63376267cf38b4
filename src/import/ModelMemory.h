#pragma once

#include "import/Model3DS.h"

#include <cstddef>

/// Gives out arrays for a model, which lists what has to be freed. Small arrays stand alone; large ones are
/// cut from blocks, since asking the system for memory takes longer than filling it.
class ModelMemory {
public:
    explicit ModelMemory(t3DModel& model) : m_Model(model) {}

    /// Not initialised; null for no elements. Throws when there is no memory.
    template <class T>
    T* Allocate(std::size_t count)
    {
        return count == 0 ? nullptr : static_cast<T*>(AllocateBytes(count * sizeof(T)));
    }

private:
    void* AllocateBytes(std::size_t size);
    void* AddBlock(std::size_t size);

    t3DModel& m_Model;
    unsigned char* m_Next = nullptr; ///< what is left of the block at hand
    std::size_t m_Left = 0;
};
