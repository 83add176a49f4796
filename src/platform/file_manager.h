#pragma once

#include <string>

namespace kestavon {

/// Single questions about files and folders. Any thread. The walk of whole trees is not here: it
/// has an interface of its own.
class FileManager {
public:
    virtual ~FileManager() = default;
    /// Whether `path` is a folder whose entries can be listed, be there any or not. A link to such
    /// a folder counts; a file, a missing or a refused folder does not.
    virtual bool canListFolder(const std::string& path) const = 0;
};

/// The machine's own files.
class SystemFileManager final : public FileManager {
public:
    bool canListFolder(const std::string& path) const override;
};

} // namespace kestavon
