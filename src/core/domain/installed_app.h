#pragma once

#include "core/domain/hashing.h"
#include "core/domain/named_enum.h"
#include "core/domain/uuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// What kind of data an application left behind.
enum class LeftoverKind { preferences, cache, appSupport, container, logs, savedState, other };

template <> struct NamedCases<LeftoverKind> {
    static constexpr std::array<NamedCase<LeftoverKind>, 7> table{{
        {LeftoverKind::preferences, "Preferences"},
        {LeftoverKind::cache, "Cache"},
        {LeftoverKind::appSupport, "App Support"},
        {LeftoverKind::container, "Container"},
        {LeftoverKind::logs, "Logs"},
        {LeftoverKind::savedState, "Saved State"},
        {LeftoverKind::other, "Other"},
    }};
};

/// A file or folder that belongs to an installed application but lies outside its bundle.
struct LeftoverFile {
    Uuid id;
    std::string url; ///< absolute path
    std::int64_t size = 0; ///< bytes
    LeftoverKind kind = LeftoverKind::other;

    friend bool operator==(const LeftoverFile&, const LeftoverFile&) = default;
    std::size_t hashValue() const { return hashFields(id, url, size, kind); }
};

/// An application found by the uninstaller.
struct InstalledApp {
    Uuid id;
    std::string name;
    std::optional<std::string> bundleID;
    std::string appURL; ///< absolute path of the application
    std::vector<LeftoverFile> leftovers;
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::LeftoverFile);
