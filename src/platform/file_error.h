#pragma once

#include "core/domain/result.h"

#include <string>
#include <string_view>

namespace kestavon {

/// Why something could not be done to a file, folder or link.
struct FileError {
    enum class Kind {
        fileExists, ///< the destination is taken; nothing was replaced
        noSuchFile, ///< the item, or the folder it should go to, is not there
        permission, ///< the system refuses it, or the place is one that is never touched
        noSpace, ///< the destination has not enough room
        changed, ///< the item changed while it was being worked on
        cancelled, ///< the caller asked to stop
        other,
    };

    Kind kind = Kind::other;
    std::string message; ///< one sentence for a person, naming the item

    friend bool operator==(const FileError&, const FileError&) = default;
};

template <class T> using FileResult = Result<T, FileError>;

/// The kind that an errno value stands for.
FileError::Kind fileErrorKind(int errorNumber);

/// The sentence for an item that could not be moved to the folder called `folderName`.
FileError moveError(FileError::Kind kind, std::string_view name, std::string_view folderName);
/// The sentence for an item that could not be removed.
FileError removalError(FileError::Kind kind, std::string_view name);
/// The sentence for a file that could not be read.
FileError readError(FileError::Kind kind, std::string_view name);
/// The sentence for a folder that could not be made or opened.
FileError folderError(FileError::Kind kind, std::string_view name);

} // namespace kestavon
