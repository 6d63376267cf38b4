#pragma once

#include "platform/win32/WindowsApi.h"

#include <objidl.h>

#include <gdiplus.h>

/// GDI+ between its start and its end. Starts may be nested. Between sessions no thread of its is left.
class PlusSession {
public:
    PlusSession()
    {
        const Gdiplus::GdiplusStartupInput input;
        m_IsOpen = Gdiplus::GdiplusStartup(&m_Token, &input, nullptr) == Gdiplus::Ok;
    }
    ~PlusSession()
    {
        if (m_IsOpen) Gdiplus::GdiplusShutdown(m_Token);
    }
    PlusSession(const PlusSession&) = delete;
    PlusSession& operator=(const PlusSession&) = delete;

    bool IsOpen() const { return m_IsOpen; }

private:
    ULONG_PTR m_Token = 0;
    bool m_IsOpen = false;
};

/// A bitmap of GDI+, given back at the end of this object's life, which the session has to outlive.
class PlusBitmap {
public:
    PlusBitmap() = default;
    ~PlusBitmap()
    {
        if (m_Bitmap) Gdiplus::DllExports::GdipDisposeImage(m_Bitmap);
    }
    PlusBitmap(const PlusBitmap&) = delete;
    PlusBitmap& operator=(const PlusBitmap&) = delete;

    Gdiplus::GpBitmap* Get() const { return m_Bitmap; }
    Gdiplus::GpBitmap** Slot() { return &m_Bitmap; }

private:
    Gdiplus::GpBitmap* m_Bitmap = nullptr;
};
