#pragma once

#include "platform/RawFile.h"
#include "support/CRCChecksum.h"
#include "support/ErrorString.h"

#include <string>

/// A binary file that keeps a checksum of the bytes that pass through it. Closing appends nothing.
class HALYARD_API CRCFile {
public:
    /// Mode as in the C library ("rb", "w+", ...); one for text is as one for bytes. A file that cannot be
    /// opened is a failure whose text names it and says why. An open file is closed first; the checksum
    /// starts anew.
    ErrorString Open(const std::wstring& name, const wchar_t* mode);
    /// Number of whole items transferred; the bytes transferred are folded into the checksum.
    std::size_t Read(void* buffer, std::size_t size, std::size_t count);
    std::size_t Write(const void* buffer, std::size_t size, std::size_t count);
    /// Origin as in the C library (SEEK_SET, SEEK_CUR, SEEK_END). False when it cannot be reached.
    bool Seek(int offset, int origin);
    /// Position from the start of the file, 2^32 - 1 for all beyond; 0 when no file is open.
    unsigned int Tell() const;
    /// True when everything written has reached the system; false also when no file was open.
    bool Close();

    unsigned int Checksum() const { return m_Checksum.Value(); }

private:
    RawFile m_File;
    CRCChecksum m_Checksum;
};
