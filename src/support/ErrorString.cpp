#include "support/ErrorString.h"

namespace {

ErrorString& LastOfThisThread()
{
    thread_local ErrorString last(true);
    return last;
}

} // namespace

ErrorString::ErrorString(const wchar_t* text) : m_Success(false), m_Text(text ? text : L"")
{
    Record();
}

ErrorString::ErrorString(const std::wstring& text) : m_Success(false), m_Text(text)
{
    Record();
}

ErrorString::ErrorString(int messageNumber) : ErrorString(static_cast<Message>(messageNumber)) {}

ErrorString::ErrorString(Message message) : ErrorString(MessageText(message)) {}

ErrorString& ErrorString::operator<<(const std::wstring& text)
{
    m_Success = false;
    m_Text += text;
    Record();
    return *this;
}

ErrorString& ErrorString::operator<<(const wchar_t* text)
{
    return *this << std::wstring(text ? text : L"");
}

ErrorString& ErrorString::operator<<(Message message)
{
    return *this << MessageText(message);
}

ErrorString& ErrorString::operator<<(int number)
{
    return *this << std::to_wstring(number);
}

ErrorString ErrorString::LastError()
{
    return LastOfThisThread();
}

void ErrorString::Record() const
{
    LastOfThisThread() = *this;
}
