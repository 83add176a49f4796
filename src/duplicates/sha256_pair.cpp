#include "duplicates/sha256_pair.h"

#ifdef __x86_64__

#include <array>
#include <iterator>

#include <cpuid.h>
#include <immintrin.h>

// The instructions of this file are those of processors with SHA extensions; `hasSha256Pairs` asks.
#define KESTAVON_SHA_TARGET __attribute__((target("sha,sse4.1")))

namespace kestavon {

namespace {

// FIPS 180-4, 4.2.2: the first 32 bits of the fractions of the cube roots of the first 64 primes.
alignas(16) constexpr std::array<std::uint32_t, 64> roundConstants{0x428a2f98, 0x71374491,
    0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5, 0xd807aa98, 0x12835b01,
    0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174, 0xe49b69c1, 0xefbe4786,
    0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da, 0x983e5152, 0xa831c66d,
    0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967, 0x27b70a85, 0x2e1b2138,
    0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85, 0xa2bfe8a1, 0xa81a664b,
    0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070, 0x19a4c116, 0x1e376c08,
    0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3, 0x748f82ee, 0x78a5636f,
    0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

constexpr std::size_t blockBytes = 64;
// Four rounds at a time, because that many words of the message fill a register.
constexpr std::size_t steps = 16;

/// A stream's state in the order that the instructions want, and the block that is taken in.
struct Lane {
    __m128i abef;
    __m128i cdgh;
    __m128i words[4]; ///< of the message schedule, sixteen at a time
};

KESTAVON_SHA_TARGET inline Lane laneOf(const std::uint32_t* state)
{
    const auto* words = reinterpret_cast<const __m128i*>(state);
    const __m128i badc = _mm_shuffle_epi32(_mm_loadu_si128(words), 0xB1);
    const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(words + 1), 0x1B);
    Lane lane;
    lane.abef = _mm_alignr_epi8(badc, efgh, 8);
    lane.cdgh = _mm_blend_epi16(efgh, badc, 0xF0);
    return lane;
}

KESTAVON_SHA_TARGET inline void store(const Lane& lane, std::uint32_t* state)
{
    auto* words = reinterpret_cast<__m128i*>(state);
    const __m128i feba = _mm_shuffle_epi32(lane.abef, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(lane.cdgh, 0xB1);
    _mm_storeu_si128(words, _mm_blend_epi16(feba, dchg, 0xF0));
    _mm_storeu_si128(words + 1, _mm_alignr_epi8(dchg, feba, 8));
}

KESTAVON_SHA_TARGET inline void load(Lane& lane, const char* block)
{
    const __m128i bigEndian = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    for (std::size_t i = 0; i < std::size(lane.words); ++i) {
        const auto* bytes = reinterpret_cast<const __m128i*>(block) + i;
        lane.words[i] = _mm_shuffle_epi8(_mm_loadu_si128(bytes), bigEndian);
    }
}

/// Four rounds, and the words that the fourth step from here will need.
KESTAVON_SHA_TARGET inline void advance(Lane& lane, std::size_t step)
{
    auto& words = lane.words[step % 4];
    const auto* constants = reinterpret_cast<const __m128i*>(roundConstants.data()) + step;
    const __m128i sum = _mm_add_epi32(words, _mm_load_si128(constants));
    lane.cdgh = _mm_sha256rnds2_epu32(lane.cdgh, lane.abef, sum);
    lane.abef = _mm_sha256rnds2_epu32(lane.abef, lane.cdgh, _mm_shuffle_epi32(sum, 0x0E));
    if (step + 4 < steps) {
        const auto& second = lane.words[(step + 1) % 4];
        const auto& third = lane.words[(step + 2) % 4];
        const auto& last = lane.words[(step + 3) % 4];
        const __m128i begun
            = _mm_add_epi32(_mm_sha256msg1_epu32(words, second), _mm_alignr_epi8(last, third, 4));
        words = _mm_sha256msg2_epu32(begun, last);
    }
}

} // namespace

bool hasSha256Pairs()
{
    static const bool has = [] {
        // Leaf 7 tells of the SHA extensions, leaf 1 of what else is used here (Intel SDM, CPUID).
        unsigned a = 0;
        unsigned b = 0;
        unsigned c = 0;
        unsigned d = 0;
        const bool hasSha = __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 && (b & bit_SHA) != 0;
        return hasSha && __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_SSE4_1) != 0
            && (c & bit_SSSE3) != 0;
    }();
    return has;
}

KESTAVON_SHA_TARGET void hashPair(const Sha256Stream& a, const Sha256Stream& b, std::size_t blocks)
{
    Lane first = laneOf(a.state);
    Lane second = laneOf(b.state);
    for (std::size_t block = 0; block < blocks; ++block) {
        const auto firstBefore = first;
        const auto secondBefore = second;
        load(first, a.bytes + block * blockBytes);
        load(second, b.bytes + block * blockBytes);
        // Each step of one lane waits for the one before: the other lane's fills the gaps.
#pragma GCC unroll 16
        for (std::size_t step = 0; step < steps; ++step) {
            advance(first, step);
            advance(second, step);
        }
        first.abef = _mm_add_epi32(first.abef, firstBefore.abef);
        first.cdgh = _mm_add_epi32(first.cdgh, firstBefore.cdgh);
        second.abef = _mm_add_epi32(second.abef, secondBefore.abef);
        second.cdgh = _mm_add_epi32(second.cdgh, secondBefore.cdgh);
    }
    store(first, a.state);
    store(second, b.state);
}

} // namespace kestavon

#else

namespace kestavon {

bool hasSha256Pairs()
{
    return false;
}

void hashPair(const Sha256Stream&, const Sha256Stream&, std::size_t) { }

} // namespace kestavon

#endif
