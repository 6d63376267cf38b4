#pragma once

#include <cstdint>

#include "platform/picture/ByteSource.h"
#include "platform/win32/WindowsApi.h"

#include <objidl.h>

// The system's interfaces have no virtual destructor: nobody deletes by them.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A source of bytes as the system's decoders read it. Lives on its owner's stack: whoever counts references
/// counts in vain, and nobody may keep one after the decoding.
class SourceStream final : public IStream {
public:
    explicit SourceStream(ByteSource& source) : m_Source(source) {}
    virtual ~SourceStream() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    HRESULT STDMETHODCALLTYPE Read(void* bytes, ULONG count, ULONG* done) override;
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER offset, DWORD origin, ULARGE_INTEGER* position) override;
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* status, DWORD flags) override;

    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) override { return STG_E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return STG_E_ACCESSDENIED; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Revert() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override
    {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override
    {
        return STG_E_INVALIDFUNCTION;
    }
    /// GDI+ keeps a stream of its own for a picture that it reads late.
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }

private:
    ByteSource& m_Source;
    std::uint64_t m_Position = 0;
};

#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif
