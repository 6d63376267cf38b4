#include "platform/Terminal.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>

#include <fcntl.h>
#include <io.h>

#include "platform/win32/WindowsApi.h"

namespace {
UINT g_CodePageBefore = 0;

void RestoreCodePage()
{
    ::SetConsoleOutputCP(g_CodePageBefore);
}

HANDLE HandleOf(Terminal::STREAM stream)
{
    constexpr DWORD HANDLES[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    return ::GetStdHandle(HANDLES[stream]);
}

void AllowControlSequences(HANDLE stream)
{
    DWORD mode = 0;
    if (::GetConsoleMode(stream, &mode)) ::SetConsoleMode(stream, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}
} // namespace

void Terminal::Prepare()
{
    for (std::FILE* stream : {stdin, stdout, stderr}) (void)::_setmode(::_fileno(stream), _O_BINARY);
    if (!IsTerminal(STANDARD_OUTPUT) && !IsTerminal(STANDARD_ERROR)) return;
    // The code page is the console's, and stays when the program has ended.
    g_CodePageBefore = ::GetConsoleOutputCP();
    if (g_CodePageBefore != 0 && ::SetConsoleOutputCP(CP_UTF8)) std::atexit(RestoreCodePage);
    AllowControlSequences(HandleOf(STANDARD_OUTPUT));
    AllowControlSequences(HandleOf(STANDARD_ERROR));
}

bool Terminal::IsTerminal(STREAM stream)
{
    // The null device is a character device too; only a console has a mode.
    DWORD mode = 0;
    return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool Terminal::IsReaderGone(int errnoCode)
{
    // The C library has several words for it.
    const bool mayBe = errnoCode == EPIPE || errnoCode == EINVAL || errnoCode == EBADF;
    return mayBe && ::GetFileType(HandleOf(STANDARD_OUTPUT)) == FILE_TYPE_PIPE;
}

int Terminal::Columns(STREAM stream)
{
    constexpr int USUAL = 80;
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    if (!::GetConsoleScreenBufferInfo(HandleOf(stream), &screen)) return USUAL;
    const int columns = screen.srWindow.Right - screen.srWindow.Left + 1;
    return columns > 0 ? columns : USUAL;
}
