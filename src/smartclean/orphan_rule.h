#pragma once

#include "core/domain/text_hash.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace kestavon {

/// Tells data of applications that are there from data of those that are gone, by their names
/// alone. All names are in lower case.
class OrphanRule {
public:
    /// An application that is installed under this name (without ".app") and identifier, which owns
    /// what is called like other applications of its maker too: "com.example.editor" stands for
    /// "com.example" as well, though never for "com".
    void addInstalled(std::string_view name, const std::optional<std::string>& identifier);

    /// An application that runs, wherever it lies.
    void addRunning(
        const std::optional<std::string>& name, const std::optional<std::string>& identifier);

    /// Whether an application that was added owns what is called `name`: one is called the same, or
    /// the one name goes on where the other ends, after a dot.
    bool isOwned(std::string_view name) const;

    /// Whether what is called `name` could be an application's at all: only a name with a dot may
    /// be an identifier.
    static bool mayBeOrphan(std::string_view name) { return name.find('.') != name.npos; }

private:
    using Names = std::unordered_set<std::string, TextHash, std::equal_to<>>;

    void add(std::string_view identifier);
    void addBeginnings(std::string_view identifier);

    Names m_identifiers;
    Names m_beginnings; ///< all that identifiers begin with, up to a dot
};

} // namespace kestavon
