// What is the same on every system.
#include "platform/SharedLibrary.h"

#include <utility>

SharedLibrary::~SharedLibrary()
{
    Close();
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : m_Handle(std::exchange(other.m_Handle, nullptr)), m_Reason(std::exchange(other.m_Reason, {}))
{
}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept
{
    if (this == &other) return *this;
    Close();
    m_Handle = std::exchange(other.m_Handle, nullptr);
    m_Reason = std::exchange(other.m_Reason, {});
    return *this;
}
