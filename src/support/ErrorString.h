#pragma once

#include "platform/Export.h"
#include "support/Messages.h"

#include <string>

/// The result of an operation that can fail: a success, or a failure that carries a message.
class [[nodiscard]] HALYARD_API ErrorString {
public:
    /// Success when true, a failure without text when false.
    ErrorString(bool success) : m_Success(success)
    {
        if (!success) Record();
    }
    /// A failure with this text; a null text is empty.
    ErrorString(const wchar_t* text);
    ErrorString(const std::wstring& text);
    /// A failure with a text of the message table, by its number; an unknown number gives an empty text.
    ErrorString(int messageNumber);
    explicit ErrorString(Message message);
    /// Narrow texts would count as true.
    ErrorString(const char*) = delete;
    ErrorString(const ErrorString&) = default;
    ErrorString(ErrorString&&) = default;
    ErrorString& operator=(const ErrorString&) = default;
    ErrorString& operator=(ErrorString&&) = default;

    /// True for a failure.
    bool operator!() const { return !m_Success; }
    /// True for a success.
    explicit operator bool() const { return m_Success; }

    /// Appends to the message; of a success it makes a failure. Integers are decimal.
    ErrorString& operator<<(const std::wstring& text);
    ErrorString& operator<<(const wchar_t* text);
    ErrorString& operator<<(Message message);
    ErrorString& operator<<(int number);

    /// The message; empty for a success.
    const std::wstring& Text() const { return m_Text; }

    /// The last failure made in this thread, as far as its message was put together; a success when there was
    /// none.
    static ErrorString LastError();

private:
    void Record() const;

    bool m_Success;
    std::wstring m_Text;
};
