#include "platform/CarrylessFold.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

namespace {

constexpr std::uint32_t REFLECTED_POLYNOMIAL = 0xEDB88320U;

/// x to a power modulo the polynomial, reflected, as a factor of 33 bits: the product of two reflected
/// numbers comes out one place too low.
constexpr long long Factor(int power)
{
    std::uint32_t rest = 0x80000000U;
    for (int i = 0; i < power; ++i) rest = rest >> 1 ^ (rest & 1 ? REFLECTED_POLYNOMIAL : 0);
    return static_cast<long long>(rest) << 1;
}

constexpr int LANE_BITS = 128;
constexpr std::size_t LANE = sizeof(__m128i);
constexpr std::size_t LANES = 4;

#define HALYARD_CARRYLESS __attribute__((target("pclmul,sse2")))

/// Factors that move a lane over so many bits: of its low half, which is the higher one of the polynomial,
/// and its high half.
HALYARD_CARRYLESS inline __m128i FactorsOver(int bits)
{
    return bits == LANE_BITS ? _mm_set_epi64x(Factor(LANE_BITS - 32), Factor(LANE_BITS + 32))
                             : _mm_set_epi64x(Factor(static_cast<int>(LANES) * LANE_BITS - 32),
                                              Factor(static_cast<int>(LANES) * LANE_BITS + 32));
}

HALYARD_CARRYLESS inline __m128i Load(const unsigned char* bytes)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

/// Moves a lane on and adds what stands there.
HALYARD_CARRYLESS inline __m128i Onto(__m128i lane, __m128i factors, __m128i next)
{
    const __m128i low = _mm_clmulepi64_si128(lane, factors, 0x00);
    const __m128i high = _mm_clmulepi64_si128(lane, factors, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), next);
}

HALYARD_CARRYLESS std::size_t FoldLanes(std::uint32_t state, const unsigned char* bytes, std::size_t count,
                                        unsigned char* rest)
{
    const unsigned char* next = bytes;
    __m128i lanes[LANES];
    for (__m128i& lane : lanes) {
        lane = Load(next);
        next += LANE;
    }
    lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(state)));
    count -= LANES * LANE;
    const __m128i overAll = FactorsOver(static_cast<int>(LANES) * LANE_BITS);
    for (; count >= LANES * LANE; count -= LANES * LANE)
        for (__m128i& lane : lanes) {
            lane = Onto(lane, overAll, Load(next));
            next += LANE;
        }
    const __m128i overOne = FactorsOver(LANE_BITS);
    __m128i last = lanes[0];
    for (std::size_t i = 1; i < LANES; ++i) last = Onto(last, overOne, lanes[i]);
    for (; count >= LANE; count -= LANE) {
        last = Onto(last, overOne, Load(next));
        next += LANE;
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(rest), last);
    return static_cast<std::size_t>(next - bytes);
}

} // namespace

std::size_t CarrylessFold::Fold(std::uint32_t state, const unsigned char* bytes, std::size_t count,
                                unsigned char (&rest)[REST_SIZE])
{
    static const bool isThere = __builtin_cpu_supports("pclmul") != 0;
    return isThere && count >= SHORTEST ? FoldLanes(state, bytes, count, rest) : 0;
}

#else

std::size_t CarrylessFold::Fold(std::uint32_t, const unsigned char*, std::size_t,
                                unsigned char (&)[REST_SIZE])
{
    return 0;
}

#endif
