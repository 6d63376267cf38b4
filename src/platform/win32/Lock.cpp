#include "platform/Lock.h"

#include "platform/win32/WindowsApi.h"

namespace {
CRITICAL_SECTION* SectionIn(unsigned char* room)
{
    static_assert(sizeof(CRITICAL_SECTION) <= sizeof(Lock) && alignof(CRITICAL_SECTION) <= alignof(Lock));
    return reinterpret_cast<CRITICAL_SECTION*>(room);
}
} // namespace

Lock::Lock()
{
    ::InitializeCriticalSection(SectionIn(m_Section));
}

Lock::~Lock()
{
    ::DeleteCriticalSection(SectionIn(m_Section));
}

void Lock::Enter() const
{
    ::EnterCriticalSection(SectionIn(m_Section));
}

void Lock::Leave() const
{
    ::LeaveCriticalSection(SectionIn(m_Section));
}

bool Lock::TryEnter() const
{
    return ::TryEnterCriticalSection(SectionIn(m_Section)) != FALSE;
}
