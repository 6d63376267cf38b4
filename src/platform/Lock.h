#pragma once

#ifndef _WIN32
#include <mutex>
#endif

#include "platform/Export.h"

/// A re-entrant lock: the thread that holds it may enter it again, and leaves it as often as it entered.
///
/// It takes no memory outside itself (40 bytes at most), so that every layer and every block can hold one.
/// Copying an owner never copies its lock: the copy's lock is its own and free.
#ifndef _WIN32
class Lock {
public:
    Lock() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// Waits until no other thread is inside.
    void Enter() const { m_Mutex.lock(); }

    /// Only the thread that entered may leave.
    void Leave() const { m_Mutex.unlock(); }

    /// Enters if no other thread is inside; false at once otherwise.
    [[nodiscard]] bool TryEnter() const { return m_Mutex.try_lock(); }

private:
    mutable std::recursive_mutex m_Mutex;
};
#else
// The same, over a critical section.
class HALYARD_API Lock {
public:
    Lock();
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    void Enter() const;
    void Leave() const;
    [[nodiscard]] bool TryEnter() const;

private:
    alignas(void*) mutable unsigned char m_Section[40];
};
#endif

/// Holds a lock from its making to the end of its scope.
class LockHold {
public:
    explicit LockHold(const Lock& lock) : m_Lock(lock) { m_Lock.Enter(); }
    ~LockHold() { m_Lock.Leave(); }
    LockHold(const LockHold&) = delete;
    LockHold& operator=(const LockHold&) = delete;

private:
    const Lock& m_Lock;
};
