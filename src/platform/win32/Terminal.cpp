#include "platform/Terminal.h"

#include "platform/win32/WindowsApi.h"

namespace {
HANDLE HandleOf(Terminal::STREAM stream)
{
    constexpr DWORD HANDLES[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
    return ::GetStdHandle(HANDLES[stream]);
}
} // namespace

bool Terminal::IsTerminal(STREAM stream)
{
    // The null device is a character device too; only a console has a mode.
    DWORD mode = 0;
    return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

int Terminal::Columns(STREAM stream)
{
    constexpr int USUAL = 80;
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    if (!::GetConsoleScreenBufferInfo(HandleOf(stream), &screen)) return USUAL;
    const int columns = screen.srWindow.Right - screen.srWindow.Left + 1;
    return columns > 0 ? columns : USUAL;
}
