#pragma once

#include <cstddef>
#include <cstdint>

namespace kestavon {

/// One of two streams that are hashed together: the eight words of its state (FIPS 180-4) and what
/// comes next of it.
struct Sha256Stream {
    std::uint32_t* state = nullptr;
    const char* bytes = nullptr;
};

/// Whether this processor takes in two streams at once faster than one after the other.
bool hasSha256Pairs();

/// Takes in so many blocks, of 64 bytes each, of both streams. Only where `hasSha256Pairs`.
void hashPair(const Sha256Stream& a, const Sha256Stream& b, std::size_t blocks);

} // namespace kestavon
