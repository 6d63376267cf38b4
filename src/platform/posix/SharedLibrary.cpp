#include "platform/SharedLibrary.h"

#include <dlfcn.h>

#include "platform/posix/NativeName.h"

bool SharedLibrary::Open(const std::wstring& name)
{
    Close();
    m_Reason.clear();
    const std::string native = NativeName(name);
    // The system takes the empty name for the program itself.
    if (native.empty()) {
        m_Reason = L"no such file";
        return false;
    }
    m_Handle = ::dlopen(native.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_Handle) {
        const char* reason = ::dlerror();
        m_Reason = FromUtf8(reason ? reason : "cannot be loaded");
    }
    return IsOpen();
}

void* SharedLibrary::Find(const char* symbol) const
{
    return m_Handle ? ::dlsym(m_Handle, symbol) : nullptr;
}

void* SharedLibrary::FindInProgram(const char* symbol)
{
    void* program = ::dlopen(nullptr, RTLD_NOW | RTLD_LOCAL);
    if (!program) return nullptr;
    void* found = ::dlsym(program, symbol);
    ::dlclose(program);
    return found;
}

void SharedLibrary::Close()
{
    if (m_Handle) ::dlclose(m_Handle);
    m_Handle = nullptr;
}
