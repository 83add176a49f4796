#include "core/domain/uuid.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <random>

#include <sys/random.h>

namespace kestavon {

namespace {

constexpr std::uint64_t halfMask = (std::uint64_t{1} << 61) - 1;
constexpr std::array<std::size_t, 4> dashPositions{8, 13, 18, 23};

void fillWithEntropy(void* out, std::size_t size)
{
    auto* at = static_cast<std::uint8_t*>(out);
    while (size > 0) {
        const auto got = ::getrandom(at, size, 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) { // Kernels older than 3.17; the standard library knows other ways.
            std::random_device device;
            for (; size > 0; --size)
                *at++ = static_cast<std::uint8_t>(device());
            return;
        }
        at += got;
        size -= static_cast<std::size_t>(got);
    }
}

void stampAsVersion4(Uuid& id)
{
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);
}

std::uint64_t scramble(std::uint64_t value, std::uint64_t key)
{
    // The finaliser of MurmurHash3 over the keyed value: every input bit reaches every output bit.
    value ^= key;
    value = (value ^ (value >> 33)) * 0xFF51AFD7ED558CCDULL;
    value = (value ^ (value >> 33)) * 0xC4CEB9FE1A85EC53ULL;
    return (value ^ (value >> 33)) & halfMask;
}

// The 122 bits of a version 4 identifier that are free, as two halves of 61.
Uuid fromHalves(std::uint64_t left, std::uint64_t right)
{
    // Byte layout: 48 bits, version nibble, 12 bits, variant pair, 62 bits.
    const std::uint64_t upper = (left >> 1); // 60 bits: 48 + 12
    const std::uint64_t lower = ((left & 1) << 61) | right; // 62 bits
    const std::uint64_t high = ((upper >> 12) << 16) | 0x4000 | (upper & 0x0FFF);
    const std::uint64_t low = (std::uint64_t{2} << 62) | lower;
    Uuid id;
    for (std::size_t i = 0; i < 8; ++i) {
        id.bytes[i] = static_cast<std::uint8_t>(high >> (56 - 8 * i));
        id.bytes[8 + i] = static_cast<std::uint8_t>(low >> (56 - 8 * i));
    }
    return id;
}

bool toHalves(const Uuid& id, std::uint64_t& left, std::uint64_t& right)
{
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    for (std::size_t i = 0; i < 8; ++i) {
        high = (high << 8) | id.bytes[i];
        low = (low << 8) | id.bytes[8 + i];
    }
    if ((high & 0xF000) != 0x4000 || (low >> 62) != 2)
        return false;
    const std::uint64_t upper = ((high >> 16) << 12) | (high & 0x0FFF);
    left = (upper << 1) | ((low >> 61) & 1);
    right = low & halfMask;
    return true;
}

} // namespace

Uuid Uuid::random()
{
    struct Pool {
        std::array<std::uint8_t, 4096> bytes;
        std::size_t used = sizeof bytes;
    };
    thread_local Pool pool;
    if (pool.used == pool.bytes.size()) {
        fillWithEntropy(pool.bytes.data(), pool.bytes.size());
        pool.used = 0;
    }
    Uuid id;
    std::memcpy(id.bytes.data(), pool.bytes.data() + pool.used, id.bytes.size());
    pool.used += id.bytes.size();
    stampAsVersion4(id);
    return id;
}

std::optional<Uuid> Uuid::fromText(std::string_view text)
{
    if (text.size() != 36)
        return std::nullopt;
    Uuid id;
    std::size_t digit = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dashPlace
            = std::find(dashPositions.begin(), dashPositions.end(), i) != dashPositions.end();
        if (dashPlace) {
            if (text[i] != '-')
                return std::nullopt;
            continue;
        }
        const char c = text[i];
        int value = -1;
        if (c >= '0' && c <= '9')
            value = c - '0';
        else if (c >= 'a' && c <= 'f')
            value = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            value = c - 'A' + 10;
        if (value < 0)
            return std::nullopt;
        auto& byte = id.bytes[digit / 2];
        byte = static_cast<std::uint8_t>((byte << 4) | value);
        ++digit;
    }
    return id;
}

std::string Uuid::text() const
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            out += '-';
        out += digits[bytes[i] >> 4];
        out += digits[bytes[i] & 0x0F];
    }
    return out;
}

IdSpace IdSpace::random()
{
    IdSpace space;
    fillWithEntropy(space.m_roundKeys.data(), sizeof space.m_roundKeys);
    fillWithEntropy(&space.m_salt, sizeof space.m_salt);
    space.m_salt &= halfMask;
    return space;
}

Uuid IdSpace::at(std::uint64_t ordinal) const
{
    // A Feistel network: invertible whatever the round function is.
    std::uint64_t left = m_salt;
    std::uint64_t right = ordinal & halfMask;
    for (const auto key : m_roundKeys) {
        const std::uint64_t next = left ^ scramble(right, key);
        left = right;
        right = next;
    }
    return fromHalves(left, right);
}

std::optional<std::uint64_t> IdSpace::ordinalOf(const Uuid& id) const
{
    std::uint64_t left = 0;
    std::uint64_t right = 0;
    if (!toHalves(id, left, right))
        return std::nullopt;
    for (auto key = m_roundKeys.rbegin(); key != m_roundKeys.rend(); ++key) {
        const std::uint64_t previous = right ^ scramble(left, *key);
        right = left;
        left = previous;
    }
    if (left != m_salt)
        return std::nullopt;
    return right;
}

} // namespace kestavon

std::size_t std::hash<kestavon::Uuid>::operator()(const kestavon::Uuid& id) const noexcept
{
    std::uint64_t high = 0;
    std::uint64_t low = 0;
    std::memcpy(&high, id.bytes.data(), 8);
    std::memcpy(&low, id.bytes.data() + 8, 8);
    return static_cast<std::size_t>(high ^ (low * 0x9E3779B97F4A7C15ULL));
}
