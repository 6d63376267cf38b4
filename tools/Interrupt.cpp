#include "Interrupt.h"

#include <csignal>

namespace {

std::atomic<bool> g_KeepGoing{true};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may touch nothing else");

extern "C" void StopOnSignal(int signal)
{
    g_KeepGoing.store(false, std::memory_order_relaxed);
    // Some systems forget the handler when it is called.
    std::signal(signal, StopOnSignal);
}

void Take(int signal)
{
    if (std::signal(signal, StopOnSignal) == SIG_IGN) std::signal(signal, SIG_IGN);
}

} // namespace

void Interrupt::Install()
{
    Take(SIGINT);
    Take(SIGTERM);
#ifdef SIGHUP // the terminal is gone
    Take(SIGHUP);
#endif
#ifdef SIGXFSZ // A file beyond the limit of its size fails to be written, as on a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
#ifdef SIGBREAK // Ctrl-Break, and the closing of the console
    Take(SIGBREAK);
#endif
}

const std::atomic<bool>& Interrupt::KeepGoing()
{
    return g_KeepGoing;
}
