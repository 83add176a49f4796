#pragma once

#include "core/domain/duplicate_list.h"

#include <memory>
#include <span>

#include <openssl/types.h>

namespace kestavon {

/// The SHA-256 digest of bytes that come in pieces. Copying it forks the computation. One thread at
/// a time; throws std::bad_alloc when the system has no memory left.
class Sha256 {
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256& other);
    Sha256(Sha256&& other) noexcept;
    Sha256& operator=(const Sha256&) = delete;
    Sha256& operator=(Sha256&&) = delete;

    void update(std::span<const char> bytes);
    /// The digest of everything so far; afterwards the computation starts anew.
    Sha256Digest finish();

private:
    struct Free {
        void operator()(EVP_MD_CTX* context) const;
    };

    std::unique_ptr<EVP_MD_CTX, Free> m_context;
};

} // namespace kestavon
