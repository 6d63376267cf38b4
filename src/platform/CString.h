#pragma once

#include "platform/VendorClasses.h"
#include <limits>
#include <string>
#include <utility>

#ifndef HALYARD_VENDOR_CLASSES

/// A wide text as hosts hand it over.
class CString {
public:
    CString() = default;
    /// A null pointer is an empty text.
    CString(const wchar_t* text) : m_Text(text ? text : L"") {}
    CString(std::wstring text) : m_Text(std::move(text)) {}

    /// Number of wchar_t units; at most the largest int.
    int GetLength() const
    {
        constexpr std::size_t LARGEST = (std::numeric_limits<int>::max)();
        return static_cast<int>(m_Text.size() < LARGEST ? m_Text.size() : LARGEST);
    }
    bool IsEmpty() const { return m_Text.empty(); }
    void Empty() { m_Text.clear(); }
    const wchar_t* GetString() const { return m_Text.c_str(); }
    operator const wchar_t*() const { return m_Text.c_str(); }
    const std::wstring& Text() const { return m_Text; }

    CString& operator+=(const CString& other)
    {
        m_Text += other.m_Text;
        return *this;
    }
    bool operator==(const CString& other) const { return m_Text == other.m_Text; }
    bool operator==(const wchar_t* other) const { return m_Text == (other ? other : L""); }

private:
    std::wstring m_Text;
};

#endif
