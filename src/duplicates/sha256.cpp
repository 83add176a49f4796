#include "duplicates/sha256.h"

#include "duplicates/sha256_pair.h"

#include <algorithm>
#include <cstdint>

namespace kestavon {

namespace {

constexpr std::size_t blockBytes = SHA256_CBLOCK;

} // namespace

// These functions of the library cannot fail (SHA256_Init(3ssl)).

Sha256::Sha256()
{
    SHA256_Init(&m_context);
}

void Sha256::update(std::span<const char> bytes)
{
    SHA256_Update(&m_context, bytes.data(), bytes.size());
}

Sha256Digest Sha256::finish()
{
    Sha256Digest digest{};
    SHA256_Final(digest.data(), &m_context);
    SHA256_Init(&m_context);
    return digest;
}

void Sha256::updateBoth(
    Sha256& a, std::span<const char> bytesOfA, Sha256& b, std::span<const char> bytesOfB)
{
    if (hasSha256Pairs() && a.isBetweenBlocks() && b.isBetweenBlocks()) {
        const auto blocks = std::min(bytesOfA.size(), bytesOfB.size()) / blockBytes;
        const auto bytes = blocks * blockBytes;
        hashPair({.state = a.m_context.h, .bytes = bytesOfA.data()},
            {.state = b.m_context.h, .bytes = bytesOfB.data()}, blocks);
        a.countTakenIn(bytes);
        b.countTakenIn(bytes);
        bytesOfA = bytesOfA.subspan(bytes);
        bytesOfB = bytesOfB.subspan(bytes);
    }
    a.update(bytesOfA);
    b.update(bytesOfB);
}

void Sha256::countTakenIn(std::size_t bytes)
{
    // The context counts bits, in two words.
    const auto bits = (std::uint64_t{m_context.Nh} << 32 | m_context.Nl) + std::uint64_t{bytes} * 8;
    m_context.Nl = static_cast<SHA_LONG>(bits);
    m_context.Nh = static_cast<SHA_LONG>(bits >> 32);
}

} // namespace kestavon
