#include "platform/win32/SourceStream.h"

#include <limits>

namespace {
bool IsStream(REFIID id)
{
    return IsEqualIID(id, __uuidof(IUnknown)) || IsEqualIID(id, __uuidof(ISequentialStream))
           || IsEqualIID(id, __uuidof(IStream));
}
} // namespace

HRESULT STDMETHODCALLTYPE SourceStream::QueryInterface(REFIID id, void** object)
{
    if (!object) return E_POINTER;
    *object = IsStream(id) ? this : nullptr;
    return *object ? S_OK : E_NOINTERFACE;
}

HRESULT STDMETHODCALLTYPE SourceStream::Read(void* bytes, ULONG count, ULONG* done)
{
    const std::size_t got = m_Source.ReadAt(m_Position, bytes, count);
    m_Position += got;
    if (done) *done = static_cast<ULONG>(got);
    return got == count ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE SourceStream::Seek(LARGE_INTEGER offset, DWORD origin, ULARGE_INTEGER* position)
{
    constexpr std::uint64_t LAST = std::numeric_limits<std::int64_t>::max();
    std::uint64_t base = 0;
    if (origin == STREAM_SEEK_CUR) base = m_Position;
    if (origin == STREAM_SEEK_END) base = m_Source.Size();
    // A negative offset wraps around in an unsigned number, and so does a sum below zero, to beyond LAST.
    const std::uint64_t target = base + static_cast<std::uint64_t>(offset.QuadPart);
    if (origin > STREAM_SEEK_END || target > LAST) return STG_E_INVALIDFUNCTION;
    m_Position = target;
    if (position) position->QuadPart = target;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE SourceStream::Stat(STATSTG* status, DWORD)
{
    if (!status) return STG_E_INVALIDPOINTER;
    *status = {};
    status->type = STGTY_STREAM;
    status->cbSize.QuadPart = m_Source.Size();
    return S_OK;
}
