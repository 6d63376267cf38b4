#include "platform/InputFile.h"

#include <utility>

#include "platform/file/NativeFile.h"

InputFile::~InputFile()
{
    Close();
}

InputFile::InputFile(InputFile&& other) noexcept
{
    *this = std::move(other);
}

InputFile& InputFile::operator=(InputFile&& other) noexcept
{
    if (this == &other) return *this;
    Close();
    m_Handle = std::exchange(other.m_Handle, NO_HANDLE);
    m_Position = std::exchange(other.m_Position, 0);
    m_Size = std::exchange(other.m_Size, 0);
    m_Reason = std::exchange(other.m_Reason, {});
    m_Failed = std::exchange(other.m_Failed, false);
    return *this;
}

bool InputFile::Open(const std::wstring& name)
{
    Close();
    m_Handle = NativeFile::OpenToRead(name, m_Size, m_Reason);
    m_Failed = !IsOpen();
    return IsOpen();
}

std::size_t InputFile::Read(void* bytes, std::size_t count)
{
    if (!IsOpen() || m_Failed) return 0;
    std::size_t done = 0;
    m_Reason = NativeFile::ReadAt(m_Handle, m_Position, bytes, count, done);
    m_Failed = !m_Reason.empty();
    m_Position += done;
    return done;
}

bool InputFile::Seek(std::uint64_t position)
{
    if (!IsOpen() || position > NativeFile::LastPosition()) return false;
    m_Position = position;
    return true;
}

void InputFile::Close()
{
    // Nothing was written that could be lost.
    if (IsOpen()) (void)NativeFile::Close(m_Handle);
    m_Handle = NO_HANDLE;
    m_Position = 0;
    m_Size = 0;
    m_Failed = false;
    m_Reason.clear();
}
