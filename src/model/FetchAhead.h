#pragma once

#include "platform/Prefetch.h"

#include <cstddef>

/// To be called for each place of a walk through entities that were made in another order (those of one
/// layer lie scattered among those of the others): asks for an entity some places ahead, so that it has
/// arrived when its turn comes. Entities stands for anything with an index that gives pointers.
/// `bytes` is how much of the entity will be looked at: by default all of a text, the largest kind.
template <class Entities>
HALYARD_ALWAYS_INLINE void FetchAhead(const Entities& entities, std::size_t place, std::size_t count,
                                      std::size_t bytes = 320)
{
    constexpr std::size_t DISTANCE = 16;
    if (place + DISTANCE < count) Prefetch(entities[place + DISTANCE], bytes);
}
