#include "duplicates/sha256.h"

#include <new>
#include <utility>

#include <openssl/evp.h>

namespace kestavon {

namespace {

/// Looked up once: asking for the algorithm by name costs as much as a kilobyte of hashing.
const EVP_MD* algorithm()
{
    static const EVP_MD* const sha256 = EVP_MD_fetch(nullptr, "SHA256", nullptr);
    return sha256 ? sha256 : EVP_sha256();
}

// The library fails only when it runs out of memory.
void require(int succeeded)
{
    if (succeeded != 1)
        throw std::bad_alloc();
}

} // namespace

void Sha256::Free::operator()(EVP_MD_CTX* context) const
{
    EVP_MD_CTX_free(context);
}

Sha256::Sha256()
    : m_context(EVP_MD_CTX_new())
{
    require(m_context && EVP_DigestInit_ex2(m_context.get(), algorithm(), nullptr) == 1 ? 1 : 0);
}

Sha256::~Sha256() = default;
Sha256::Sha256(Sha256&& other) noexcept = default;

Sha256::Sha256(const Sha256& other)
    : m_context(EVP_MD_CTX_new())
{
    require(m_context ? EVP_MD_CTX_copy_ex(m_context.get(), other.m_context.get()) : 0);
}

void Sha256::update(std::span<const char> bytes)
{
    require(EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()));
}

Sha256Digest Sha256::finish()
{
    Sha256Digest digest{};
    require(EVP_DigestFinal_ex(m_context.get(), digest.data(), nullptr));
    require(EVP_DigestInit_ex2(m_context.get(), nullptr, nullptr));
    return digest;
}

} // namespace kestavon
