#include "Report.h"

#include "platform/FileSystem.h"
#include "platform/Terminal.h"
#include "platform/Utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace {

int g_OutputError = 0;

void NoteOutputError()
{
    g_OutputError = errno == 0 ? EIO : errno;
}

bool IsControl(wchar_t c)
{
    const auto code = static_cast<unsigned long>(c);
    const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
    // Bytes 0x80 to 0x9F of a name that is no UTF-8 (see FromUtf8).
    return control || (code >= 0xDC80 && code <= 0xDC9F);
}

void Say(std::wstring_view file, const char* kind, std::wstring_view what)
{
    const std::string line = "halyard: " + Printable(file) + ": " + kind + Printable(what) + "\n";
    std::fputs(line.c_str(), stderr);
}

} // namespace

std::string Printable(std::wstring_view text)
{
    std::wstring shown(text);
    for (wchar_t& c : shown)
        if (IsControl(c)) c = L'?';
    return ToUtf8(shown);
}

std::wstring AsMeant(const std::wstring& modelText)
{
    std::string bytes;
    for (const wchar_t c : modelText) {
        if (static_cast<unsigned long>(c) > 0xFF) return modelText;
        bytes += static_cast<char>(static_cast<unsigned char>(c));
    }
    const std::wstring decoded = FromUtf8(bytes);
    const bool isUtf8 = std::none_of(decoded.begin(), decoded.end(), [](wchar_t c) {
        const auto code = static_cast<unsigned long>(c);
        return code >= 0xDC80 && code <= 0xDCFF;
    });
    return isUtf8 ? decoded : modelText;
}

int Fail(std::wstring_view file, std::wstring_view what)
{
    Say(file, "", what);
    return EXIT_FAILED;
}

void Warn(std::wstring_view file, std::wstring_view what)
{
    Say(file, "warning: ", what);
}

int SayStopped()
{
    std::fputs("halyard: stopped\n", stderr);
    return EXIT_STOPPED;
}

bool StandardOutput::Write(std::string_view text)
{
    if (g_OutputError == 0 && std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        NoteOutputError();
    return g_OutputError == 0;
}

int StandardOutput::Finish()
{
    if (g_OutputError == 0 && std::fflush(stdout) != 0) NoteOutputError();
    if (g_OutputError == 0 || Terminal::IsReaderGone(g_OutputError)) return EXIT_DONE;
    return Fail(L"standard output", FileSystem::ErrnoText(g_OutputError));
}
