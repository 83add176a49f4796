#include "platform/file_error.h"

#include <cerrno>

namespace kestavon {

namespace {

std::string quoted(std::string_view name)
{
    return "“" + std::string(name) + "”";
}

} // namespace

FileError::Kind fileErrorKind(int errorNumber)
{
    switch (errorNumber) {
    case EEXIST:
    case ENOTEMPTY: return FileError::Kind::fileExists;
    case ENOENT:
    case ENOTDIR: return FileError::Kind::noSuchFile;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY: return FileError::Kind::permission;
    case ENOSPC:
    case EDQUOT: return FileError::Kind::noSpace;
    case ECANCELED: return FileError::Kind::cancelled;
    case ESTALE: return FileError::Kind::changed;
    default: return FileError::Kind::other;
    }
}

FileError moveError(FileError::Kind kind, std::string_view name, std::string_view folderName)
{
    using Kind = FileError::Kind;
    const auto failure = quoted(name) + " couldn’t be moved to " + quoted(folderName);
    switch (kind) {
    case Kind::fileExists:
        return {kind,
            "The file " + quoted(name) + " couldn’t be saved in the folder " + quoted(folderName)
                + " because a file with the same name already exists."};
    case Kind::noSuchFile:
        return {kind,
            failure
                + " because either the former doesn’t exist, or the folder containing the latter "
                  "doesn’t exist."};
    case Kind::permission:
        return {kind, failure + " because you don’t have permission to access it."};
    case Kind::noSpace: return {kind, failure + " because there isn’t enough space."};
    case Kind::changed: return {kind, failure + " because it changed while it was being moved."};
    case Kind::cancelled: return {kind, failure + " because the move was cancelled."};
    case Kind::other: break;
    }
    return {kind, failure + "."};
}

FileError removalError(FileError::Kind kind, std::string_view name)
{
    using Kind = FileError::Kind;
    const auto failure = quoted(name) + " couldn’t be removed";
    switch (kind) {
    case Kind::noSuchFile: return {kind, failure + " because it doesn’t exist."};
    case Kind::permission:
        return {kind, failure + " because you don’t have permission to access it."};
    case Kind::changed: return {kind, failure + " because it changed meanwhile."};
    case Kind::cancelled: return {kind, failure + " because the removal was cancelled."};
    case Kind::fileExists: // Something new lies in the folder.
    case Kind::noSpace:
    case Kind::other: break;
    }
    return {kind, failure + "."};
}

FileError readError(FileError::Kind kind, std::string_view name)
{
    using Kind = FileError::Kind;
    const auto failure = quoted(name) + " couldn’t be read";
    switch (kind) {
    case Kind::noSuchFile: return {kind, failure + " because it doesn’t exist."};
    case Kind::permission:
        return {kind, failure + " because you don’t have permission to access it."};
    case Kind::changed: return {kind, failure + " because it changed meanwhile."};
    case Kind::cancelled: return {kind, failure + " because the reading was cancelled."};
    case Kind::fileExists:
    case Kind::noSpace:
    case Kind::other: break;
    }
    return {kind, failure + "."};
}

FileError folderError(FileError::Kind kind, std::string_view name)
{
    using Kind = FileError::Kind;
    const auto failure = "The folder " + quoted(name) + " couldn’t be used";
    switch (kind) {
    case Kind::fileExists: // Only ever something that is no folder: a folder there is welcome.
        return {kind, failure + " because a file with the same name already exists."};
    case Kind::noSuchFile: return {kind, failure + " because it doesn’t exist."};
    case Kind::permission:
        return {kind, failure + " because you don’t have permission to access it."};
    case Kind::noSpace: return {kind, failure + " because there isn’t enough space."};
    case Kind::changed:
    case Kind::cancelled:
    case Kind::other: break;
    }
    return {kind, failure + "."};
}

} // namespace kestavon
