#include "support/CRCChecksum.h"

#include "platform/CarrylessFold.h"

#include <array>

namespace {

constexpr std::uint32_t REFLECTED_POLYNOMIAL = 0xEDB88320U;
constexpr std::size_t SLICES = 16;

using Slices = std::array<std::array<std::uint32_t, 256>, SLICES>;

/// Row 0 folds a byte; row n folds a byte that is followed by n bytes of zero.
constexpr Slices MakeSlices()
{
    Slices slices{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t rest = byte;
        for (int bit = 0; bit < 8; ++bit) rest = rest >> 1 ^ (rest & 1 ? REFLECTED_POLYNOMIAL : 0);
        slices[0][byte] = rest;
    }
    for (std::size_t n = 1; n < SLICES; ++n)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = slices[n - 1][byte];
            slices[n][byte] = before >> 8 ^ slices[0][before & 0xFF];
        }
    return slices;
}

constexpr Slices SLICE = MakeSlices();

std::uint32_t LittleEndian(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8
           | static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// Folds four bytes that are followed by n others of the same step.
std::uint32_t Fold(std::uint32_t word, std::size_t n)
{
    return SLICE[n + 3][word & 0xFF] ^ SLICE[n + 2][word >> 8 & 0xFF] ^ SLICE[n + 1][word >> 16 & 0xFF]
           ^ SLICE[n][word >> 24];
}

std::uint32_t Feed(std::uint32_t state, const unsigned char* next, std::size_t count)
{
    for (; count >= SLICES; count -= SLICES, next += SLICES)
        state = Fold(state ^ LittleEndian(next), 12) ^ Fold(LittleEndian(next + 4), 8)
                ^ Fold(LittleEndian(next + 8), 4) ^ Fold(LittleEndian(next + 12), 0);
    for (; count > 0; --count, ++next) state = state >> 8 ^ SLICE[0][(state ^ *next) & 0xFF];
    return state;
}

} // namespace

CRCChecksum& CRCChecksum::operator+=(int value)
{
    m_State = Fold(m_State ^ static_cast<std::uint32_t>(value), 0);
    return *this;
}

void CRCChecksum::UpdateInts(const int* values, std::size_t count)
{
    std::uint32_t state = m_State;
    for (; count >= 4; count -= 4, values += 4)
        state = Fold(state ^ static_cast<std::uint32_t>(values[0]), 12)
                ^ Fold(static_cast<std::uint32_t>(values[1]), 8)
                ^ Fold(static_cast<std::uint32_t>(values[2]), 4)
                ^ Fold(static_cast<std::uint32_t>(values[3]), 0);
    for (; count > 0; --count, ++values) state = Fold(state ^ static_cast<std::uint32_t>(*values), 0);
    m_State = state;
}

void CRCChecksum::Update(const void* bytes, std::size_t count)
{
    const auto first = static_cast<const unsigned char*>(bytes);
    unsigned char rest[CarrylessFold::REST_SIZE];
    const std::size_t folded = CarrylessFold::Fold(m_State, first, count, rest);
    if (folded > 0) m_State = Feed(0, rest, sizeof rest);
    m_State = Feed(m_State, first + folded, count - folded);
}
