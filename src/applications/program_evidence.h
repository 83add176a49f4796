#pragma once

#include "applications/name_owners.h"
#include "core/domain/text_hash.h"
#include "platform/host_layout.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace kestavon {

/// Tells by a name whether the program that data belongs to is gone. Only evidence counts: what is
/// not known to have been a program's is taken for something else. All names are in lower case.
class ProgramEvidence {
public:
    /// Reads what the layout's tables name. `running` are names and identifiers of applications
    /// that run. `noteMove` is called while it goes on. Not on the main thread.
    ProgramEvidence(
        const HostLayout& layout, std::span<const std::string> running,
        const std::function<void()>& noteMove = [] {});

    /// Whether what is called `name`, less the endings of settings files, belonged to a program
    /// that is not here any more: nothing that is here could own it, no part of the desktop is
    /// called so, and it is an identifier, or the name of a package that can be installed or was.
    bool isAbandoned(std::string_view name) const;

    /// Whether it is the identifier of a sandboxed application that is not here.
    bool isAbandonedIdentifier(std::string_view name) const;

private:
    using Names = std::unordered_set<std::string, TextHash, std::equal_to<>>;

    bool isOwned(std::string_view name) const;
    bool isShared(std::string_view name) const;
    void addOwner(std::string_view term);
    void readPrograms(const HostLayout& layout, const std::function<void()>& noteMove);
    void readPackages(const ProgramRecords& records, const std::function<void()>& noteMove);
    void addFormerPackage(std::string_view package);
    void readPackageLists(const std::string& folder);

    NameOwners m_owners;
    Names m_beginnings; ///< all that the owners' names begin with, up to what separates words
    Names m_packages; ///< that are installed
    Names m_formerPackages; ///< that were, or can be
    std::vector<std::string> m_sharedNames;
};

} // namespace kestavon
