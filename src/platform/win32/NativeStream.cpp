#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <io.h>

#include "platform/FileSystem.h"
#include "platform/file/NativeFile.h"
#include "platform/win32/FileHandle.h"

namespace {
struct Mode {
    const char* text;
    DWORD access;
    DWORD creation;
    int flags;
    bool isEmptied;
};

constexpr DWORD READ_AND_WRITE = GENERIC_READ | GENERIC_WRITE;
constexpr Mode MODES[] = {
    {"rb", GENERIC_READ, OPEN_EXISTING, _O_RDONLY | _O_BINARY, false},
    {"rb+", READ_AND_WRITE, OPEN_EXISTING, _O_RDWR | _O_BINARY, false},
    {"wb", GENERIC_WRITE, OPEN_ALWAYS, _O_WRONLY | _O_BINARY, true},
    {"wb+", READ_AND_WRITE, OPEN_ALWAYS, _O_RDWR | _O_BINARY, true},
    {"ab", GENERIC_WRITE, OPEN_ALWAYS, _O_WRONLY | _O_BINARY | _O_APPEND, false},
    {"ab+", READ_AND_WRITE, OPEN_ALWAYS, _O_RDWR | _O_BINARY | _O_APPEND, false},
};

const Mode* FindMode(const char* text)
{
    for (const Mode& mode : MODES) {
        if (std::strcmp(mode.text, text) == 0) return &mode;
    }
    return nullptr;
}

/// A stream over a handle that it then owns.
std::FILE* StreamOver(FileHandle& file, const Mode& mode)
{
    const int number = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(file.Get()), mode.flags);
    if (number < 0) return nullptr;
    (void)file.Take();
    std::FILE* stream = ::_fdopen(number, mode.text);
    if (!stream) ::_close(number);
    return stream;
}
} // namespace

std::FILE* NativeFile::OpenStream(const std::wstring& name, const char* mode, std::wstring& reason)
{
    reason = L"the mode is unknown";
    const Mode* known = FindMode(mode);
    if (!known) return nullptr;
    reason.clear();
    FileHandle file(OpenRegularFile(name, known->access, known->creation, reason));
    if (!file.IsOpen()) return nullptr;
    if (known->isEmptied && ::GetFileType(file.Get()) == FILE_TYPE_DISK && !::SetEndOfFile(file.Get())) {
        reason = LastErrorText();
        return nullptr;
    }
    std::FILE* stream = StreamOver(file, *known);
    if (!stream) reason = FileSystem::ErrnoText(errno);
    return stream;
}

bool NativeFile::SeekStream(std::FILE* stream, std::int64_t offset, int origin)
{
    return ::_fseeki64(stream, offset, origin) == 0;
}

std::int64_t NativeFile::TellStream(std::FILE* stream)
{
    return ::_ftelli64(stream);
}
