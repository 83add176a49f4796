#pragma once

#include "core/domain/duplicate_list.h"

#include <span>

#include <openssl/sha.h>

namespace kestavon {

/// The SHA-256 digest of bytes that come in pieces. Copying it forks the computation. One thread at
/// a time.
class Sha256 {
public:
    Sha256();

    void update(std::span<const char> bytes);
    /// The digest of everything so far; afterwards the computation starts anew.
    Sha256Digest finish();

    /// Updates two computations together, which takes some processors little longer than one.
    static void updateBoth(
        Sha256& a, std::span<const char> bytesOfA, Sha256& b, std::span<const char> bytesOfB);

private:
    bool isBetweenBlocks() const { return m_context.num == 0; }
    void countTakenIn(std::size_t bytes);

    // Not the library's newer interface: that one hides the state, and allocates it.
    SHA256_CTX m_context{};
};

} // namespace kestavon
