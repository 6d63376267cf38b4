#include "plot/PlotStream.h"

#include "platform/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

PlotOutput::PlotOutput(CRCFile& file, PlotBlockNotice notice)
    : m_File(file),
      m_Notice(std::move(notice)),
      m_Buffer(new char[BLOCK]),
      m_Next(m_Buffer.get()),
      m_End(m_Next + BLOCK)
{
}

char* PlotOutput::Overflow(char* next, const void* bytes, std::size_t count)
{
    m_Next = next;
    Flush();
    if (count >= BLOCK) {
        WriteOut(bytes, count);
        return m_Next;
    }
    std::memcpy(m_Next, bytes, count);
    return m_Next += count;
}

void PlotOutput::Flush()
{
    const auto count = static_cast<std::size_t>(m_Next - m_Buffer.get());
    m_Next = m_Buffer.get();
    WriteOut(m_Buffer.get(), count);
}

void PlotOutput::WriteOut(const void* bytes, std::size_t count)
{
    if (count == 0) return;
    m_Flushed += count;
    Look();
    if (m_Failed) return;
    errno = 0;
    if (m_File.Write(bytes, 1, count) != count) Fail(FileSystem::ErrnoText(errno));
}

void PlotOutput::Fail(const std::wstring& reason)
{
    if (!m_Failed) m_Reason = reason;
    m_Failed = true;
}

PlotInput::PlotInput(CRCFile& file, PlotBlockNotice notice) : m_File(file), m_Notice(std::move(notice))
{
    if (m_File.Seek(0, SEEK_END)) m_Size = m_File.Tell();
    if (!m_File.Seek(0, SEEK_SET)) m_Size = 0;
    m_Unread = m_Size;
}

const char* PlotInput::TakeRun(std::size_t itemSize, std::size_t atMost, std::size_t& items)
{
    items = 0;
    if (atMost == 0 || (itemSize > InBuffer() && !Fill(itemSize))) return nullptr;
    items = std::min(atMost, InBuffer() / itemSize);
    const char* run = m_Next;
    m_Next += items * itemSize;
    return run;
}

void PlotInput::Fail()
{
    m_Failed = true;
    m_Unread = 0;
    m_Next = m_End;
}

bool PlotInput::Fill(std::size_t count)
{
    if (count > Left() || count > BLOCK) {
        Fail();
        return false;
    }
    if (!m_Buffer) m_Buffer.reset(new char[BLOCK]);
    const std::size_t kept = InBuffer();
    if (kept > 0) std::memmove(m_Buffer.get(), m_Next, kept);
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(BLOCK - kept, m_Unread));
    const std::size_t got = m_File.Read(m_Buffer.get() + kept, 1, wanted);
    m_Next = m_Buffer.get();
    m_End = m_Next + kept + got;
    m_Unread -= got;
    m_Stopped = m_Stopped || !m_Notice();
    if (m_Stopped || InBuffer() < count) Fail();
    return !m_Failed;
}
