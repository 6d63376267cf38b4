#pragma once

#include <atomic>

/// Ctrl-C (and a request to terminate) as a wish to stop: the work in hand looks at the flag, ends early and
/// cleans up after itself.
class Interrupt {
public:
    /// From here on the signals clear the flag instead of ending the program. One that was ignored when the
    /// program started stays ignored.
    static void Install();

    /// True until the user asks to stop.
    static const std::atomic<bool>& KeepGoing();

    static bool IsStopped() { return !KeepGoing().load(std::memory_order_relaxed); }
};
