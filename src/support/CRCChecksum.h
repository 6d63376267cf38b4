#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>

/// Running CRC-32 (IEEE 802.3: polynomial 0x04C11DB7 reflected, initial value and final exclusive-or
/// 0xFFFFFFFF). The checksum of the nine bytes "123456789" is 0xCBF43926.
class HALYARD_API CRCChecksum {
public:
    /// Folds an int as four bytes, the lowest first.
    CRCChecksum& operator+=(int value);
    /// Folds a run of ints, each as += does.
    void UpdateInts(const int* values, std::size_t count);
    /// Folds a run of bytes.
    void Update(const void* bytes, std::size_t count);
    /// The checksum so far; 0 for nothing.
    unsigned int Value() const { return ~m_State; }

private:
    std::uint32_t m_State = 0xFFFFFFFFU;
};
