#include "platform/SharedLibrary.h"

#include "platform/win32/FileHandle.h"
#include "platform/win32/NativeName.h"

bool SharedLibrary::Open(const std::wstring& name)
{
    Close();
    m_Reason.clear();
    if (name.empty() || name.find(L'\0') != name.npos) {
        m_Reason = L"no such file";
        return false;
    }
    // A bare name keeps its form: it is looked for in the system's places. Those of a library with a folder
    // begin with that folder.
    const bool hasFolder = name.find_first_of(L"/\\:") != name.npos;
    const std::wstring native = hasFolder ? FullNativeName(name) : name;
    const DWORD flags = hasFolder ? LOAD_WITH_ALTERED_SEARCH_PATH : 0;
    // Without the mode a damaged library stops the host with a message of the system's.
    DWORD before = 0;
    const bool isQuiet = ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before) != 0;
    m_Handle = ::LoadLibraryExW(native.c_str(), nullptr, flags);
    if (!m_Handle) m_Reason = LastErrorText();
    if (isQuiet) ::SetThreadErrorMode(before, nullptr);
    return IsOpen();
}

void* SharedLibrary::Find(const char* symbol) const
{
    if (!m_Handle) return nullptr;
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(m_Handle), symbol));
}

void* SharedLibrary::FindInProgram(const char* symbol)
{
    return reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(nullptr), symbol));
}

void SharedLibrary::Close()
{
    if (m_Handle) ::FreeLibrary(static_cast<HMODULE>(m_Handle));
    m_Handle = nullptr;
}
