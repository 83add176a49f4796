#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestavon {

/// A universally unique identifier (RFC 4122, 128 bits in network order). The nil value is only
/// ever a placeholder. A plain value: copy and compare it on any thread.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A fresh random identifier (version 4). Safe on any thread; the kernel's generator is asked
    /// once per few hundred identifiers, because asking costs more than a microsecond.
    static Uuid random();

    /// Reads the 8-4-4-4-12 hexadecimal form, in either case; nothing for any other text.
    static std::optional<Uuid> fromText(std::string_view text);

    /// The 8-4-4-4-12 form in upper-case hexadecimal.
    std::string text() const;

    friend auto operator<=>(const Uuid&, const Uuid&) = default;
};

/// Hands out the identifiers of a long list without storing them: entry n's identifier is a keyed
/// permutation of n, so that the way back from an identifier to its entry is a calculation too.
/// An identifier of another space is recognised as foreign (the chance of mistaking one is 2^-60).
/// Immutable after construction: share it between threads freely.
class IdSpace {
public:
    /// A space under a fresh random key.
    static IdSpace random();

    Uuid at(std::uint64_t ordinal) const;

    /// The ordinal whose identifier this is; nothing when the identifier is not of this space.
    std::optional<std::uint64_t> ordinalOf(const Uuid& id) const;

    friend bool operator==(const IdSpace&, const IdSpace&) = default;

private:
    std::array<std::uint64_t, 4> m_roundKeys{};
    std::uint64_t m_salt = 0;
};

} // namespace kestavon

template <> struct std::hash<kestavon::Uuid> {
    std::size_t operator()(const kestavon::Uuid& id) const noexcept;
};
