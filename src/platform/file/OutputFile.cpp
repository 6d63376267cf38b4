#include "platform/OutputFile.h"

#include <algorithm>

#include "platform/file/NativeFile.h"

OutputFile::~OutputFile()
{
    Close();
}

bool OutputFile::Open(const std::wstring& name)
{
    Close();
    Forget();
    std::wstring reason;
    m_Handle = NativeFile::OpenToWrite(name, reason);
    return IsOpen() || Fail(reason);
}

bool OutputFile::PatchAt(std::uint64_t offset, const void* bytes, std::size_t count)
{
    if (m_Failed || !IsOpen() || offset > Tell() || count > Tell() - offset) return false;
    const char* from = static_cast<const char*>(bytes);
    if (offset < m_Flushed) {
        const auto inFile = static_cast<std::size_t>(std::min<std::uint64_t>(count, m_Flushed - offset));
        const std::wstring reason = NativeFile::WriteAll(m_Handle, from, inFile, &offset);
        if (!reason.empty()) return Fail(reason);
        from += inFile;
        count -= inFile;
        offset += inFile;
    }
    if (count != 0) std::memcpy(m_Buffer.get() + (offset - m_Flushed), from, count);
    return true;
}

bool OutputFile::Flush()
{
    const auto count = static_cast<std::size_t>(m_Next - m_Buffer.get());
    m_Next = m_Buffer.get();
    return WriteOut(m_Buffer.get(), count);
}

bool OutputFile::Sync()
{
    if (!Flush() || !IsOpen()) return false;
    const std::wstring reason = NativeFile::Sync(m_Handle);
    return reason.empty() || Fail(reason);
}

bool OutputFile::Close()
{
    if (!IsOpen()) return !m_Failed;
    Flush();
    const std::wstring reason = NativeFile::Close(m_Handle);
    if (!reason.empty()) Fail(reason);
    m_Handle = NO_HANDLE;
    m_Buffer.reset();
    m_Next = m_End = nullptr;
    return !m_Failed;
}

void OutputFile::WriteLarge(const void* bytes, std::size_t count)
{
    Flush();
    if (count >= BUFFER_SIZE || !IsOpen()) {
        WriteOut(static_cast<const char*>(bytes), count);
        return;
    }
    MakeRoom(count);
    std::memcpy(m_Next, bytes, count);
    m_Next += count;
}

void OutputFile::MakeRoom(std::size_t count)
{
    Flush();
    if (count <= Room()) return;
    const std::size_t size = std::max(count, BUFFER_SIZE);
    m_Buffer.reset(new char[size]);
    m_Next = m_Buffer.get();
    m_End = m_Next + size;
}

void OutputFile::Forget()
{
    m_Buffer.reset();
    m_Next = m_End = nullptr;
    m_Flushed = 0;
    m_Failed = false;
    m_Reason.clear();
}

bool OutputFile::WriteOut(const char* bytes, std::size_t count)
{
    if (count == 0) return !m_Failed;
    m_Flushed += count;
    if (m_Failed) return false;
    if (!IsOpen()) return Fail(L"no file is open");
    const std::wstring reason = NativeFile::WriteAll(m_Handle, bytes, count, nullptr);
    return reason.empty() || Fail(reason);
}

bool OutputFile::Fail(const std::wstring& reason)
{
    if (!m_Failed) m_Reason = reason;
    m_Failed = true;
    return false;
}
