#include "core/model/text_finder.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace kestavon {

namespace {

constexpr char caseBit = 'a' ^ 'A';

std::string caseBitsOf(const std::string& needle)
{
    std::string bits(needle.size(), '\0');
    std::ranges::transform(
        needle, bits.begin(), [](char c) { return c >= 'a' && c <= 'z' ? caseBit : '\0'; });
    return bits;
}

} // namespace

TextFinder::TextFinder(std::string needle, Method method)
    : m_needle(std::move(needle))
    , m_caseBits(caseBitsOf(m_needle))
    , m_find(implementation(method))
{
}

const char* TextFinder::findBytewise(
    const TextFinder& finder, const char* begin, const char* end, const char* /*readableEnd*/)
{
    const auto length = static_cast<std::ptrdiff_t>(finder.m_needle.size());
    for (; end - begin >= length; ++begin) {
        if (finder.isAt(begin))
            return begin;
    }
    return nullptr;
}

#if defined(__x86_64__)

// Both compare the needle's first and last byte at every place of a block at once and look closer
// where both are right.

const char* TextFinder::findBySse2(
    const TextFinder& finder, const char* begin, const char* end, const char* readableEnd)
{
    constexpr std::ptrdiff_t block = sizeof(__m128i);
    const auto length = static_cast<std::ptrdiff_t>(finder.m_needle.size());
    const auto first = _mm_set1_epi8(finder.m_needle.front());
    const auto last = _mm_set1_epi8(finder.m_needle.back());
    const auto firstCase = _mm_set1_epi8(finder.m_caseBits.front());
    const auto lastCase = _mm_set1_epi8(finder.m_caseBits.back());
    const auto load
        = [](const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); };
    for (; end - begin >= length && readableEnd - begin >= length - 1 + block; begin += block) {
        const auto heads = _mm_cmpeq_epi8(_mm_or_si128(load(begin), firstCase), first);
        const auto tails = _mm_cmpeq_epi8(_mm_or_si128(load(begin + length - 1), lastCase), last);
        auto places = static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(heads, tails)));
        for (; places != 0; places &= places - 1) {
            const auto* const place = begin + std::countr_zero(places);
            if (end - place < length)
                return nullptr;
            if (finder.isAt(place))
                return place;
        }
    }
    return findBytewise(finder, begin, end, readableEnd);
}

[[gnu::target("avx2")]] const char* TextFinder::findByAvx2(
    const TextFinder& finder, const char* begin, const char* end, const char* readableEnd)
{
    constexpr std::ptrdiff_t block = sizeof(__m256i);
    const auto length = static_cast<std::ptrdiff_t>(finder.m_needle.size());
    const auto first = _mm256_set1_epi8(finder.m_needle.front());
    const auto last = _mm256_set1_epi8(finder.m_needle.back());
    const auto firstCase = _mm256_set1_epi8(finder.m_caseBits.front());
    const auto lastCase = _mm256_set1_epi8(finder.m_caseBits.back());
    for (; end - begin >= length && readableEnd - begin >= length - 1 + block; begin += block) {
        const auto front = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(begin));
        const auto back = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(begin + length - 1));
        const auto heads = _mm256_cmpeq_epi8(_mm256_or_si256(front, firstCase), first);
        const auto tails = _mm256_cmpeq_epi8(_mm256_or_si256(back, lastCase), last);
        auto places = static_cast<unsigned>(_mm256_movemask_epi8(_mm256_and_si256(heads, tails)));
        for (; places != 0; places &= places - 1) {
            const auto* const place = begin + std::countr_zero(places);
            if (end - place < length)
                return nullptr;
            if (finder.isAt(place))
                return place;
        }
    }
    return findBytewise(finder, begin, end, readableEnd);
}

bool TextFinder::isSupported(Method method)
{
    return method != Method::avx2 || __builtin_cpu_supports("avx2") != 0;
}

TextFinder::Find TextFinder::implementation(Method method)
{
    switch (method) {
    case Method::avx2: return findByAvx2;
    case Method::sse2: return findBySse2;
    case Method::bytewise: break;
    }
    return findBytewise;
}

#else

bool TextFinder::isSupported(Method method)
{
    return method == Method::bytewise;
}

TextFinder::Find TextFinder::implementation(Method)
{
    return findBytewise;
}

#endif

TextFinder::Method TextFinder::fastestMethod()
{
    static const Method method = [] {
        for (const auto candidate : {Method::avx2, Method::sse2}) {
            if (isSupported(candidate))
                return candidate;
        }
        return Method::bytewise;
    }();
    return method;
}

} // namespace kestavon
