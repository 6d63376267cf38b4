#pragma once

#include <cstddef>
#include <cstdint>

/// Long messages of CRC-32 (IEEE 802.3, reflected) by the processor's multiplication without carry, where it
/// has one: a message is replaced by one of 16 bytes that leaves the same remainder. After Gopal et al.,
/// "Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction", 2009.
class CarrylessFold {
public:
    static constexpr std::size_t REST_SIZE = 16;
    /// Shorter messages are left alone.
    static constexpr std::size_t SHORTEST = 128;

    /// Takes as much of the message as it can and says how many bytes that were; 0 where the processor
    /// cannot. A register of 0 that is then fed with `rest` holds what one of `state` fed with those bytes
    /// would.
    [[nodiscard]] static std::size_t Fold(std::uint32_t state, const unsigned char* bytes, std::size_t count,
                                          unsigned char (&rest)[REST_SIZE]);
};
