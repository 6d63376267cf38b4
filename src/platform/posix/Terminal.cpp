#include "platform/Terminal.h"

#include <cerrno>

#include <sys/ioctl.h>
#include <unistd.h>

void Terminal::Prepare() {}

bool Terminal::IsTerminal(STREAM stream)
{
    return ::isatty(stream) == 1;
}

bool Terminal::IsReaderGone(int errnoCode)
{
    return errnoCode == EPIPE;
}

int Terminal::Columns(STREAM stream)
{
    constexpr int USUAL = 80;
    winsize size = {};
    if (::ioctl(stream, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return USUAL;
    return size.ws_col;
}
