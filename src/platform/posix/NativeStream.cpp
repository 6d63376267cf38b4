#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileSystem.h"
#include "platform/file/NativeFile.h"
#include "platform/posix/NativeName.h"

namespace {
struct Mode {
    const char* text;
    int flags;
    bool isRead;
};

constexpr Mode MODES[] = {
    {"rb", O_RDONLY, true},
    {"rb+", O_RDWR, true},
    {"wb", O_WRONLY | O_CREAT | O_TRUNC, false},
    {"wb+", O_RDWR | O_CREAT | O_TRUNC, true},
    {"ab", O_WRONLY | O_CREAT | O_APPEND, false},
    {"ab+", O_RDWR | O_CREAT | O_APPEND, true},
};

const Mode* FindMode(const char* text)
{
    for (const Mode& mode : MODES) {
        if (std::strcmp(mode.text, text) == 0) return &mode;
    }
    return nullptr;
}

/// Why a file just opened cannot be used; empty when it can.
std::wstring Objection(int file, const Mode& mode)
{
    struct stat status = {};
    if (::fstat(file, &status) != 0) return FileSystem::SystemErrorText(errno);
    if (S_ISDIR(status.st_mode)) return FileSystem::SystemErrorText(EISDIR);
    if (mode.isRead && !S_ISREG(status.st_mode)) return L"is no regular file";
    return {};
}
} // namespace

std::FILE* NativeFile::OpenStream(const std::wstring& name, const char* mode, std::wstring& reason)
{
    reason = L"the mode is unknown";
    const Mode* known = FindMode(mode);
    if (!known) return nullptr;

    const int flags = known->flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    const int file = ::open(NativeName(name).c_str(), flags, 0666);
    reason = file < 0 ? FileSystem::SystemErrorText(errno) : Objection(file, *known);
    if (file < 0) return nullptr;
    std::FILE* stream = nullptr;
    if (reason.empty()) {
        const int status = ::fcntl(file, F_GETFL);
        (void)::fcntl(file, F_SETFL, status & ~O_NONBLOCK);
        stream = ::fdopen(file, mode);
        if (!stream) reason = FileSystem::SystemErrorText(errno);
    }
    if (!stream) ::close(file);
    return stream;
}

bool NativeFile::SeekStream(std::FILE* stream, std::int64_t offset, int origin)
{
    return ::fseeko(stream, static_cast<off_t>(offset), origin) == 0;
}

std::int64_t NativeFile::TellStream(std::FILE* stream)
{
    return static_cast<std::int64_t>(::ftello(stream));
}
