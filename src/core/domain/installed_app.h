#pragma once

#include "core/domain/hashing.h"
#include "core/domain/named_enum.h"
#include "core/domain/uuid.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// A file or folder that belongs to an installed application but lies outside its bundle.
struct LeftoverFile {
    /// What kind of data it is.
    enum class LeftoverKind { preferences, cache, appSupport, container, logs, savedState, other };

    Uuid id;
    std::string url; ///< absolute path
    std::int64_t size = 0; ///< bytes
    LeftoverKind kind = LeftoverKind::other;
    bool isDirectory = false; ///< as it was found: a folder, and no link to one

    friend bool operator==(const LeftoverFile&, const LeftoverFile&) = default;
    std::size_t hashValue() const { return hashFields(id, url, size, kind, isDirectory); }
};

template <> struct NamedCases<LeftoverFile::LeftoverKind> {
    using enum LeftoverFile::LeftoverKind;
    static constexpr std::array<NamedCase<LeftoverFile::LeftoverKind>, 7> table{{
        {preferences, "Preferences"},
        {cache, "Cache"},
        {appSupport, "App Support"},
        {container, "Container"},
        {logs, "Logs"},
        {savedState, "Saved State"},
        {other, "Other"},
    }};
};

/// An application found by the uninstaller.
struct InstalledApp {
    Uuid id;
    std::string name;
    std::optional<std::string> bundleID;
    std::string appURL; ///< absolute path of the application
    std::vector<LeftoverFile> leftovers;
    /// False where only its leftovers can be moved: the application itself is the system's, or lies
    /// in the Trash already.
    bool canBeMoved = true;
    bool isDirectory = false; ///< what lies at `appURL`, as it was found; no link to one
    std::optional<std::string> icon
        = {}; ///< the icon's name in the desktop's theme, or its file's absolute path

    friend bool operator==(const InstalledApp&, const InstalledApp&) = default;

    /// The sizes of all leftovers together, in bytes; stops at the largest 64-bit number.
    std::int64_t leftoverBytes() const
    {
        std::int64_t sum = 0;
        for (const auto& leftover : leftovers) {
            if (__builtin_add_overflow(sum, leftover.size, &sum))
                return std::numeric_limits<std::int64_t>::max();
        }
        return sum;
    }
};

} // namespace kestavon

KESTAVON_HASHABLE(kestavon::LeftoverFile);
