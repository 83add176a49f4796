#pragma once

#include "platform/file_error.h"
#include "platform/file_mover.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kestavon {

enum class EntryKind { file, folder, link, other };

/// What has to be known and prepared where items are moved to. Any thread.
class FilePlaces {
public:
    virtual ~FilePlaces() = default;

    /// What lies at `path`, a link that leads nowhere included; nothing when nothing does, or when
    /// it cannot be looked at.
    virtual std::optional<EntryKind> kindOf(const std::string& path) const = 0;

    /// Makes the folder and those missing above it, with `permissions` less what the user's mask
    /// takes away. Gives the folders that it made, the highest first; none when the folder was
    /// there, be it behind a link.
    virtual FileResult<std::vector<std::string>> makeFolder(
        const std::string& path, unsigned permissions)
        = 0;
    /// Takes back what `makeFolder` made, as far as nothing else has come to lie there.
    virtual void removeMadeFolders(const std::vector<std::string>& folders) = 0;

    /// How many bytes a name in the folder may have.
    virtual std::size_t longestNameIn(const std::string& folder) const = 0;
    /// The names in a folder, in no order; none when it cannot be listed.
    virtual std::vector<std::string> namesIn(const std::string& folder) const = 0;

    /// Writes a small file of the program's own, with the folders above that are missing, readable
    /// only for its owner; it is on the disk when this gives true.
    virtual bool writeNote(const std::string& path, const std::string& bytes) = 0;
    /// What `writeNote` wrote; nothing when there is no such file.
    virtual std::optional<std::string> readNote(const std::string& path) const = 0;
    virtual void removeNote(const std::string& path) = 0;

    /// The extended attributes of the file or folder at `path` whose names begin with `prefix`.
    virtual std::vector<FileMark> marksOf(
        const std::string& path, const std::string& prefix) const = 0;
};

/// This machine's folders.
class SystemFilePlaces final : public FilePlaces {
public:
    std::optional<EntryKind> kindOf(const std::string& path) const override;
    FileResult<std::vector<std::string>> makeFolder(
        const std::string& path, unsigned permissions) override;
    void removeMadeFolders(const std::vector<std::string>& folders) override;
    std::size_t longestNameIn(const std::string& folder) const override;
    std::vector<std::string> namesIn(const std::string& folder) const override;
    bool writeNote(const std::string& path, const std::string& bytes) override;
    std::optional<std::string> readNote(const std::string& path) const override;
    void removeNote(const std::string& path) override;
    std::vector<FileMark> marksOf(
        const std::string& path, const std::string& prefix) const override;
};

} // namespace kestavon
