#pragma once

#include <chrono>
#include <cstdint>

/// Milliseconds on a clock that never goes back; only differences mean something.
[[nodiscard]] inline std::int64_t MonotonicMilliseconds()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}
