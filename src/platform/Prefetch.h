#pragma once

#include <cstddef>

/// A function of nothing but hints is a function without effect: the compiler drops the calls of one that it
/// has not inlined by the time it asks.
#ifdef __GNUC__
#define HALYARD_ALWAYS_INLINE inline __attribute__((always_inline))
#else
#define HALYARD_ALWAYS_INLINE inline
#endif

/// Asks the processor to bring memory near before it is read. A hint without effect on what a program
/// computes; nothing where the compiler has no word for it. The address need not be valid.
HALYARD_ALWAYS_INLINE void Prefetch([[maybe_unused]] const void* address, [[maybe_unused]] std::size_t bytes)
{
#ifdef __GNUC__
    constexpr std::size_t CACHE_LINE = 64;
    for (std::size_t at = 0; at < bytes; at += CACHE_LINE)
        __builtin_prefetch(static_cast<const char*>(address) + at);
#endif
}

/// The same for memory that is about to be written.
HALYARD_ALWAYS_INLINE void PrefetchForWriting([[maybe_unused]] const void* address,
                                              [[maybe_unused]] std::size_t bytes)
{
#ifdef __GNUC__
    constexpr std::size_t CACHE_LINE = 64;
    for (std::size_t at = 0; at < bytes; at += CACHE_LINE)
        __builtin_prefetch(static_cast<const char*>(address) + at, 1);
#endif
}
